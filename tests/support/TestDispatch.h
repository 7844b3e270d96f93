#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

#include "Dispatch.h"

namespace velmorindal {

/// A dispatch whose main queue is moved on by the test, piece by piece; the thread of the test is the main
/// thread.
class TestDispatch : public Dispatch {
  public:
    static constexpr std::chrono::minutes bound{5};

    // On the main thread.

    virtual std::size_t pendingMainWork() const = 0;

    /// Lets background threads run, and no main-queue work, until `condition` holds.
    /// @returns false when the bound passed first.
    virtual bool waitUntil(const std::function<bool()>& condition) = 0;

    /// Waits until that many pieces of main-queue work are pending. @returns false when the bound passed
    /// first.
    bool waitForPendingMainWork(std::size_t count) {
        return waitUntil([this, count] { return pendingMainWork() >= count; });
    }

    /// Waits for a piece of main-queue work and runs it. @returns false when none came within the bound.
    bool runOneMainWork() { return waitForPendingMainWork(1) && runNext(); }

    void runPendingMainWork() override {
        // One at a time: work that itself waits for the main queue must find the rest still queued, in order.
        for (std::size_t submitted = pendingMainWork(); submitted > 0 && runNext(); --submitted) {
        }
    }

    /// Runs main-queue work as it comes until `condition` holds. @returns false when the bound passed first.
    bool runMainWorkUntil(const std::function<bool()>& condition) {
        while (!condition()) {
            if (!waitUntil([&] { return pendingMainWork() > 0 || condition(); })) {
                return false;
            }
            runPendingMainWork();
        }
        return true;
    }

    /// Runs main-queue work as it comes until no background run is left.
    void waitForBackground() {
        runMainWorkUntil([this] { return !hasBackgroundWork(); });
    }

    /// What an operation on a background thread will return. A copy is the same result.
    template <typename Value>
    class Result {
      public:
        bool isReady() const { return *ended_; }

        /// Waits for the operation's end; no main-queue work runs meanwhile.
        Value get() const {
            dispatch_.waitUntil([this] { return isReady(); });
            return value_->value();
        }

      private:
        friend TestDispatch;

        explicit Result(TestDispatch& dispatch) : dispatch_{dispatch} {}

        TestDispatch& dispatch_;
        std::shared_ptr<std::optional<Value>> value_ = std::make_shared<std::optional<Value>>();
        std::shared_ptr<std::atomic<bool>> ended_ = std::make_shared<std::atomic<bool>>(false);
    };

    /// Starts `work` on a background thread.
    template <typename Function>
    auto inBackground(Function work) {
        Result<std::invoke_result_t<Function>> result{*this};
        runInBackground([result, work = std::move(work)] {
            *result.value_ = work();
            *result.ended_ = true;
        });
        return result;
    }

    /// Runs `work` on a background thread while the main queue moves on by itself. @returns its result.
    template <typename Function>
    auto finish(Function work) -> std::invoke_result_t<Function> {
        const auto result = inBackground(std::move(work));
        runMainWorkUntil([&] { return result.isReady(); });
        runPendingMainWork();
        return result.get();
    }

  protected:
    virtual bool hasBackgroundWork() const = 0;
    /// Runs one piece of main-queue work. @returns false when there is none.
    virtual bool runNext() = 0;
};

}  // namespace velmorindal
