#include "VirtualDongle.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <system_error>

namespace velmorindal {
namespace {

constexpr std::chrono::milliseconds hostCheckInterval{1};
constexpr std::chrono::hours idle{1};

timespec timespecOf(std::chrono::nanoseconds time) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    return {.tv_sec = seconds.count(), .tv_nsec = (time - seconds).count()};
}

bool canBeRead(int descriptor) {
    pollfd entry{.fd = descriptor, .events = POLLIN, .revents = 0};
    return ::poll(&entry, 1, 0) > 0;
}

}  // namespace

VirtualDongle::VirtualDongle(const std::filesystem::path& directory, const Options& options)
    : SimulatedDongle{directory / options.name, options, Clock::now()},
      terminal_{path()},
      hosts_{terminal_.hostEnd()},
      server_{[this] { serve(); }} {}

VirtualDongle::~VirtualDongle() {
    VirtualDongle::unplug();
    server_.join();
}

void VirtualDongle::unplug() {
    const Lock lock{mutex_};
    unplugAsked_ = true;
    wakeUp_.raise();
    while (plugged_ && std::this_thread::get_id() != serverId_) {
        changed_.wait(mutex_);
    }
}

bool VirtualDongle::waitForFrames(std::size_t count, std::chrono::milliseconds timeout) const {
    const auto deadline = Clock::now() + timeout;
    const Lock lock{mutex_};
    while (receivedCount() < count && plugged_ && changed_.waitUntil(mutex_, deadline)) {
    }
    return receivedCount() >= count;
}

void VirtualDongle::serve() {
    const Lock lock{mutex_};
    serverId_ = std::this_thread::get_id();
    while (!unplugAsked_) {
        sendWhatIsDue(Clock::now());
        if (!unplugAsked_) {
            waitForWork();
        }
        if (!unplugAsked_ && !leavesAfterAnswer()) {
            receiveFromHost();
        }
    }
    terminal_.close();
    plugged_ = false;
    changed_.notifyAll();
}

void VirtualDongle::sendWhatIsDue(Clock::time_point now) {
    if (hosts_.portWasLeft(now)) {
        terminal_.forgetHost();
    }
    advanceTo(now);
    write(now);
    // A host that sends its next frame has read what it waited for.
    unplugOnceTaken(
        line_.waiting() == 0 && (terminal_.hostHasTakenAll() || canBeRead(terminal_.descriptor())), now);
}

void VirtualDongle::write(Clock::time_point now) {
    blocked_ = false;
    for (auto portion = line_.ready(now); !portion.empty(); portion = line_.ready(now)) {
        const ssize_t taken = ::write(terminal_.descriptor(), portion.data(), portion.size());
        if (taken > 0) {
            line_.take(static_cast<std::size_t>(taken));
        } else if (taken == 0 || errno == EAGAIN) {
            blocked_ = true;
            return;
        } else if (errno != EINTR) {
            throw std::system_error{errno, std::generic_category(), "cannot write to the pseudo-terminal"};
        }
    }
}

void VirtualDongle::waitForWork() {
    const Clock::time_point now = Clock::now();
    const timespec timeout = timespecOf(std::max(nextDeadline(now) - now, Clock::duration::zero()));
    const short events = blocked_ ? POLLIN | POLLOUT : POLLIN;
    std::array<pollfd, 3> entries{{{.fd = terminal_.descriptor(), .events = events, .revents = 0},
                                   {.fd = hosts_.descriptor(), .events = POLLIN, .revents = 0},
                                   {.fd = wakeUp_.descriptor(), .events = POLLIN, .revents = 0}}};
    const Unlock unlock{mutex_};
    ::ppoll(entries.data(), entries.size(), &timeout, nullptr);
    wakeUp_.clear();
}

VirtualDongle::Clock::time_point VirtualDongle::nextDeadline(Clock::time_point now) const {
    Clock::time_point deadline = std::min(now + idle, hosts_.due().value_or(now + idle));
    deadline = std::min(deadline, due(blocked_).value_or(deadline));
    return leavesAfterAnswer() ? std::min(deadline, now + hostCheckInterval) : deadline;
}

void VirtualDongle::receiveFromHost() {
    std::array<std::uint8_t, 4096> bytes{};
    const ssize_t count = ::read(terminal_.descriptor(), bytes.data(), bytes.size());
    receive(std::span{bytes}.first(count > 0 ? static_cast<std::size_t>(count) : 0));
}

}  // namespace velmorindal
