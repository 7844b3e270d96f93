#pragma once

#include "FatalError.h"
#include "VelmorindalCommand.h"

namespace velmorindal {

/// `message` as the class of its type byte. Any other class stops the process: the factory builds one class
/// for each type.
template <typename Message>
const Message& messageAs(const VelmorindalCommand& message) {
    const auto* const typed = dynamic_cast<const Message*>(&message);
    if (typed == nullptr) {
        fatalError("A decoded message is not of the class that its type promises.");
    }
    return *typed;
}

}  // namespace velmorindal
