#include "FatalStop.h"

#include "FatalError.h"

namespace velmorindal {

// Stands before the program's own for the whole fuzz target.
void fatalError(std::string_view /*message*/) {
    throw FatalStop{};
}

}  // namespace velmorindal
