#pragma once

#include <deque>
#include <functional>

#include "Scheduler.h"
#include "TestDispatch.h"

namespace velmorindal {

/// A dispatch whose every operation is a scheduling point. The main thread of the schedule is the main
/// thread; background threads run while it waits. The bound is of virtual time.
class ScheduledDispatch final : public TestDispatch {
  public:
    explicit ScheduledDispatch(Scheduler& scheduler) : scheduler_{scheduler} {}

    void postToMain(Work work) override;
    void runOnMainAndWait(Work work) override;
    void runInBackground(Work work) override;

    /// From now on nothing that is posted ever runs: the mistake of a broken wizard.
    void losePostedWork() { losesPostedWork_ = true; }

    std::size_t pendingMainWork() const override { return queue_.size(); }
    bool waitUntil(const std::function<bool()>& condition) override;

  private:
    bool hasBackgroundWork() const override { return scheduler_.hasOtherThreads(); }
    bool runNext() override;

    Scheduler& scheduler_;
    std::deque<Work> queue_;
    bool losesPostedWork_ = false;
};

}  // namespace velmorindal
