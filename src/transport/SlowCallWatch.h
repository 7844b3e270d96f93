#pragma once

#include <chrono>
#include <functional>
#include <thread>

#include "Mutex.h"

namespace velmorindal {

/// Says that a call takes long: runs `whenSlow` on another thread if the watch still lives after `patience`.
class SlowCallWatch {
  public:
    /// Watches nothing without a `whenSlow`.
    SlowCallWatch(std::chrono::milliseconds patience, std::function<void()> whenSlow);
    SlowCallWatch(const SlowCallWatch&) = delete;
    SlowCallWatch& operator=(const SlowCallWatch&) = delete;
    ~SlowCallWatch();

  private:
    void waitForTheEnd(std::chrono::milliseconds patience, const std::function<void()>& whenSlow);

    Mutex mutex_;
    Condition ended_;
    bool callHasEnded_ GUARDED_BY(mutex_) = false;
    std::thread thread_;
};

}  // namespace velmorindal
