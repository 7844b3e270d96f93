#include "PseudoTerminal.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <utility>

namespace velmorindal {
namespace {

[[noreturn]] void fail(int error, const char* what, const std::string& path) {
    throw std::system_error{error, std::generic_category(), what + path};
}

/// Throws the error of a system call that has failed. Call it right after, before another call
/// changes `errno`.
void require(bool succeeded, const char* what, const std::string& path = {}) {
    if (!succeeded) {
        fail(errno, what, path);
    }
}

OwnedDescriptor openMaster() {
    OwnedDescriptor master{::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK)};
    require(master.get() >= 0, "cannot open a pseudo-terminal");
    require(::grantpt(master.get()) == 0, "cannot grant access to the pseudo-terminal");
    require(::unlockpt(master.get()) == 0, "cannot unlock the pseudo-terminal");
    return master;
}

std::string hostEndOf(const OwnedDescriptor& master) {
    std::array<char, 128> name{};
    const int error = ::ptsname_r(master.get(), name.data(), name.size());
    if (error != 0) {
        fail(error, "cannot name the pseudo-terminal", {});
    }
    return name.data();
}

OwnedDescriptor openRaw(const std::string& path) {
    OwnedDescriptor slave{::open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC)};
    require(slave.get() >= 0, "cannot open ", path);
    termios settings{};
    require(::tcgetattr(slave.get(), &settings) == 0, "cannot read the settings of ", path);
    ::cfmakeraw(&settings);
    require(::tcsetattr(slave.get(), TCSANOW, &settings) == 0, "cannot set raw ", path);
    return slave;
}

}  // namespace

PseudoTerminal::PseudoTerminal(std::filesystem::path link)
    : link_{std::move(link)}, master_{openMaster()}, hostEnd_{hostEndOf(master_)}, slave_{openRaw(hostEnd_)} {
    require(::symlink(hostEnd_.c_str(), link_.c_str()) == 0, "cannot make the link ", link_.native());
}

bool PseudoTerminal::hostHasTakenAll() const {
    // Bytes pass through a queue of the system before they count as unread. Polling moves them on; FIONREAD
    // alone would miss them.
    pollfd host{.fd = slave_.get(), .events = POLLIN, .revents = 0};
    ::poll(&host, 1, 0);
    int unread = 0;
    return ::ioctl(slave_.get(), FIONREAD, &unread) == 0 && unread == 0;
}

void PseudoTerminal::forgetHost() {
    if (::flock(slave_.get(), LOCK_SH | LOCK_NB) != 0) {
        return;
    }
    ::flock(slave_.get(), LOCK_UN);
    ::ioctl(slave_.get(), TIOCNXCL);
    ::tcflush(slave_.get(), TCIFLUSH);
}

void PseudoTerminal::close() {
    if (master_.get() < 0) {
        return;
    }
    std::error_code unreadable;
    if (std::filesystem::read_symlink(link_, unreadable) == hostEnd_) {
        ::unlink(link_.c_str());
    }
    slave_.close();
    master_.close();
}

}  // namespace velmorindal
