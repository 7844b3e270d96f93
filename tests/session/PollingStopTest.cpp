#include "CalibrationPollingTest.h"

namespace velmorindal {
namespace {

using Type = VelmorindalMessageType;

class PollingStopTest : public CalibrationPollingTest {
  protected:
    /// A moment of the start of a run at which the main thread asks it to stop: `reached` says that it has
    /// come.
    void stopWhileStarting(const std::function<bool()>& reached) {
        ASSERT_TRUE(dispatch.waitUntil(reached));
        velmorindal.stopPollingAndWait();
        EXPECT_FALSE(velmorindal.bgIsProcessing);
        EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
        dispatch.waitForBackground();
        dispatch.runPendingMainWork();
        EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
        EXPECT_EQ(velmorindal.detectedClarity.get(), 0.0);
        EXPECT_EQ(velmorindal.detectedDuration.get(), 0.0);
    }
};

TEST_F(PollingStopTest, StoppingWaitsForARunThatItselfWaitsForTheMainThread) {
    velmorindal.beginClarityPolling();
    // The run has been accepted and now waits for the main thread to set the state.
    EXPECT_TRUE(dispatch.waitForPendingMainWork(1));
    velmorindal.stopPollingAndWait();
    EXPECT_FALSE(velmorindal.bgIsProcessing);
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
    expectOneRunOnTheWire();
}

TEST_F(PollingStopTest, StoppingWinsOverAClarityRunAtEveryMomentOfItsStart) {
    // Before it has its thread, before the device has answered, and before its state is set.
    velmorindal.beginClarityPolling();
    stopWhileStarting([] { return true; });
    EXPECT_TRUE(deviceHasStoppedReporting());
    dongle.onNext(Type::autoTune, Fault::lateBy(std::chrono::milliseconds{200}));
    const std::size_t before = dongle.receivedFrames().size();
    velmorindal.beginClarityPolling();
    stopWhileStarting([&] { return dongle.receivedFrames().size() > before; });
    EXPECT_TRUE(deviceHasStoppedReporting());
    velmorindal.beginClarityPolling();
    stopWhileStarting([this] { return dispatch.pendingMainWork() >= 1; });
    EXPECT_TRUE(deviceHasStoppedReporting());
}

TEST_F(PollingStopTest, StoppingWinsOverADurationRunAtEveryMomentOfItsStart) {
    velmorindal.beginDurationPolling();
    stopWhileStarting([] { return true; });
    velmorindal.beginDurationPolling();
    stopWhileStarting([this] { return dispatch.pendingMainWork() >= 1; });
    dongle.onNext(Type::lastHumDuration, Fault::silence());
    const std::size_t before = dongle.receivedFrames().size();
    velmorindal.beginDurationPolling();
    EXPECT_TRUE(runUntil(PollingState::duration));
    stopWhileStarting([&] { return dongle.receivedFrames().size() > before; });
}

TEST_F(PollingStopTest, TwoQuickStartsAreOneRun) {
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(velmorindal.bgIsProcessing);
    velmorindal.beginClarityPolling();
    velmorindal.beginDurationPolling();
    EXPECT_TRUE(runUntil(PollingState::clarity));
    velmorindal.stopPollingAndWait();
    expectOneRunOnTheWire();
}

TEST_F(PollingStopTest, StoppingWhenNothingRunsReturnsAtOnceAndAnnouncesNothing) {
    int announcements = 0;
    const auto subscription = velmorindal.objectWillChange.subscribe([&] { ++announcements; });
    velmorindal.stopPollingAndWait();
    EXPECT_EQ(announcements, 0);
}

TEST_F(PollingStopTest, StoppingLooksEveryTwentyMilliseconds) {
    velmorindal.bgIsProcessing = true;
    dispatch.runInBackground([this] {
        system.sleepFor(std::chrono::milliseconds{50});
        velmorindal.bgIsProcessing = false;
    });

    EXPECT_EQ(secondsTakenBy([this] { velmorindal.stopPollingAndWait(); }), 0.06);
}

/// Hands work on, and notes of each piece for the main queue whether a run was still under way when it came.
class ProcessingWatch final : public Dispatch {
  public:
    explicit ProcessingWatch(Dispatch& inner) : inner_{inner} {}

    void postToMain(Work work) override {
        underWay.push_back(model != nullptr && model->bgIsProcessing);
        inner_.postToMain(std::move(work));
    }
    void runOnMainAndWait(Work work) override { inner_.runOnMainAndWait(std::move(work)); }
    void runInBackground(Work work) override { inner_.runInBackground(std::move(work)); }
    void runPendingMainWork() override { inner_.runPendingMainWork(); }

    const VelmorindalSwitch* model = nullptr;
    std::vector<bool> underWay;

  private:
    Dispatch& inner_;
};

TEST_F(PollingStopTest, ARunIsUnderWayUntilItsReadingIsOnTheWayBackToZero) {
    ProcessingWatch watch{dispatch};
    VelmorindalSwitch watched{watch, system};
    watched.serialPort = velmorindal.serialPort.get();
    watch.model = &watched;
    for (const PollingState display : {PollingState::clarity, PollingState::duration}) {
        watch.underWay.clear();
        display == PollingState::clarity ? watched.beginClarityPolling() : watched.beginDurationPolling();
        EXPECT_TRUE(dispatch.runMainWorkUntil([&] { return watched.readingsReceived >= 1; }));
        watched.stopPollingAndWait();
        EXPECT_THAT(watch.underWay, testing::AllOf(testing::SizeIs(testing::Ge(2U)), testing::Each(true)));
    }
}

}  // namespace
}  // namespace velmorindal
