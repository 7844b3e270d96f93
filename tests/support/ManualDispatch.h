#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <thread>
#include <vector>

#include "Mutex.h"
#include "TestDispatch.h"

namespace velmorindal {

/// Runs background work on real threads. When it is destroyed it runs what is pending, so that every
/// background run that waits for the main queue ends.
class ManualDispatch final : public TestDispatch {
  public:
    ManualDispatch() = default;
    ManualDispatch(const ManualDispatch&) = delete;
    ManualDispatch& operator=(const ManualDispatch&) = delete;
    ~ManualDispatch() override;

    void postToMain(Work work) override;
    void runOnMainAndWait(Work work) override;
    void runInBackground(Work work) override;

    std::size_t pendingMainWork() const override;
    bool waitUntil(const std::function<bool()>& condition) override;

  private:
    bool hasBackgroundWork() const override;
    bool runNext() override;
    std::vector<std::thread> takeThreads();

    mutable Mutex mutex_;
    std::deque<Work> mainQueue_ GUARDED_BY(mutex_);
    std::vector<std::thread> threads_ GUARDED_BY(mutex_);
    std::size_t running_ GUARDED_BY(mutex_) = 0;
};

}  // namespace velmorindal
