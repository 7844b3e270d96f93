#include <fcntl.h>
#include <gtest/gtest.h>

#include "WholeRunTest.h"

namespace velmorindal {
namespace {

using Type = VelmorindalMessageType;
using Buttons = std::vector<std::string>;

constexpr const char* noDongleText =
    "Could not detect Velmorindal Dongle.\nPlease ensure that it is plugged into a USB port.";
constexpr const char* thrownText = "Invalid message received from server.\n\n(Error code: VC/TC)";
constexpr const char* errorLine = "Unknown Error. Please quit and restart this program.";

struct FailedConnection {
    const char* name;
    void (*spoil)(SimulatedDongle& dongle);
    const char* message;
    const char* statusLine;
    /// Of the conversation: the probe, version, status, protocol, output path, duration, thresholds, keys.
    std::size_t framesSent;
};

/// One for each way in which a connection ends; what each exchange leaves is in the fault matrix.
const std::vector<FailedConnection> failedConnections{
    {"NoDongle", [](SimulatedDongle& dongle) { dongle.unplug(); }, noDongleText, errorLine, 0},
    {"SilentVersionCheck",
     [](SimulatedDongle& dongle) { dongle.onOccurrence(2, Type::version, Fault::silence()); },
     "The device sent an unrecognized response.\n\n(Error code: CC/NR)", errorLine, 2},
    {"LinkDown",
     [](SimulatedDongle& dongle) { dongle.prepare([](DeviceState& device) { device.linkState = 0; }); },
     "Please ensure that your Velmorindal is turned on and in configuration mode.", "Not Connected", 3},
    {"SilentProtocol", [](SimulatedDongle& dongle) { dongle.staySilentOn(Type::protocolSelect); }, thrownText,
     errorLine, 4},
    {"InvalidKeyboard",
     [](SimulatedDongle& dongle) { dongle.onFirst(Type::keyboardConfig, Fault::wrongMarker()); },
     "Invalid response from dongle (Error code: VCKC/IV)", errorLine, 8},
    {"PulledOutWhileReading",
     [](SimulatedDongle& dongle) { dongle.onFirst(Type::humDuration, Fault::unplugBeforeAnswer()); },
     thrownText, errorLine, 6},
};

class FailedConnectionTest : public WholeRunTest, public testing::WithParamInterface<FailedConnection> {};

TEST_P(FailedConnectionTest, SaysSoInADialogAndOnThePageAndLeavesOnlyClose) {
    GetParam().spoil(dongle);
    driver.press("Next");
    EXPECT_EQ(driver.dialog(), (WizardDriver::ShownDialog{"Connection Failed", GetParam().message, {"OK"}}));
    driver.press("OK");
    EXPECT_FALSE(driver.dialogIsShown());
    EXPECT_TRUE(driver.shows(GetParam().statusLine));
    EXPECT_EQ(driver.buttons(), Buttons{"Close"});
    EXPECT_EQ(dongle.receivedFrames().size(), GetParam().framesSent);
    driver.press("Close");
    EXPECT_TRUE(driver.hasLeft());
}

INSTANTIATE_TEST_SUITE_P(EveryFailure, FailedConnectionTest, testing::ValuesIn(failedConnections),
                         [](const auto& test) { return std::string{test.param.name}; });

TEST_F(WholeRunTest, APortThatIsTakenBetweenFindingAndOpeningItSaysSo) {
    int held = -1;
    const auto subscription = driver.velmorindal().objectWillChange.subscribe([&] {
        if (held == -1 && dongle.timesReceived(Type::version) == 1) {
            // Refused while it is being probed. There will be another change before it is opened for good.
            held = system.openExclusively(dongle.path(), O_RDWR, {});
        }
    });
    driver.press("Next");
    EXPECT_EQ(driver.dialog(),
              (WizardDriver::ShownDialog{"Connection Failed",
                                         "Error connecting to the serial port. It might already be in use.",
                                         {"OK"}}));
    driver.press("OK");
    EXPECT_EQ(driver.buttons(), Buttons{"Close"});
}

TEST_F(WholeRunTest, TwoDonglesConnectWithAWarning) {
    const InProcessDongle second{system, directory.path(), {.name = "cu.usbmodem-second"}};
    driver.press("Next");
    EXPECT_EQ(driver.dialog(), (WizardDriver::ShownDialog{
                                   "Warning",
                                   "Multiple dongles found. To ensure that you program the correct device, "
                                   "please remove any extra USB dongles.",
                                   {"OK"}}));
    driver.press("OK");
    EXPECT_TRUE(driver.shows("Connection successful. Press \"Next\" to continue."));
    EXPECT_EQ(driver.buttons(), (Buttons{"Cancel", "Back", "Next"}));
}

using WaitingWindowTest = WholeRunTest;

TEST_F(WaitingWindowTest, AnswersItsButtonsWhileASilentDeviceIsWaitedFor) {
    dongle.staySilentOn(Type::status);
    driver.press("Next");
    ASSERT_TRUE(driver.reaches([&] { return dongle.timesReceived(Type::status) == 1; }));
    EXPECT_TRUE(driver.shows("Connecting..."));
    EXPECT_EQ(driver.buttons(), Buttons{"Cancel"});
    driver.press("Cancel");
    EXPECT_EQ(driver.dialog().title, "Close Program?");
    driver.press("No");
    EXPECT_EQ(driver.velmorindal().connectionState.get(), ConnectionStatus::connecting);
    EXPECT_EQ(driver.dialog().title, "Connection Failed");
}

TEST_F(WaitingWindowTest, AnswersItsButtonsDuringAFloodOfForeignFrames) {
    dongle.onFirst(Type::humDuration, Fault::floodFirst(10'000));
    driver.press("Next");
    driver.press("Cancel");
    EXPECT_EQ(driver.dialog().message,
              "No changes have been written to the device;\nany updates will be lost.\n\nAre you sure you "
              "want to quit?");
    driver.press("No");
    EXPECT_TRUE(driver.reaches(
        [&] { return driver.velmorindal().connectionState.get() == ConnectionStatus::connected; }));
}

TEST_F(WaitingWindowTest, LeavesAtOnceWhileConnecting) {
    dongle.staySilentOn(Type::status);
    driver.press("Next");
    ASSERT_TRUE(driver.reaches([&] { return dongle.timesReceived(Type::status) == 1; }));
    driver.press("Cancel");
    driver.press("Yes");
    EXPECT_TRUE(driver.hasLeft());
    EXPECT_EQ(driver.velmorindal().connectionState.get(), ConnectionStatus::disconnected);
}

}  // namespace
}  // namespace velmorindal
