#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>

#include "Exploration.h"
#include "ScheduledDispatch.h"

namespace velmorindal {
namespace {

using testing::HasSubstr;

/// A model with one background run, stopped by the main thread, that can be given each of the mistakes that
/// the explorer must find.
class SmallModel {
  public:
    struct Mistakes {
        bool waitsWithoutMainWork = false;
        bool startsAfterTheStop = false;
    };

    SmallModel(Scheduler& scheduler, Dispatch& dispatch, Mistakes mistakes)
        : scheduler_{scheduler}, dispatch_{dispatch}, mistakes_{mistakes} {}

    void begin() {
        busy_ = true;
        dispatch_.runInBackground([this] {
            dispatch_.runOnMainAndWait([this] { runs_ = true; });
            while (runs_) {
                sleep();
            }
            busy_ = false;
        });
    }

    void stopAndWait() {
        runs_ = false;
        while (busy_) {
            sleep();
            if (!mistakes_.waitsWithoutMainWork) {
                dispatch_.runPendingMainWork();
            }
            if (!mistakes_.startsAfterTheStop) {
                runs_ = false;
            }
        }
    }

  private:
    void sleep() {
        scheduler_.letTimePass(std::chrono::milliseconds{20});
        scheduler_.rest("sleep");
    }

    Scheduler& scheduler_;
    Dispatch& dispatch_;
    const Mistakes mistakes_;
    std::atomic<bool> runs_{false};
    std::atomic<bool> busy_{false};
};

Program beginThenStop(SmallModel::Mistakes mistakes) {
    return [mistakes](Scheduler& scheduler) {
        ScheduledDispatch dispatch{scheduler};
        SmallModel model{scheduler, dispatch, mistakes};
        model.begin();
        scheduler.rest("event loop");
        dispatch.runPendingMainWork();
        model.stopAndWait();
        scheduler.endOtherThreads();
    };
}

constexpr Scheduler::Limits searchLimits{.deviations = 2, .points = 500};

TEST(BrokenModel, WithoutAMistakeNoScheduleHangs) {
    const Exploration exploration = explore(searchLimits, beginThenStop({}));

    EXPECT_FALSE(exploration.finding.has_value()) << exploration.text(searchLimits.deviations);
    EXPECT_GT(exploration.schedules, 1U);
}

TEST(BrokenModel, AWaitThatKeepsTheMainQueueFromMovingIsFoundToHang) {
    const Program program = beginThenStop({.waitsWithoutMainWork = true});

    const Exploration exploration = explore(searchLimits, program);

    ASSERT_TRUE(exploration.finding.has_value());
    EXPECT_EQ(exploration.finding->what, "hung: it waits for what nobody will provide");
    EXPECT_GT(exploration.schedules, 1U) << "The fair order alone does not show it.";
    EXPECT_THAT(exploration.text(searchLimits.deviations), HasSubstr("Choices: {"));
}

TEST(BrokenModel, AStopThatTheRunOverwritesIsFoundToGoOnWithoutAnEnd) {
    const Exploration exploration = explore(searchLimits, beginThenStop({.startsAfterTheStop = true}));

    ASSERT_TRUE(exploration.finding.has_value());
    EXPECT_EQ(exploration.finding->what, "hung: it goes on without an end");
}

TEST(BrokenModel, AHangIsReachedAgainByItsChoices) {
    const Program program = beginThenStop({.waitsWithoutMainWork = true});
    const Exploration exploration = explore(searchLimits, program);
    ASSERT_TRUE(exploration.finding.has_value());

    const auto again = replay(searchLimits, exploration.finding->choices, program);

    ASSERT_TRUE(again.has_value());
    EXPECT_EQ(again->what, exploration.finding->what);
    EXPECT_EQ(again->trace, exploration.finding->trace);
}

TEST(BrokenModel, ThreadsThatWaitForEachOtherHang) {
    const Exploration exploration = explore(searchLimits, [](Scheduler& scheduler) {
        scheduler.start([&] { scheduler.waitUntil([] { return false; }, "a second lock"); });
        scheduler.waitUntil([] { return false; }, "the first lock");
    });

    ASSERT_TRUE(exploration.finding.has_value());
    EXPECT_EQ(exploration.finding->what, "hung: everybody waits");
}

TEST(BrokenModel, AnExceptionThatLeavesARunIsReported) {
    const Exploration exploration = explore(searchLimits, [](Scheduler& scheduler) {
        scheduler.start([] { throw std::runtime_error{"out of the blue"}; });
        scheduler.waitUntil([&] { return !scheduler.hasOtherThreads(); }, "its end");
    });

    ASSERT_TRUE(exploration.finding.has_value());
    EXPECT_EQ(exploration.finding->what, "a thread ended by an exception: out of the blue");
}

}  // namespace
}  // namespace velmorindal
