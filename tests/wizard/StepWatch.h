#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <thread>

#include "Mutex.h"
#include "VirtualDongle.h"

namespace velmorindal {

/// Checks from a separate thread that no step lasts forever.
///
/// A device that was left reporting and does not answer is waited for until it falls silent: that is how an
/// exchange works, and a person would pull the dongle out. So does this, and counts it. A step that lasts
/// although the device is silent or pulled out will not end.
class StepWatch {
  public:
    /// `onHang` is called on the watching thread and does not return.
    explicit StepWatch(std::function<void()> onHang);
    StepWatch(const StepWatch&) = delete;
    StepWatch& operator=(const StepWatch&) = delete;
    ~StepWatch();

    /// A step begins, with a dongle that stays until it has ended.
    void begin(VirtualDongle& dongle);
    void end();

    std::size_t pulledOut() const;

  private:
    using Clock = std::chrono::steady_clock;

    void watch();

    const std::function<void()> onHang_;
    mutable Mutex mutex_;
    Condition changed_;
    VirtualDongle* dongle_ GUARDED_BY(mutex_) = nullptr;
    Clock::time_point deadline_ GUARDED_BY(mutex_);
    std::size_t pulledOut_ GUARDED_BY(mutex_) = 0;
    bool stopping_ GUARDED_BY(mutex_) = false;
    std::thread thread_;
};

}  // namespace velmorindal
