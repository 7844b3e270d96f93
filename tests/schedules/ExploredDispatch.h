#pragma once

#include <deque>

#include "schedules/Scheduler.h"
#include "session/Dispatch.h"

namespace velmorindal {

/// A dispatch whose every operation is a scheduling point. The main thread of the schedule is the main
/// thread.
class ExploredDispatch final : public Dispatch {
  public:
    explicit ExploredDispatch(Scheduler& scheduler) : scheduler_{scheduler} {}

    void postToMain(Work work) override;
    void runOnMainAndWait(Work work) override;
    void runInBackground(Work work) override;
    void runPendingMainWork() override;

    /// From now on nothing that is posted ever runs: the mistake of a broken wizard.
    void losePostedWork() { losesPostedWork_ = true; }

    bool hasPendingMainWork() const { return !queue_.empty(); }

  private:
    Scheduler& scheduler_;
    std::deque<Work> queue_;
    bool losesPostedWork_ = false;
};

}  // namespace velmorindal
