#include "CalibrationPollingTest.h"
#include "PrintedText.h"

namespace velmorindal {
namespace {

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

}  // namespace
}  // namespace velmorindal
