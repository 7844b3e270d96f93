#include <algorithm>
#include <ostream>

#include "CalibrationPollingTest.h"

namespace velmorindal {
namespace {

using namespace std::chrono_literals;

struct Loss {
    const char* name;
    PollingState run;
    void (*lose)(SimulatedDongle& dongle, VelmorindalSwitch& velmorindal);
    /// Of one turn of the run without its port.
    std::string line;
};

void PrintTo(const Loss& loss, std::ostream* out) {
    *out << loss.name;
}

void pullOut(SimulatedDongle& dongle, VelmorindalSwitch& /*velmorindal*/) {
    dongle.unplug();
}

void closePort(SimulatedDongle& /*dongle*/, VelmorindalSwitch& velmorindal) {
    velmorindal.serialPort.get()->closePort();
}

void takePortAway(SimulatedDongle& /*dongle*/, VelmorindalSwitch& velmorindal) {
    velmorindal.serialPort.get()->closePort();
    velmorindal.serialPort = nullptr;
}

class LostPortTest : public CalibrationPollingTest, public testing::WithParamInterface<Loss> {
  protected:
    void begin() {
        if (GetParam().run == PollingState::clarity) {
            velmorindal.beginClarityPolling();
            ASSERT_TRUE(
                dispatch.runMainWorkUntil([this] { return velmorindal.detectedClarity.get() > 0.0; }));
        } else {
            velmorindal.beginDurationPolling();
            ASSERT_TRUE(dispatch.runMainWorkUntil(
                [this] { return dongle.timesReceived(VelmorindalMessageType::lastHumDuration) >= 3; }));
        }
        GetParam().lose(dongle, velmorindal);
        // What was under way has ended.
        system.sleepFor(3s);
    }
};

TEST_P(LostPortTest, LeavesARunThatPrintsTwoLinesASecondAtMost) {
    begin();
    PrintedLines lines;

    system.sleepFor(10s);

    const std::string printed = lines.take();
    std::string twenty;
    for (int turn = 0; turn < 20; ++turn) {
        twenty += GetParam().line;
    }
    EXPECT_EQ(printed, twenty);
    EXPECT_EQ(velmorindal.pollingState.get(), GetParam().run);
}

TEST_P(LostPortTest, LeavesARunThatStopsWithinTwoChecks) {
    begin();

    EXPECT_LE(secondsTakenBy([this] { velmorindal.stopPollingAndWait(); }), 0.04);

    EXPECT_FALSE(velmorindal.bgIsProcessing);
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
}

TEST_P(LostPortTest, LeavesARunThatTheStateOfTheOtherDisplayEndsAtItsNextLook) {
    begin();
    // Somewhere in the middle of a turn.
    system.sleepFor(110ms);

    velmorindal.pollingState =
        GetParam().run == PollingState::clarity ? PollingState::duration : PollingState::clarity;

    EXPECT_LE(secondsTakenBy([this] {
                  EXPECT_TRUE(dispatch.runMainWorkUntil([this] { return !velmorindal.bgIsProcessing; }));
              }),
              0.02);
}

INSTANTIATE_TEST_SUITE_P(EveryRun, LostPortTest,
                         testing::Values(Loss{"ClarityPulledOut", PollingState::clarity, pullOut, ""},
                                         Loss{"ClarityClosed", PollingState::clarity, closePort, ""},
                                         Loss{"ClarityTakenAway", PollingState::clarity, takePortAway, ""},
                                         Loss{"DurationPulledOut", PollingState::duration, pullOut,
                                              "Could not write my whole sequence.\n"},
                                         Loss{"DurationClosed", PollingState::duration, closePort,
                                              "Caught an error on write\n"},
                                         Loss{"DurationTakenAway", PollingState::duration, takePortAway, ""}),
                         [](const auto& loss) { return std::string{loss.param.name}; });

}  // namespace
}  // namespace velmorindal
