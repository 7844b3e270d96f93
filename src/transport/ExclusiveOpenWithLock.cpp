#include <fcntl.h>
#include <unistd.h>

#include "transport/ExclusiveOpen.h"

namespace velmorindal {

int openExclusively(const std::string& path, int accessMode) {
    // O_EXLOCK alone waits for a lock that somebody else holds; with O_NONBLOCK the open fails instead. Reads
    // and writes are meant to wait, so the flag goes again at once.
    const int descriptor = ::open(path.c_str(), accessMode | O_NOCTTY | O_EXLOCK | O_NONBLOCK | O_CLOEXEC);
    if (descriptor == -1 || ::fcntl(descriptor, F_SETFL, accessMode) == 0) {
        return descriptor;
    }
    ::close(descriptor);
    return -1;
}

void endExclusiveUse(int /*descriptor*/) {
    // The lock ends with the descriptor, and nothing else was taken.
}

}  // namespace velmorindal
