#include <cctype>
#include <regex>

#include "session/SessionTest.h"
#include "session/ShortWrite.h"

namespace velmorindal {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::Ge;
using testing::IsEmpty;
using testing::SizeIs;
using Type = VelmorindalMessageType;

const ByteBuffer startFrame{0x63, 0x62, 0x74, 0x01, 0x02};
const ByteBuffer stopFrame{0x63, 0x62, 0x74, 0x01, 0x00};
const ByteBuffer lastHumQuery{0x63, 0x62, 0x6C, 0x00};

class CalibrationPollingTest : public SessionTest {
  protected:
    void SetUp() override { openPort(); }

    bool runUntilIdle() {
        const bool idle = dispatch.runMainWorkUntil([this] { return !velmorindal.bgIsProcessing; });
        dispatch.waitForBackground();
        dispatch.runPendingMainWork();
        return idle;
    }

    bool runUntil(PollingState state) {
        return dispatch.runMainWorkUntil([this, state] { return velmorindal.pollingState.get() == state; });
    }

    /// A report that was on its way when the run stopped counts as the acknowledgement of the stop order, so
    /// the device may come to the order a moment after the run has ended.
    void expectOneRunOnTheWire() {
        EXPECT_TRUE(dongle.waitForFrames(2, ManualDispatch::bound));
        EXPECT_THAT(dongle.receivedFrames(), ElementsAre(startFrame, stopFrame));
    }

    bool deviceHasStoppedReporting() {
        return dispatch.runMainWorkUntil([this] { return dongle.state().autoTuneChannel == 0; });
    }

    /// Runs main-queue work until a hum has been published. The device tells of it once, so that the next
    /// answer sets it back to zero: it is caught as it is about to be replaced.
    double nextHum() {
        double heard = 0.0;
        const auto subscription = velmorindal.objectWillChange.subscribe([&] {
            if (const double duration = velmorindal.detectedDuration.get(); duration > 0.0) {
                heard = duration;
            }
        });
        EXPECT_TRUE(dispatch.runMainWorkUntil([&] { return heard > 0.0; }));
        return heard;
    }

