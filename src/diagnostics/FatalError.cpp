#include "FatalError.h"

#include <unistd.h>

#include <cstdlib>
#include <string>

#include "Print.h"

namespace velmorindal {

void fatalError(std::string_view message) {
    writeLine(STDERR_FILENO, message);
    std::abort();
}

}  // namespace velmorindal
