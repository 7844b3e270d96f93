#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

#include "BackgroundResult.h"
#include "Dispatch.h"
#include "Scheduler.h"

namespace velmorindal {

/// A dispatch whose every operation is a scheduling point. The main thread of the schedule is the main
/// thread, and moves its queue on piece by piece; background threads run while it waits.
class ScheduledDispatch final : public Dispatch {
  public:
    /// Of virtual time.
    static constexpr std::chrono::minutes bound{5};

    explicit ScheduledDispatch(Scheduler& scheduler) : scheduler_{scheduler} {}

    void postToMain(Work work) override;
    void runOnMainAndWait(Work work) override;
    void runInBackground(Work work) override;
    void runPendingMainWork() override;

    /// From now on nothing that is posted ever runs: the mistake of a broken wizard.
    void losePostedWork() { losesPostedWork_ = true; }

    bool hasPendingMainWork() const { return !queue_.empty(); }
    std::size_t pendingMainWork() const { return queue_.size(); }

    // On the main thread.

    /// Waits for a piece of main-queue work and runs it. @returns false when none came within the bound.
    bool runOneMainWork();

    /// Waits until that many pieces of main-queue work are pending. @returns false when the bound passed
    /// first.
    bool waitForPendingMainWork(std::size_t count);

    /// Runs main-queue work as it comes until `condition` holds. @returns false when the bound passed first.
    bool runMainWorkUntil(const std::function<bool()>& condition);

    /// Lets background threads run, and no main-queue work, until `condition` holds.
    /// @returns false when the bound passed first.
    bool waitUntil(const std::function<bool()>& condition);

    /// Runs main-queue work as it comes until no background run is left.
    void waitForBackground();

    /// Starts `work` on a background thread.
    template <typename Function>
    auto inBackground(Function work) -> BackgroundResult<std::invoke_result_t<Function>> {
        const auto value = std::make_shared<std::optional<std::invoke_result_t<Function>>>();
        runInBackground([value, work = std::move(work)] { *value = work(); });
        const auto isReady = [value] { return value->has_value(); };
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
    bool waitWithinBound(std::function<bool()> condition, std::string_view where);
    void runNext();

    Scheduler& scheduler_;
    std::deque<Work> queue_;
    bool losesPostedWork_ = false;
};

}  // namespace velmorindal
