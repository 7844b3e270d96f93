#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace velmorindal {

/// Reports a slow call: runs `whenSlow` once, on another thread, if the watch still exists after `patience`.
class SlowCallWatch {
  public:
    /// Does nothing without a `whenSlow`, or if no thread can be started.
    SlowCallWatch(std::chrono::milliseconds patience, std::function<void()> whenSlow);
    SlowCallWatch(const SlowCallWatch&) = delete;
    SlowCallWatch& operator=(const SlowCallWatch&) = delete;
    /// Waits for a `whenSlow` that is running. Does not wait for the thread to end, which takes longer
    /// than most calls: the thread may destroy its copy of `whenSlow` later.
    ~SlowCallWatch();

  private:
    struct Call;

    /// Shared with the thread, which may outlive the watch.
    std::shared_ptr<Call> call_;
};

}  // namespace velmorindal
