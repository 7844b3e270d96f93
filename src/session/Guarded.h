#pragma once

#include <utility>

#include "Mutex.h"

namespace velmorindal {

/// A value that one thread may set while another reads it.
template <typename Value>
class Guarded {
  public:
    Guarded() = default;
    explicit Guarded(Value initial) : value_{std::move(initial)} {}

    /// A copy of the value. From any thread.
    Value get() const {
        const Lock lock{mutex_};
        return value_;
    }

    /// From any thread.
    Guarded& operator=(Value next) {
        const Lock lock{mutex_};
        // The old value is destroyed with `next`, after the lock is released.
        std::swap(value_, next);
        return *this;
    }

  private:
    mutable Mutex mutex_;
    Value value_ GUARDED_BY(mutex_){};
};

}  // namespace velmorindal
