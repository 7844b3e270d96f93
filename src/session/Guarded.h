#pragma once

#include <mutex>
#include <utility>

namespace velmorindal {

/// A value that one thread sets while another reads it.
template <typename Value>
class Guarded {
  public:
    Guarded() = default;
    explicit Guarded(Value initial) : value_{std::move(initial)} {}

    /// A copy of the value as it stands. From any thread.
    Value get() const {
        const std::lock_guard lock{mutex_};
        return value_;
    }

    /// From any thread.
    Guarded& operator=(Value next) {
        const std::lock_guard lock{mutex_};
        // The old value leaves with `next`, after the lock.
        std::swap(value_, next);
        return *this;
    }

  private:
    mutable std::mutex mutex_;
    Value value_{};
};

}  // namespace velmorindal
