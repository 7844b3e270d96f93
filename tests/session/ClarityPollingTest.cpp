#include "CalibrationPollingTest.h"

namespace velmorindal {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::Ge;
using testing::IsEmpty;
using testing::SizeIs;

class ClarityPollingTest : public CalibrationPollingTest {};

TEST_F(ClarityPollingTest, AReportBecomesTheDetectedClarityWidenedAndNotCut) {
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

TEST_F(ClarityPollingTest, AReadingIsCountedBeforeItIsAnnounced) {
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(runUntil(PollingState::clarity));
    std::vector<std::uint64_t> counts;
    const auto subscription =
        velmorindal.objectWillChange.subscribe([&] { counts.push_back(velmorindal.readingsReceived); });
    EXPECT_TRUE(dispatch.runMainWorkUntil([&] { return !counts.empty(); }));
    EXPECT_EQ(counts.front(), 1U);
}

TEST_F(ClarityPollingTest, LineSettingsThatAnotherProgramChangedAreRestoredWhenNothingArrives) {
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(runUntil(PollingState::clarity));
    dongle.prepare([](DeviceState& device) { device.autoTuneChannel = 0; });
    const int descriptor = velmorindal.serialPort.get()->fileDescriptor().value();
    termios attributes{};
    EXPECT_TRUE(system.lineAttributes(descriptor, attributes));
    attributes.c_cc[VMIN] = 1;
    EXPECT_TRUE(system.setLineAttributes(descriptor, attributes));

    EXPECT_TRUE(dispatch.runMainWorkUntil(
        [&] { return system.lineAttributes(descriptor, attributes) && attributes.c_cc[VMIN] == 0; }));
}

TEST_F(ClarityPollingTest, TheFinalZeroComesAfterTheLastReading) {
    dongle.reportClarity(0.6F);
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(runUntil(PollingState::clarity));
    // Readings pile up unapplied, then the run winds down while the main thread stands still.
    EXPECT_TRUE(dispatch.waitForPendingMainWork(3));
    velmorindal.pollingState = PollingState::none;
    ASSERT_TRUE(dispatch.waitUntil([this] { return !velmorindal.bgIsProcessing; }));
    std::vector<std::string> values;
    while (dispatch.pendingMainWork() > 0) {
        dispatch.runOneMainWork();
        values.emplace_back(velmorindal.detectedClarity.get() > 0.0 ? "reading" : "zero");
    }
    ASSERT_THAT(values, SizeIs(Ge(4U)));
    EXPECT_EQ(values.back(), "zero");
    values.pop_back();
    EXPECT_THAT(values, Each("reading"));
}

TEST_F(ClarityPollingTest, TheClarityStateIsSetOnlyAfterTheDeviceHasAccepted) {
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(dispatch.waitForPendingMainWork(1));
    EXPECT_THAT(dongle.receivedFrames(), ElementsAre(startFrame));
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
    EXPECT_TRUE(velmorindal.bgIsProcessing);
    dispatch.runOneMainWork();
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::clarity);
}

TEST_F(ClarityPollingTest, ClarityWithoutAPortSendsNothingAndLeavesTheState) {
    velmorindal.serialPort.get()->closePort();
    velmorindal.serialPort = nullptr;
    PrintedLines lines;
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(runUntilIdle());
    EXPECT_THAT(dongle.receivedFrames(), IsEmpty());
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
    EXPECT_EQ(lines.take(), "Starting clarity polling\n");
}

TEST_F(ClarityPollingTest, FramesOfOtherTypesAndUnknownOnesAreIgnoredWithoutAMessage) {
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
    EXPECT_THAT(
        printed,
        testing::MatchesRegex(
            "Starting clarity polling\nDevice configured\\. Polling now\\.\n(Have a reading of  0\\.8\n)+"));
}

TEST_F(ClarityPollingTest, AnInvalidReportDoesNotDelayTheNextReading) {
    dongle.reportClarity(0.8F);
    dongle.onReport(1, Fault::payloadOneByteShorter());
    dongle.onReport(2, Fault::wrongMarker());
    PrintedLines lines;
    velmorindal.beginClarityPolling();
    // The next one is read as soon as it comes.
    EXPECT_LT(secondsTakenBy([this] {
                  EXPECT_TRUE(
                      dispatch.runMainWorkUntil([this] { return velmorindal.detectedClarity.get() > 0.0; }));
              }),
              0.5);
    velmorindal.stopPollingAndWait();
    EXPECT_THAT(lines.take(),
                testing::StartsWith("Starting clarity polling\nDevice configured. Polling now.\n"
                                    "Expected binary message ( 98 ). Got  97\nHave a reading of  0.8\n"));
}

TEST_F(ClarityPollingTest, ClarityThatCannotStartLeavesWhateverStateThereIs) {
    velmorindal.serialPort.get()->closePort();
    velmorindal.pollingState = PollingState::duration;
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(runUntilIdle());
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::duration);
}

TEST_F(ClarityPollingTest, TheStateOfTheOtherDisplayEndsTheRun) {
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(dispatch.runMainWorkUntil([this] { return velmorindal.detectedClarity.get() > 0.0; }));

    velmorindal.pollingState = PollingState::duration;
    system.sleepFor(std::chrono::seconds{1});

    ASSERT_FALSE(velmorindal.bgIsProcessing);
    dispatch.runPendingMainWork();
    EXPECT_TRUE(deviceHasStoppedReporting());
    EXPECT_EQ(velmorindal.detectedClarity.get(), 0.0);
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::duration);
}

/// How a calibration run ends, beside a device that reports only what the test sends.
class CalibrationEndTest : public CalibrationPollingTest {
  protected:
    CalibrationEndTest() : CalibrationPollingTest{{.reportInterval = std::chrono::microseconds{0}}} {}
};

TEST_F(CalibrationEndTest, AfterTheStopOneFurtherReportIsProcessedAtMost) {
    PrintedLines lines;
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(runUntil(PollingState::clarity));
    dongle.sendReport(0.75F);
    EXPECT_TRUE(dispatch.runMainWorkUntil([this] { return velmorindal.detectedClarity.get() == 0.75; }));

    velmorindal.pollingState = PollingState::none;
    for (int report = 0; report < 20; ++report) {
        dongle.sendReport(0.25F);
    }
    EXPECT_TRUE(dispatch.runMainWorkUntil([this] { return !velmorindal.bgIsProcessing; }));

    const std::string printed = lines.take();
    EXPECT_EQ(occurrences(printed, "Have a reading of  0.75\n"), 1);
    EXPECT_LE(occurrences(printed, "Have a reading of  0.25\n"), 1) << printed;
}

}  // namespace
}  // namespace velmorindal
