#include "Requirement.h"

#include <unistd.h>

#include <cstdlib>
#include <string>

#include "Print.h"

namespace velmorindal {

void require(bool holds, std::string_view sentence) {
    if (!holds) {
        writeLine(STDERR_FILENO, "Not so: " + std::string{sentence});
        std::abort();
    }
}

void requireEqual(std::string_view found, std::string_view expected, std::string_view sentence) {
    if (found != expected) {
        writeLine(STDERR_FILENO, "found:    " + std::string{found} + "\nexpected: " + std::string{expected});
        require(false, sentence);
    }
}

}  // namespace velmorindal
