#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// A field of a message as text: how to look at it and how to set it. Bytes and texts are hexadecimal, floats
/// the eight hexadecimal digits of their bit pattern, everything else is decimal.
struct Field {
    std::string_view name;
    std::function<std::string()> text;
    std::function<void(std::string_view)> set;
};

/// What can be done with a message of a class that is known by name.
struct MessageClass {
    std::string_view name;
    std::unique_ptr<VelmorindalCommand> (*make)();
    bool (*matches)(const VelmorindalCommand&);
    std::function<std::vector<Field>(VelmorindalCommand&)> fields;
};

std::span<const MessageClass> allMessageClasses();

/// Refuses a name that is none.
const MessageClass& messageClassNamed(std::string_view name);

/// Its class and every field, "VCStatus _valid=1 _linkState=2"; "none" for no message.
std::string described(VelmorindalCommand* message);

/// The frame that it becomes when it is sent, as hexadecimal digits, or the name of the error.
std::string sent(const VelmorindalCommand& message);

}  // namespace velmorindal
