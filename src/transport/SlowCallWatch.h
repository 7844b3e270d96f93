#pragma once

#include <chrono>
#include <functional>
#include <thread>

#include "Mutex.h"

namespace velmorindal {

/// Reports a slow call: runs `whenSlow` once, on another thread, if the watch still exists after `patience`.
class SlowCallWatch {
  public:
    /// Does nothing without a `whenSlow`, or if no thread can be started.
    SlowCallWatch(std::chrono::milliseconds patience, std::function<void()> whenSlow);
    SlowCallWatch(const SlowCallWatch&) = delete;
    SlowCallWatch& operator=(const SlowCallWatch&) = delete;
    /// Waits for a `whenSlow` that is running.
    ~SlowCallWatch();

  private:
    void waitForTheEnd(std::chrono::milliseconds patience, const std::function<void()>& whenSlow);

    Mutex mutex_;
    Condition ended_;
    bool callHasEnded_ GUARDED_BY(mutex_) = false;
    std::thread thread_;
};

}  // namespace velmorindal
