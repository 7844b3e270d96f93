#include "ReplayPort.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <span>
#include <utility>

namespace velmorindal {
namespace {

using Clock = Replay::Clock;

/// Rounded up, so that `moment` has come when the wait ends.
int millisecondsUntil(Clock::time_point moment, Clock::time_point now) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(moment - now).count();
    constexpr decltype(left) longest = 3'600'000;
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, longest));
}

}  // namespace

ReplayPort::ReplayPort(std::filesystem::path link, std::vector<RecordedEvent> events, Replay::Report report)
    : terminal_{std::move(link)},
      hosts_{terminal_.hostEnd()},
      replay_{std::move(events), std::move(report)},
      server_{[this] { serve(); }} {}

ReplayPort::~ReplayPort() {
    finish();
}

const Replay& ReplayPort::finish() {
    if (server_.joinable()) {
        ending_ = true;
        wakeUp_.raise();
        server_.join();
    }
    return replay_;
}

void ReplayPort::serve() {
    while (!ending_ && !replay_.isLost()) {
        turn(Clock::now());
        if (!ending_ && !replay_.isLost()) {
            waitForWork(Clock::now());
        }
    }
    terminal_.close();
}

void ReplayPort::turn(Clock::time_point now) {
    // Bytes before opens: a host opens the port before it sends, so its open is noticed with its first bytes.
    std::array<std::uint8_t, 4096> bytes{};
    const ssize_t count = ::read(terminal_.descriptor(), bytes.data(), bytes.size());
    if (hosts_.portWasLeft(now)) {
        terminal_.forgetHost();
    }
    if (hosts_.portWasOpened(now)) {
        replay_.opened(now);
    }
    replay_.receive(std::span{bytes}.first(count > 0 ? static_cast<std::size_t>(count) : 0), now);
    const ByteBuffer sent = replay_.take(now);
    unsent_.insert(unsent_.end(), sent.begin(), sent.end());
    if (!unsent_.empty()) {
        const ssize_t taken = ::write(terminal_.descriptor(), unsent_.data(), unsent_.size());
        unsent_.erase(unsent_.begin(), unsent_.begin() + std::max<ssize_t>(taken, 0));
    }
}

void ReplayPort::waitForWork(Clock::time_point now) {
    Clock::time_point next = now + std::chrono::hours{1};
    next = std::min(next, replay_.due().value_or(next));
    next = std::min(next, hosts_.due().value_or(next));
    const short events = unsent_.empty() ? POLLIN : POLLIN | POLLOUT;
    std::array<pollfd, 3> entries{{{.fd = terminal_.descriptor(), .events = events, .revents = 0},
                                   {.fd = hosts_.descriptor(), .events = POLLIN, .revents = 0},
                                   {.fd = wakeUp_.descriptor(), .events = POLLIN, .revents = 0}}};
    ::poll(entries.data(), entries.size(), millisecondsUntil(next, now));
}

}  // namespace velmorindal
