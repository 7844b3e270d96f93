#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

#include "ExclusiveOpen.h"
#include "LineEcho.h"

namespace velmorindal {
namespace {

/// Programs claim a port in one of two ways, a lock on the node or the terminal's exclusive mode, and check
/// only their way. So this checks both and takes both.
///
/// @returns false with the reason in `errno`.
bool takeExclusiveUse(int descriptor) {
    // The lock comes first: of two programs that do as this one does, only the owner of the lock goes on to
    // the mode.
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        errno = errno == EWOULDBLOCK ? EBUSY : errno;
        return false;
    }
    // The system refuses to open an exclusive terminal, but not to the superuser.
    int heldElsewhere = 0;
    if (::ioctl(descriptor, TIOCGEXCL, &heldElsewhere) == 0 && heldElsewhere != 0) {
        errno = EBUSY;
        return false;
    }
    // Before the mode is set: until then what the device sends goes back to it.
    stopEcho(descriptor);
    // A node that is not a terminal has no such mode, only the lock.
    return ::ioctl(descriptor, TIOCEXCL) == 0 || errno == ENOTTY;
}

}  // namespace

int openExclusively(const std::string& path, int accessMode) {
    // Without O_NONBLOCK the open of a line waits for its carrier, and that of a pipe for its other end.
    const int descriptor = ::open(path.c_str(), accessMode | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor == -1 || takeExclusiveUse(descriptor)) {
        return descriptor;
    }
    const int reason = errno;
    ::close(descriptor);
    errno = reason;
    return -1;
}

void endExclusiveUse(int descriptor) {
    // The lock ends with the descriptor, but the mode belongs to the terminal. A pseudo-terminal exists as
    // long as its master is open, and would stay exclusive, and so unusable, after the last close.
    ::ioctl(descriptor, TIOCNXCL);
}

}  // namespace velmorindal
