#include "PosixSystem.h"

#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <system_error>
#include <thread>

#include "ExclusiveOpen.h"
#include "SlowCallWatch.h"

namespace velmorindal {
namespace {

/// The timeout for poll(), rounded up, so that `until` has come when it returns.
int pollTimeout(std::optional<System::Clock::time_point> until) {
    if (!until) {
        return -1;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*until - System::Clock::now()).count();
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, std::numeric_limits<int>::max()));
}

/// close() waits in the kernel for output that the device has not taken.
bool hasOutputWaiting(int descriptor) {
    int waiting = 0;
    return ::ioctl(descriptor, TIOCOUTQ, &waiting) == 0 && waiting > 0;
}

}  // namespace

System::Clock::time_point PosixSystem::now() {
    return Clock::now();
}

void PosixSystem::sleepFor(Clock::duration duration) {
    std::this_thread::sleep_for(duration);
}

int PosixSystem::openExclusively(const std::string& path, int accessMode,
                                 const std::function<void()>& whenSlow) {
    int descriptor = -1;
    int reason = 0;
    {
        const SlowCallWatch watch{slowOpen, whenSlow};
        descriptor = velmorindal::openExclusively(path, accessMode);
        reason = errno;
    }
    errno = reason;
    return descriptor;
}

std::optional<NodeHolder> PosixSystem::holderOf(const std::string& path) {
    return findNodeHolder(path);
}

void PosixSystem::endExclusiveUse(int descriptor) {
    velmorindal::endExclusiveUse(descriptor);
}

void PosixSystem::close(int descriptor) {
    if (!hasOutputWaiting(descriptor)) {
        ::close(descriptor);
        return;
    }
    // The thread may start late, and until then the lock would refuse our own next open. After that an open
    // waits in the kernel until the close has ended.
    ::flock(descriptor, LOCK_UN);
    try {
        std::thread{[descriptor] { ::close(descriptor); }}.detach();
    } catch (const std::system_error&) {
        // No thread can be started.
        ::close(descriptor);
    }
}

std::ptrdiff_t PosixSystem::read(int descriptor, std::span<std::uint8_t> buffer) {
    return ::read(descriptor, buffer.data(), buffer.size());
}

std::ptrdiff_t PosixSystem::write(int descriptor, std::span<const std::uint8_t> bytes) {
    return ::write(descriptor, bytes.data(), bytes.size());
}

bool PosixSystem::wait(int descriptor, Readiness readiness, std::optional<Clock::time_point> until) {
    const short events = readiness == Readiness::toRead ? POLLIN : POLLOUT;
    pollfd line{.fd = descriptor, .events = events, .revents = 0};
    while (true) {
        const int ready = ::poll(&line, 1, pollTimeout(until));
        if (ready != -1 || errno != EINTR) {
            return ready != 0;
        }
    }
}

std::optional<std::size_t> PosixSystem::linkCount(int descriptor) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) {
        return std::nullopt;
    }
    return status.st_nlink;
}

bool PosixSystem::lineAttributes(int descriptor, termios& attributes) {
    return ::tcgetattr(descriptor, &attributes) == 0;
}

bool PosixSystem::setLineAttributes(int descriptor, const termios& attributes) {
    return ::tcsetattr(descriptor, TCSANOW, &attributes) == 0;
}

}  // namespace velmorindal
