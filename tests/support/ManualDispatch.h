#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "BackgroundResult.h"
#include "Dispatch.h"
#include "Mutex.h"

namespace velmorindal {

/// A dispatch whose main queue is moved on by the test, piece by piece; the thread of the test is the main
/// thread.
///
/// Background work runs on real threads. When the dispatch is destroyed it runs what is pending, so that
/// every background run that waits for the main queue ends.
class ManualDispatch final : public Dispatch {
  public:
    static constexpr std::chrono::minutes bound{5};

    ManualDispatch() = default;
    ManualDispatch(const ManualDispatch&) = delete;
    ManualDispatch& operator=(const ManualDispatch&) = delete;
    ~ManualDispatch() override;

    void postToMain(Work work) override;
    void runOnMainAndWait(Work work) override;
    void runInBackground(Work work) override;
    void runPendingMainWork() override;

    /// Waits for a piece of main-queue work and runs it. @returns false when none came within the bound.
    bool runOneMainWork();

    /// Waits until that many pieces of main-queue work are pending. @returns false when the bound passed
    /// first.
    bool waitForPendingMainWork(std::size_t count);

    std::size_t pendingMainWork() const;

    /// Runs main-queue work as it comes until `condition` holds. @returns false when the bound passed first.
    template <typename Condition>
    bool runMainWorkUntil(Condition condition) {
        const auto deadline = std::chrono::steady_clock::now() + bound;
        while (!condition()) {
            if (std::chrono::steady_clock::now() > deadline) {
                return false;
            }
            waitBriefly();
            runPendingMainWork();
        }
        return true;
    }

    /// Runs main-queue work as it comes until no background run is left.
    void waitForBackground();

    /// Lets background threads run, and no main-queue work, until `condition` holds.
    /// @returns false when the bound passed first.
    bool waitUntil(const std::function<bool()>& condition);

    /// Starts `work` on a background thread.
    template <typename Function>
    auto inBackground(Function work) -> BackgroundResult<std::invoke_result_t<Function>> {
        const auto value = std::make_shared<std::optional<std::invoke_result_t<Function>>>();
        const auto ended = std::make_shared<std::atomic<bool>>(false);
        runInBackground([value, ended, work = std::move(work)] {
            *value = work();
            *ended = true;
        });
        const auto isReady = [ended] { return ended->load(); };
        return {isReady, [this, isReady] { waitUntil(isReady); }, value};
    }

    /// Runs `work` on a background thread while the main queue moves on by itself. @returns its result.
    template <typename Function>
    auto finish(Function work) -> std::invoke_result_t<Function> {
        const auto result = inBackground(std::move(work));
        runMainWorkUntil([&] { return result.isReady(); });
        runPendingMainWork();
        return result.get();
    }

  private:
    bool runNext();
    void waitBriefly();
    std::vector<std::thread> takeThreads();

    mutable Mutex mutex_;
    Condition changed_;
    std::deque<Work> mainQueue_ GUARDED_BY(mutex_);
    std::vector<std::thread> threads_ GUARDED_BY(mutex_);
    std::size_t running_ GUARDED_BY(mutex_) = 0;
};

}  // namespace velmorindal