    /// A moment of the start of a run at which the main thread asks it to stop: `reached` says that it has
    /// come.
    void stopWhileStarting(const std::function<bool()>& reached) {
        const auto deadline = std::chrono::steady_clock::now() + ManualDispatch::bound;
        while (!reached() && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::yield();
        }
        ASSERT_TRUE(reached());
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

TEST_F(CalibrationPollingTest, AReportBecomesTheDetectedClarityWidenedAndNotCut) {
    dongle.reportClarity(0.37F);
    PrintedLines lines;
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(dispatch.runMainWorkUntil([this] { return velmorindal.detectedClarity.get() > 0.0; }));
    EXPECT_EQ(velmorindal.detectedClarity.get(), 0.3700000047683716);
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::clarity);
    velmorindal.stopPollingAndWait();
    EXPECT_THAT(lines.take(),
                testing::StartsWith("Starting clarity polling\nDevice configured. Polling now.\n"
                                    "Have a reading of  0.37\n"));
}

TEST_F(CalibrationPollingTest, AStoppedClarityRunLeavesAutoTuneAndZeroesItsReading) {
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(dispatch.runMainWorkUntil([this] { return velmorindal.detectedClarity.get() > 0.0; }));
    velmorindal.stopPollingAndWait();
    dispatch.runPendingMainWork();
    EXPECT_EQ(velmorindal.detectedClarity.get(), 0.0);
    EXPECT_FALSE(velmorindal.bgIsProcessing);
    expectOneRunOnTheWire();
    EXPECT_TRUE(deviceHasStoppedReporting());
}

TEST_F(CalibrationPollingTest, TheFinalZeroComesAfterTheLastReading) {
    dongle.reportClarity(0.6F);
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(runUntil(PollingState::clarity));
    // Readings pile up unapplied, then the run winds down while the main thread stands still.
    EXPECT_TRUE(dispatch.waitForPendingMainWork(3));
    velmorindal.pollingState = PollingState::none;
    while (velmorindal.bgIsProcessing) {
        std::this_thread::yield();
    }
    std::vector<std::string> values;
    while (dispatch.pendingMainWork() > 0) {
        dispatch.runOneMainWork();
        values.push_back(velmorindal.detectedClarity.get() > 0.0 ? "reading" : "zero");
    }
    ASSERT_THAT(values, SizeIs(Ge(4U)));
    EXPECT_EQ(values.back(), "zero");
    values.pop_back();
    EXPECT_THAT(values, Each("reading"));
}

TEST_F(CalibrationPollingTest, TheClarityStateIsSetOnlyAfterTheDeviceHasAccepted) {
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(dispatch.waitForPendingMainWork(1));
    EXPECT_THAT(dongle.receivedFrames(), ElementsAre(startFrame));
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
    EXPECT_TRUE(velmorindal.bgIsProcessing);
    dispatch.runOneMainWork();
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::clarity);
}

TEST_F(CalibrationPollingTest, ClarityWithoutAPortSendsNothingAndLeavesTheState) {
    velmorindal.serialPort.get()->closePort();
    velmorindal.serialPort = nullptr;
    PrintedLines lines;
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(runUntilIdle());
    EXPECT_THAT(dongle.receivedFrames(), IsEmpty());
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
    EXPECT_EQ(lines.take(), "Starting clarity polling\n");
}

TEST_F(CalibrationPollingTest, AShortWriteOfTheStartEndsTheRun) {
    const ShortWrite shortWrite{Type::autoTune, 1, 2};
    PrintedLines lines;
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(runUntilIdle());
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
    EXPECT_EQ(lines.take(), "Starting clarity polling\nCould not write my whole sequence.\n");
}

class RefusedStartTest : public CalibrationPollingTest, public testing::WithParamInterface<Fault> {};

TEST_P(RefusedStartTest, EndsTheClarityRunWithoutAnotherByte) {
    dongle.onFirst(Type::autoTune, GetParam());
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(runUntilIdle());
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
    EXPECT_EQ(velmorindal.detectedClarity.get(), 0.0);
    EXPECT_EQ(velmorindal.lastError.get(), std::nullopt);
    EXPECT_THAT(dongle.receivedFrames(), ElementsAre(startFrame));
}

INSTANTIATE_TEST_SUITE_P(EveryRefusal, RefusedStartTest,
                         testing::Values(Fault::wrongMarker(), Fault::errorFrame(), Fault::silence(),
                                         Fault::halfAHeader(), Fault::unplugBeforeAnswer()),
                         [](const auto& test) {
                             std::string name = test.param.name();
                             std::erase_if(name, [](char character) { return std::isalnum(character) == 0; });
                             return name;
                         });

TEST_F(CalibrationPollingTest, FramesOfOtherTypesAndUnknownOnesAreIgnoredWithoutAMessage) {
    dongle.reportClarity(0.8F);
    dongle.onReport(1, Fault::anotherFrameFirst());
    dongle.onReport(2, Fault::answerWith({0x72, 0x62, 0x77, 0x00}));
    dongle.onReport(3, Fault::answerWith({0x72, 0x62, 0x41, 0x01, 0x00}));
    // A kind and a marker that are none, and a version text that is not UTF-8.
    dongle.onReport(4, Fault::answerWith({0x71, 0x61, 0x70, 0x01, 0x00}));
    dongle.onReport(5, Fault::answerWith({0x72, 0x62, 0x76, 0x02, 0xC3, 0x28}));
    PrintedLines lines;
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(runUntil(PollingState::clarity));
    EXPECT_TRUE(dispatch.waitForPendingMainWork(3));
    velmorindal.stopPollingAndWait();
    const std::string printed = lines.take();
    const std::regex nothingElse{
        "Starting clarity polling\nDevice configured\\. Polling now\\.\n(Have a reading of  0\\.8\n)+"};
    EXPECT_TRUE(std::regex_match(printed, nothingElse)) << printed;
}

TEST_F(CalibrationPollingTest, AnInvalidReportIsNotAReading) {
    dongle.reportClarity(0.8F);
    dongle.onReport(1, Fault::payloadOneByteShorter());
    dongle.onReport(2, Fault::wrongMarker());
    PrintedLines lines;
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(dispatch.runMainWorkUntil([this] { return velmorindal.detectedClarity.get() > 0.0; }));
    velmorindal.stopPollingAndWait();
    EXPECT_THAT(lines.take(),
                testing::StartsWith("Starting clarity polling\nDevice configured. Polling now.\n"
                                    "Expected binary message ( 98 ). Got  97\nHave a reading of  0.8\n"));
}

TEST_F(CalibrationPollingTest, TheLastHumBecomesSecondsAndIsPrinted) {
    velmorindal.beginDurationPolling();
    EXPECT_TRUE(runUntil(PollingState::duration));
    EXPECT_TRUE(dongle.waitForFrames(3, ManualDispatch::bound));
    PrintedLines lines;
    dongle.humOnce(25);
    EXPECT_EQ(nextHum(), 1.0);
    velmorindal.stopPollingAndWait();
    EXPECT_EQ(lines.take(), "Last hum duration was  1.0 s\n");
}

TEST_F(CalibrationPollingTest, AHumOfNoTicksIsZeroAndPrintsNothing) {
    PrintedLines lines;
    velmorindal.beginDurationPolling();
    EXPECT_TRUE(runUntil(PollingState::duration));
    EXPECT_TRUE(dongle.waitForFrames(5, ManualDispatch::bound));
    velmorindal.stopPollingAndWait();
    EXPECT_EQ(lines.take(), "");
    EXPECT_EQ(velmorindal.detectedDuration.get(), 0.0);
}

TEST_F(CalibrationPollingTest, TheHumFromBeforeTheRunIsAskedAwayFirst) {
    dongle.humOnce(50);
    velmorindal.beginDurationPolling();
    EXPECT_TRUE(runUntil(PollingState::duration));
    EXPECT_TRUE(dongle.waitForFrames(4, ManualDispatch::bound));
    double highest = 0.0;
    velmorindal.pollingState = PollingState::none;
    dispatch.waitForBackground();
    while (dispatch.pendingMainWork() > 0) {
        dispatch.runOneMainWork();
        highest = std::max(highest, velmorindal.detectedDuration.get());
    }
    EXPECT_EQ(highest, 0.0);
}

TEST_F(CalibrationPollingTest, TheDurationStateIsSetBeforeTheFirstQuery) {
    velmorindal.beginDurationPolling();
    EXPECT_TRUE(dispatch.waitForPendingMainWork(1));
    EXPECT_THAT(dongle.receivedFrames(), IsEmpty());
    dispatch.runOneMainWork();
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::duration);
    EXPECT_TRUE(dongle.waitForFrames(1, ManualDispatch::bound));
    EXPECT_EQ(dongle.receivedFrames().front(), lastHumQuery);
}

