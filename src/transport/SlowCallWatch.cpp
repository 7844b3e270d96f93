#include "SlowCallWatch.h"

#include <system_error>
#include <utility>

namespace velmorindal {

SlowCallWatch::SlowCallWatch(std::chrono::milliseconds patience, std::function<void()> whenSlow) {
    if (!whenSlow) {
        return;
    }
    try {
        thread_ = std::thread{[this, patience, whenSlow = std::move(whenSlow)] {
            std::unique_lock lock{mutex_};
            if (!ended_.wait_for(lock, patience, [this] { return callHasEnded_; })) {
                whenSlow();
            }
        }};
    } catch (const std::system_error&) {
        // No threads are left. The call matters, and not who hears that it is slow.
        return;
    }
}

SlowCallWatch::~SlowCallWatch() {
    if (!thread_.joinable()) {
        return;
    }
    {
        const std::lock_guard lock{mutex_};
        callHasEnded_ = true;
    }
    ended_.notify_one();
    thread_.join();
}

}  // namespace velmorindal
