#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

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
    std::mutex mutex_;
    std::condition_variable ended_;
    bool callHasEnded_ = false;
    std::thread thread_;
};

}  // namespace velmorindal
