#include <fcntl.h>

#include <cerrno>

#include "ExclusiveOpen.h"
#include "LineEcho.h"

namespace velmorindal {

int openExclusively(const std::string& path, int accessMode) {
    // O_EXLOCK alone waits for a lock that another process holds; with O_NONBLOCK the open fails instead.
    const int descriptor = ::open(path.c_str(), accessMode | O_NOCTTY | O_EXLOCK | O_NONBLOCK | O_CLOEXEC);
    if (descriptor == -1) {
        errno = errno == EWOULDBLOCK ? EBUSY : errno;
    } else {
        stopEcho(descriptor);
    }
    return descriptor;
}

void endExclusiveUse(int /*descriptor*/) {
    // The lock ends with the descriptor, and nothing else was taken.
}

}  // namespace velmorindal
