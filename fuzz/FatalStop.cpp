#include "FatalStop.h"

#include "FatalError.h"

namespace velmorindal {

// Replaces the program's fatalError() in the whole fuzz target.
void fatalError(std::string_view /*message*/) {
    throw FatalStop{};
}

}  // namespace velmorindal
