#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Mutex.h"

namespace velmorindal {

/// A list of observers, which are told that something is about to change, not what.
///
/// All operations are safe from any thread. An observer is called on the thread that makes the change, before
/// the change, with no lock held. It may add and drop subscriptions.
class ChangeNotifier {
  public:
    /// Dropping it ends the subscription. It may outlive the notifier. An announcement that is running on
    /// another thread may still call the observer once.
    using Subscription = std::shared_ptr<const std::function<void()>>;

    /// Calls `observer` for each announcement until the subscription is dropped.
    [[nodiscard]] Subscription subscribe(std::function<void()> observer);

    /// Calls every observer, in the order of their subscriptions, and returns after the last.
    void announce() const;

  private:
    mutable Mutex mutex_;
    std::vector<std::weak_ptr<const std::function<void()>>> observers_ GUARDED_BY(mutex_);
};

}  // namespace velmorindal