TEST_F(CalibrationPollingTest, ASilentDeviceIsNotAGoodStart) {
    dongle.staySilentOn(Type::lastHumDuration);
    PrintedLines lines;
    EXPECT_THAT(changesWhile([this] {
                    velmorindal.beginDurationPolling();
                    while (velmorindal.bgIsProcessing) {
                        std::this_thread::yield();
                    }
                }),
                ElementsAre("pollingState duration", "pollingState none"));
    EXPECT_EQ(lines.take(), "Not a good start to duration polling NoConnectionError\n");
    EXPECT_THAT(dongle.receivedFrames(), SizeIs(1));
}

TEST_F(CalibrationPollingTest, AnUnansweredOrInvalidLaterQueryIsSkippedAndTheLoopGoesOn) {
    dongle.onOccurrence(3, Type::lastHumDuration, Fault::payloadOneByteShorter());
    dongle.onOccurrence(4, Type::lastHumDuration, Fault::silence());
    velmorindal.beginDurationPolling();
    EXPECT_TRUE(
        dispatch.runMainWorkUntil([this] { return dongle.timesReceived(Type::lastHumDuration) >= 6; }));
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::duration);
    dongle.humOnce(10);
    EXPECT_EQ(nextHum(), 10 * 0.04);
}

TEST_F(CalibrationPollingTest, StoppingWaitsForARunThatItselfWaitsForTheMainThread) {
    velmorindal.beginClarityPolling();
    // The run has been accepted and now waits for the main thread to set the state.
    EXPECT_TRUE(dispatch.waitForPendingMainWork(1));
    velmorindal.stopPollingAndWait();
    EXPECT_FALSE(velmorindal.bgIsProcessing);
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
    expectOneRunOnTheWire();
}

