#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Mutex.h"

namespace velmorindal {

/// A list of observers. They learn that something is about to change, not what.
///
/// All operations are safe from any thread. An observer is called on the thread that makes the change, before
/// the change, with no lock held; it may subscribe and drop subscriptions.
class ChangeNotifier {
  public:
    /// Ends the subscription when dropped. May outlive the notifier. An announcement that is under way on
    /// another thread may still reach the observer once.
    using Subscription = std::shared_ptr<const std::function<void()>>;

    [[nodiscard]] Subscription subscribe(std::function<void()> observer);

    void announce() const;

  private:
    mutable Mutex mutex_;
    std::vector<std::weak_ptr<const std::function<void()>>> observers_ GUARDED_BY(mutex_);
};

}  // namespace velmorindal
