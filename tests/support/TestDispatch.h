#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

#include "BackgroundResult.h"
#include "Dispatch.h"

namespace velmorindal {

/// A dispatch whose main queue is moved on by the test, piece by piece; the thread of the test is the main
/// thread.
class TestDispatch : public Dispatch {
  public:
    static constexpr std::chrono::minutes bound{5};

    // On the main thread.

    virtual std::size_t pendingMainWork() const = 0;

    /// Waits for a piece of main-queue work and runs it. @returns false when none came within the bound.
    virtual bool runOneMainWork() = 0;

    /// Waits until that many pieces of main-queue work are pending. @returns false when the bound passed
    /// first.
    virtual bool waitForPendingMainWork(std::size_t count) = 0;

    /// Runs main-queue work as it comes until no background run is left.
    virtual void waitForBackground() = 0;

    /// Runs main-queue work as it comes until `condition` holds. @returns false when the bound passed first.
    virtual bool runMainWorkUntil(const std::function<bool()>& condition) = 0;

    /// Lets background threads run, and no main-queue work, until `condition` holds.
    /// @returns false when the bound passed first.
    virtual bool waitUntil(const std::function<bool()>& condition) = 0;

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
};

}  // namespace velmorindal
