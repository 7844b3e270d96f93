#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace velmorindal {

/// What an operation on a background thread will return. A copy is the same result.
template <typename Value>
class BackgroundResult {
  public:
    /// `wait` returns once the operation has ended, and runs no main-queue work meanwhile.
    BackgroundResult(std::function<bool()> isReady, std::function<void()> wait,
                     std::shared_ptr<std::optional<Value>> value)
        : isReady_{std::move(isReady)}, wait_{std::move(wait)}, value_{std::move(value)} {}

    bool isReady() const { return isReady_(); }

    /// Waits for the operation's end.
    Value get() const {
        wait_();
        return value_->value();
    }

  private:
    std::function<bool()> isReady_;
    std::function<void()> wait_;
    std::shared_ptr<std::optional<Value>> value_;
};

}  // namespace velmorindal
