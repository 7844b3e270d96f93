#pragma once

#include <utility>

#include "ChangeNotifier.h"
#include "Guarded.h"

namespace velmorindal {

/// A property that announces on a notifier immediately before every assignment, also of an equal value.
///
/// Reading is safe from any thread. Assign on the main thread only, where observers are called.
template <typename Value>
class Published {
  public:
    /// `notifier` must outlive this object.
    Published(const ChangeNotifier& notifier, Value initial)
        : notifier_{notifier}, value_{std::move(initial)} {}

    Value get() const { return value_.get(); }

    Published& operator=(Value next) {
        notifier_.announce();
        value_ = std::move(next);
        return *this;
    }

  private:
    const ChangeNotifier& notifier_;
    Guarded<Value> value_;
};

}  // namespace velmorindal
