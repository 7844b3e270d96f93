#include "SlowCallWatch.h"

#include <system_error>
#include <thread>
#include <utility>

#include "Mutex.h"

namespace velmorindal {

struct SlowCallWatch::Call {
    /// Returns when the call has ended or `whenSlow` has run.
    void watch(std::chrono::milliseconds patience, const std::function<void()>& whenSlow) {
        const auto patienceEnds = std::chrono::steady_clock::now() + patience;
        const Lock lock{mutex};
        while (!hasEnded) {
            if (!ended.waitUntil(mutex, patienceEnds) && !hasEnded) {
                // With the lock held: the end of the watch waits for it.
                whenSlow();
                return;
            }
        }
    }

    Mutex mutex;
    Condition ended;
    bool hasEnded GUARDED_BY(mutex) = false;
};

SlowCallWatch::SlowCallWatch(std::chrono::milliseconds patience, std::function<void()> whenSlow) {
    if (!whenSlow) {
        return;
    }
    call_ = std::make_shared<Call>();
    try {
        std::thread{[call = call_, patience, whenSlow = std::move(whenSlow)] {
            call->watch(patience, whenSlow);
        }}.detach();
    } catch (const std::system_error&) {
        // No thread could be started: the call goes on without a report that it is slow.
        return;
    }
}

SlowCallWatch::~SlowCallWatch() {
    if (!call_) {
        return;
    }
    {
        const Lock lock{call_->mutex};
        call_->hasEnded = true;
    }
    call_->ended.notifyOne();
}

}  // namespace velmorindal