TEST_F(CalibrationPollingTest, StoppingWinsOverAClarityRunAtEveryMomentOfItsStart) {
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

TEST_F(CalibrationPollingTest, StoppingWinsOverADurationRunAtEveryMomentOfItsStart) {
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

TEST_F(CalibrationPollingTest, TwoQuickStartsAreOneRun) {
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(velmorindal.bgIsProcessing);
    velmorindal.beginClarityPolling();
    velmorindal.beginDurationPolling();
    EXPECT_TRUE(runUntil(PollingState::clarity));
    velmorindal.stopPollingAndWait();
    expectOneRunOnTheWire();
}

TEST_F(CalibrationPollingTest, StoppingWhenNothingRunsReturnsAtOnceAndAnnouncesNothing) {
    int announcements = 0;
    const auto subscription = velmorindal.objectWillChange.subscribe([&] { ++announcements; });
    velmorindal.stopPollingAndWait();
    EXPECT_EQ(announcements, 0);
}

TEST_F(CalibrationPollingTest, SwitchingFromClarityToDurationAndBackKeepsThePortToOneRun) {
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(runUntil(PollingState::clarity));
    velmorindal.stopPollingAndWait();
    velmorindal.beginDurationPolling();
    EXPECT_TRUE(runUntil(PollingState::duration));
    EXPECT_TRUE(
        dispatch.runMainWorkUntil([this] { return dongle.timesReceived(Type::lastHumDuration) >= 3; }));
    velmorindal.stopPollingAndWait();
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(dispatch.runMainWorkUntil([this] { return velmorindal.detectedClarity.get() > 0.0; }));
    velmorindal.stopPollingAndWait();
    EXPECT_TRUE(deviceHasStoppedReporting());
    EXPECT_EQ(dongle.skippedBytes(), 0U);
}

TEST_F(CalibrationPollingTest, TheStopOrderIsSentOnceAndItsFailureIsNotReported) {
    dongle.reportClarities({});
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(runUntil(PollingState::clarity));
    // From here on the device neither reports nor acknowledges.
    dongle.prepare([](DeviceState& device) { device.autoTuneChannel = 0; });
    dongle.onNext(Type::autoTune, Fault::silence());
    EXPECT_TRUE(dispatch.runMainWorkUntil(
        [this] { return !velmorindal.bgIsProcessing || dispatch.pendingMainWork() == 0; }));
    velmorindal.stopPollingAndWait();
    dispatch.runPendingMainWork();
    EXPECT_FALSE(velmorindal.bgIsProcessing);
    EXPECT_EQ(velmorindal.detectedClarity.get(), 0.0);
    EXPECT_EQ(velmorindal.lastError.get(), std::nullopt);
    expectOneRunOnTheWire();
}

TEST_F(CalibrationPollingTest, AnInvalidAnswerOfTheLastHumIsNoReading) {
    velmorindal.beginDurationPolling();
    EXPECT_TRUE(runUntil(PollingState::duration));
    EXPECT_TRUE(
        dispatch.runMainWorkUntil([this] { return dongle.timesReceived(Type::lastHumDuration) >= 2; }));
    dongle.onEvery(Type::lastHumDuration, Fault::payloadOneByteShorter());
    const std::size_t before = dongle.timesReceived(Type::lastHumDuration);
    EXPECT_TRUE(
        dispatch.runMainWorkUntil([&] { return dongle.timesReceived(Type::lastHumDuration) >= before + 2; }));
    dispatch.runPendingMainWork();
    int announcements = 0;
    const auto subscription = velmorindal.objectWillChange.subscribe([&] { ++announcements; });
    EXPECT_TRUE(
        dispatch.runMainWorkUntil([&] { return dongle.timesReceived(Type::lastHumDuration) >= before + 6; }));
    EXPECT_EQ(announcements, 0);
}

TEST_F(CalibrationPollingTest, TheFirstAnswerIsDiscardedAndTheReadingSetToZero) {
    velmorindal.detectedDuration = 2.0;
    dongle.humOnce(50);
    // The second query stays open, so that nothing but the reset follows the first one.
    dongle.onOccurrence(2, Type::lastHumDuration, Fault::silence());
    velmorindal.beginDurationPolling();
    EXPECT_TRUE(runUntil(PollingState::duration));
    EXPECT_TRUE(dongle.waitForFrames(2, ManualDispatch::bound));
    EXPECT_THAT(changesMadeBy([this] { dispatch.runOneMainWork(); }), ElementsAre("detectedDuration 0.0"));
    EXPECT_EQ(dispatch.pendingMainWork(), 0U);
}

TEST_F(CalibrationPollingTest, ClarityThatCannotStartLeavesWhateverStateThereIs) {
    velmorindal.serialPort.get()->closePort();
    velmorindal.pollingState = PollingState::duration;
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(runUntilIdle());
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::duration);
}

}  // namespace
}  // namespace velmorindal
