#include "SlowCallWatch.h"

#include <system_error>
#include <utility>

namespace velmorindal {

SlowCallWatch::SlowCallWatch(std::chrono::milliseconds patience, std::function<void()> whenSlow) {
    if (!whenSlow) {
        return;
    }
    try {
        thread_ = std::thread{
            [this, patience, whenSlow = std::move(whenSlow)] { waitForTheEnd(patience, whenSlow); }};
    } catch (const std::system_error&) {
        // No thread could be started: the call goes on without a report that it is slow.
        return;
    }
}

SlowCallWatch::~SlowCallWatch() {
    if (!thread_.joinable()) {
        return;
    }
    {
        const Lock lock{mutex_};
        callHasEnded_ = true;
    }
    ended_.notifyOne();
    thread_.join();
}

void SlowCallWatch::waitForTheEnd(std::chrono::milliseconds patience, const std::function<void()>& whenSlow) {
    const auto patienceEnds = std::chrono::steady_clock::now() + patience;
    const Lock lock{mutex_};
    while (!callHasEnded_) {
        if (!ended_.waitUntil(mutex_, patienceEnds) && !callHasEnded_) {
            whenSlow();
            return;
        }
    }
}

}  // namespace velmorindal
