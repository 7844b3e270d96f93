#include "HostWatch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <utility>

namespace velmorindal {

HostWatch::HostWatch(const std::string& path) : watch_{::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)} {
    if (::inotify_add_watch(watch_.get(), path.c_str(), IN_OPEN | IN_CLOSE) < 0) {
        watch_.close();
    }
}

bool HostWatch::portWasLeft(Clock::time_point now) {
    takeEvents(now);
    if (!leftAt_ || now < *leftAt_ + absence) {
        return false;
    }
    leftAt_.reset();
    return true;
}

bool HostWatch::portWasOpened(Clock::time_point now) {
    takeEvents(now);
    return std::exchange(opened_, false);
}

std::optional<HostWatch::Clock::time_point> HostWatch::due() const {
    return leftAt_ ? std::optional{*leftAt_ + absence} : std::nullopt;
}

void HostWatch::takeEvents(Clock::time_point now) {
    alignas(inotify_event) std::array<char, 4096> buffer{};
    ssize_t length = 0;
    while ((length = ::read(watch_.get(), buffer.data(), buffer.size())) > 0) {
        for (std::size_t offset = 0; offset < static_cast<std::size_t>(length);) {
            inotify_event event{};
            std::memcpy(&event, buffer.data() + offset, sizeof event);
            leftAt_ = (event.mask & IN_CLOSE) != 0 ? std::optional{now} : std::nullopt;
            opened_ = opened_ || (event.mask & IN_OPEN) != 0;
            offset += sizeof event + event.len;
        }
    }
}

}  // namespace velmorindal
