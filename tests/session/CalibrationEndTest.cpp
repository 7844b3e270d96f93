#include "CalibrationPollingTest.h"
#include "PrintedText.h"

namespace velmorindal {
namespace {

using Type = VelmorindalMessageType;

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
    EXPECT_EQ(timesFound(printed, "Have a reading of  0\\.75\n"), 1);
    EXPECT_LE(timesFound(printed, "Have a reading of  0\\.25\n"), 1) << printed;
}

TEST_F(CalibrationEndTest, ADonglePulledOutMidStreamLeavesARunThatStillStops) {
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(runUntil(PollingState::clarity));
    dongle.sendReport(0.75F);
    EXPECT_TRUE(dispatch.runMainWorkUntil([this] { return velmorindal.detectedClarity.get() > 0.0; }));
    dongle.unplug();
    dispatch.runPendingMainWork();
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::clarity);
    EXPECT_EQ(velmorindal.detectedClarity.get(), 0.75);
    velmorindal.stopPollingAndWait();
    dispatch.runPendingMainWork();
    EXPECT_EQ(velmorindal.detectedClarity.get(), 0.0);
}

TEST_F(CalibrationEndTest, ADonglePulledOutAfterAHumLeavesItsDurationUntilTheRunIsStopped) {
    // The answer that reports the hum is the last one.
    constexpr std::size_t last = 4;
    dongle.onOccurrence(last, Type::lastHumDuration, Fault::unplugAfterAnswer());
    dongle.onOccurrence(last + 1, Type::lastHumDuration, Fault::unplugBeforeAnswer());
    dongle.whenReceived([this](std::span<const std::uint8_t>) {
        if (dongle.timesReceived(Type::lastHumDuration) == last) {
            dongle.humOnce(50);
        }
    });
    PrintedLines lines;
    velmorindal.beginDurationPolling();
    EXPECT_TRUE(dispatch.runMainWorkUntil(
        [this] { return velmorindal.detectedDuration.get() > 0.0 && !dongle.isPlugged(); }));
    dispatch.runPendingMainWork();
    EXPECT_EQ(velmorindal.detectedDuration.get(), 2.0);
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::duration);

    velmorindal.stopPollingAndWait();
    dispatch.runPendingMainWork();

    EXPECT_EQ(velmorindal.detectedDuration.get(), 0.0);
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
    const std::string printed = lines.take();
    EXPECT_THAT(printed, testing::MatchesRegex(
                             "Last hum duration was  2\\.0 s\n(Could not write my whole sequence\\.\n)*"));
}

}  // namespace
}  // namespace velmorindal
