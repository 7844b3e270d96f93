#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "WholeRunTest.h"

namespace velmorindal {
namespace {

using Type = VelmorindalMessageType;
using Buttons = std::vector<std::string>;

constexpr std::size_t framesOfConnecting = 8;
const std::string refused = "Failed to write instruction to device.\n\nError code: ";
const std::string lost = "Disconnection during writing process. Your changes were not saved.\n\nError code: ";
constexpr const char* restart =
    "\n\nPlease restart the Velmorindal in configuration mode and run this program again.";

/// One for each way in which a write fails; what each command leaves is in the fault matrix.
struct FailedWrite {
    const char* name;
    const char* output;
    /// The type whose command fails. The connection has queried the readable ones once before.
    Type type;
    Fault fault;
    std::string text;
    std::size_t framesSent;
};

const std::vector<FailedWrite> failedWrites{
    {"Refused", "Bluetooth Keyboard", Type::protocolSelect, Fault::wrongMarker(), refused + "PS/SC", 1},
    {"Silent", "Switch Output", Type::relayConfig, Fault::silence(), lost + "RC/TC", 4},
    {"PulledOut", "Switch Output", Type::keyboardConfig, Fault::unplugBeforeAnswer(), lost + "KC/TC", 6},
    {"NotStored", "Switch Output", Type::writeSettings, Fault::wrongMarker(), refused + "WS/SC", 7},
};

class WritingTest : public WholeRunTest {
  protected:
    void walkToSave(const std::string& output) {
        driver.walkTo(wizardState::Output);
        driver.choose(output);
        driver.walkTo(wizardState::Summary);
    }
};

class FailedWriteTest : public WritingTest, public testing::WithParamInterface<FailedWrite> {};

TEST_P(FailedWriteTest, SaysWhereItFailedOffersAFileAndSendsNothingMore) {
    walkToSave(GetParam().output);
    dongle.onNext(GetParam().type, GetParam().fault);
    driver.press("Save");
    driver.press("Yes");
    ASSERT_TRUE(driver.reaches([&] { return driver.dialogIsShown(); }));
    EXPECT_EQ(driver.dialog(), (WizardDriver::ShownDialog{"Save Failed", GetParam().text + restart, {"OK"}}));
    driver.press("OK");
    EXPECT_EQ(driver.dialog(),
              (WizardDriver::ShownDialog{
                  "Write Configuration File?",
                  "There was an error writing your configuration to the device.\n\nYour configuration can be "
                  "saved to disk in order to try again.\n\nWould you like to save these settings to a file?",
                  {"Yes", "No"}}));
    driver.press("No");
    EXPECT_FALSE(driver.dialogIsShown());
    EXPECT_EQ(driver.buttons(), (Buttons{"Cancel", "Back", "Save"}));
    EXPECT_FALSE(driver.shows("Settings successfully written. Please restart your Velmorindal."));
    EXPECT_EQ(dongle.receivedFrames().size(), framesOfConnecting + GetParam().framesSent);
    EXPECT_EQ(driver.velmorindal().connectionState.get(), ConnectionStatus::error);
}

INSTANTIATE_TEST_SUITE_P(EveryWay, FailedWriteTest, testing::ValuesIn(failedWrites),
                         [](const auto& test) { return std::string{test.param.name}; });

TEST_F(WritingTest, ASecondTryAfterAFailedWriteSaysThatTheConnectionIsLost) {
    walkToSave("Switch Output");
    dongle.onNext(Type::relayConfig, Fault::silence());
    driver.press("Save");
    driver.press("Yes");
    driver.press("OK");
    driver.press("No");
    const std::size_t sent = dongle.receivedFrames().size();
    driver.press("Save");
    driver.press("Yes");
    EXPECT_EQ(driver.dialog().message,
              "The Velmorindal is not connected, or the connection has been lost.\n\nPlease ensure your "
              "device is connected and run this program again." +
                  std::string{restart});
    EXPECT_EQ(dongle.receivedFrames().size(), sent);
}

TEST_F(WritingTest, DecliningTheQuestionSendsNothing) {
    walkToSave("USB Keyboard");
    driver.press("Save");
    driver.press("No");
    EXPECT_FALSE(driver.dialogIsShown());
    EXPECT_EQ(dongle.receivedFrames().size(), framesOfConnecting);
    EXPECT_EQ(driver.buttons(), (Buttons{"Cancel", "Back", "Save"}));
}

TEST_F(WritingTest, ShowsOnlyCancelWhileItRunsAndAnswersIt) {
    walkToSave("Switch Output");
    dongle.onNext(Type::humDuration, Fault::lateBy(std::chrono::milliseconds{1000}));
    driver.press("Save");
    driver.press("Yes");
    ASSERT_TRUE(driver.reaches(
        [&] { return driver.velmorindal().connectionState.get() == ConnectionStatus::writing; }));
    EXPECT_EQ(driver.buttons(), Buttons{"Cancel"});
    EXPECT_TRUE(driver.shows("Writing data..."));
    driver.press("Cancel");
    EXPECT_EQ(driver.dialog().title, "Close Program?");
    driver.press("No");
    EXPECT_EQ(driver.dialog().title, "Write Configuration File?");
}

TEST_F(WritingTest, QuittingDuringAWriteWaitsForItsEnd) {
    walkToSave("Switch Output");
    dongle.onNext(Type::humDuration, Fault::lateBy(std::chrono::milliseconds{700}));
    driver.press("Save");
    driver.press("Yes");
    ASSERT_TRUE(driver.reaches(
        [&] { return driver.velmorindal().connectionState.get() == ConnectionStatus::writing; }));
    driver.press("Cancel");
    driver.press("Yes");
    EXPECT_TRUE(driver.hasLeft());
    EXPECT_TRUE(dongle.state().stored.has_value());
    EXPECT_EQ(driver.velmorindal().connectionState.get(), ConnectionStatus::disconnected);
}

TEST_F(WritingTest, GoingBackAfterASuccessTakesTheSuccessAway) {
    walkToSave("Switch Output");
    driver.press("Save");
    driver.press("Yes");
    driver.press("No");
    EXPECT_EQ(driver.buttons(), (Buttons{"Back", "Close"}));
    driver.press("Back");
    driver.press("Next");
    EXPECT_EQ(driver.buttons(), (Buttons{"Cancel", "Back", "Save"}));
    EXPECT_FALSE(driver.shows("Settings successfully written. Please restart your Velmorindal."));
}

}  // namespace
}  // namespace velmorindal
