#pragma once

#include "Dispatch.h"

namespace velmorindal {

/// A dispatch for one thread: whatever is handed over has run when the hand-over returns.
class ImmediateDispatch final : public Dispatch {
  public:
    void postToMain(Work work) override { work(); }
    void runOnMainAndWait(Work work) override { work(); }
    void runInBackground(Work work) override { work(); }
    void runPendingMainWork() override {}
};

}  // namespace velmorindal
