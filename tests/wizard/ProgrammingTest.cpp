#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "VirtualDongle.h"
#include "WholeRunTest.h"

namespace velmorindal {
namespace {

using testing::ElementsAreArray;

// What a device must have received after a whole run, typed in by hand. Clarity 0.75 is 3F400000, a cutoff of
// 2 seconds is 50 ticks; F5 is 3E, Tab is 2B, and 02 is the left Shift.
constexpr std::uint8_t c = 0x63;
constexpr std::uint8_t b = 0x62;

const ByteBuffer versionQuery{c, b, 0x76, 0x00};
const std::vector<ByteBuffer> connecting{
    versionQuery,       versionQuery,       {c, b, 0x73, 0x00}, {c, b, 0x78, 0x00},
    {c, b, 0x70, 0x00}, {c, b, 0x64, 0x00}, {c, b, 0x68, 0x00}, {c, b, 0x6B, 0x00},
};

const ByteBuffer gazell{c, b, 0x78, 0x01, 0x00};
const ByteBuffer bluetoothProtocol{c, b, 0x78, 0x01, 0x01};
const ByteBuffer usbPath{c, b, 0x70, 0x01, 0x00};
const ByteBuffer relayPath{c, b, 0x70, 0x01, 0x01};

const ByteBuffer humContinuous{c, b, 0x64, 0x0B, 0x00, 0, 0, 0x32, 0, 0x32, 0, 0xFF, 0xFF, 0x02, 0x00};
const ByteBuffer humShortOnly{c, b, 0x64, 0x0B, 0x01, 0, 0, 0x32, 0, 0x32, 0, 0xFF, 0xFF, 0x04, 0x00};
const ByteBuffer humLongOnly{c, b, 0x64, 0x0B, 0x02, 0, 0, 0x32, 0, 0x32, 0, 0xFF, 0xFF, 0x04, 0x00};
const ByteBuffer humShortAndLong{c, b, 0x64, 0x0B, 0x03, 0, 0, 0x32, 0, 0x32, 0, 0xFF, 0xFF, 0x04, 0x00};

const ByteBuffer relayDirect{c, b, 0x79, 0x0C, 0x01, 0, 0x0A, 0, 0xE8, 0x03, 0x00, 0, 0x0A, 0, 0xE8, 0x03};
const ByteBuffer relayLongShort{c, b, 0x79, 0x0C, 0x01, 0, 0x0A, 0, 0xE8, 0x03, 0x01, 0, 0x0A, 0, 0xE8, 0x03};

const ByteBuffer thresholds{c, b, 0x68, 0x08, 0x00, 0x00, 0x40, 0x3F, 0x00, 0x00, 0x40, 0x3F};

const ByteBuffer noKeys{c, b, 0x6B, 0x08, 0, 0, 0, 0, 0, 0, 0, 0};
const ByteBuffer directF5{c, b, 0x6B, 0x08, 0, 0, 0, 0, 0, 0x3E, 0, 0};
const ByteBuffer shortTabLongShiftTab{c, b, 0x6B, 0x08, 0, 0x2B, 0, 0, 0x02, 0x2B, 0, 0};
// A list that is not shown keeps what it had: Space for short hums and Enter for long ones.
const ByteBuffer shortTabLongEnter{c, b, 0x6B, 0x08, 0, 0x2B, 0, 0, 0, 0x28, 0, 0};
const ByteBuffer shortSpaceLongShiftTab{c, b, 0x6B, 0x08, 0, 0x2C, 0, 0, 0x02, 0x2B, 0, 0};

const ByteBuffer store{c, b, 0x77, 0x00};

/// What a person chooses, and the frames that only this choice makes.
struct Output {
    std::string label;
    std::vector<ByteBuffer> frames;
};

struct Mode {
    bool longShort;
    bool shortOutput;
    bool longOutput;
    ByteBuffer durations;
    ByteBuffer relays;
};

const Output switches{"Switch Output", {gazell, relayPath}};
const Output usb{"USB Keyboard", {gazell, usbPath}};
const Output bluetooth{"Bluetooth Keyboard", {bluetoothProtocol}};

const Mode direct{false, false, false, humContinuous, relayDirect};
const Mode shortOnly{true, true, false, humShortOnly, relayLongShort};
const Mode longOnly{true, false, true, humLongOnly, relayLongShort};
const Mode shortAndLong{true, true, true, humShortAndLong, relayLongShort};

struct Programming {
    const char* name;
    Output output;
    Mode mode;
    ByteBuffer keys;

    std::vector<ByteBuffer> frames() const {
        std::vector<ByteBuffer> all = connecting;
        all.insert(all.end(), output.frames.begin(), output.frames.end());
        all.insert(all.end(), {mode.durations, mode.relays, thresholds, keys, store});
        return all;
    }
};

const std::vector<Programming> programmings{
    {"SwitchDirect", switches, direct, noKeys},
    {"SwitchShort", switches, shortOnly, noKeys},
    {"SwitchLong", switches, longOnly, noKeys},
    {"SwitchShortAndLong", switches, shortAndLong, noKeys},
    {"UsbDirect", usb, direct, directF5},
    {"UsbShort", usb, shortOnly, shortTabLongEnter},
    {"UsbLong", usb, longOnly, shortSpaceLongShiftTab},
    {"UsbShortAndLong", usb, shortAndLong, shortTabLongShiftTab},
    {"BluetoothDirect", bluetooth, direct, directF5},
    {"BluetoothShort", bluetooth, shortOnly, shortTabLongEnter},
    {"BluetoothLong", bluetooth, longOnly, shortSpaceLongShiftTab},
    {"BluetoothShortAndLong", bluetooth, shortAndLong, shortTabLongShiftTab},
};

/// From the first page to the last, as a person goes, and looks at what has reached the device.
void expectExactlyTheFramesOf(const Programming& programming, WizardDriver& driver,
                              const SimulatedDongle& dongle) {
    const Mode& mode = programming.mode;
    driver.walkTo(wizardState::Mode);
    driver.choose(mode.longShort ? "Long/Short Mode" : "Direct Mode");
    if (mode.longShort) {
        driver.check("Enable short output", mode.shortOutput);
        driver.check("Enable long output", mode.longOutput);
    }
    driver.press("Next");
    driver.choose(programming.output.label);
    if (programming.output.label != switches.label) {
        if (!mode.longShort) {
            driver.chooseKey("Keystroke", "F5");
        }
        if (mode.shortOutput) {
            driver.chooseKey("Short hum keystroke", "Tab");
        }
        if (mode.longOutput) {
            driver.chooseKey("Long hum keystroke", "Shift+Tab");
        }
    }
    driver.press("Next");
    driver.moveSlider("Clarity threshold", 75);
    driver.moveSlider("Cutoff", 38);
    driver.press("Next");
    driver.press("Save");
    EXPECT_EQ(
        driver.dialog(),
        (WizardDriver::ShownDialog{
            "Save Settings?", "Would you like to program your device with these settings?", {"Yes", "No"}}));
    driver.press("Yes");
    EXPECT_TRUE(driver.reaches(
        [&] { return driver.dialogIsShown() && driver.dialog().title == "Write Configuration File?"; }));
    EXPECT_EQ(driver.dialog().message,
              "Congratulations! Your Velmorindal has been successfully programmed.\n\nYour configuration can "
              "be saved to disk to save time next time.\n\nWould you like to save these settings to a file?");
    driver.press("No");
    EXPECT_TRUE(driver.shows("Settings successfully written. Please restart your Velmorindal."));
    EXPECT_EQ(driver.buttons(), (std::vector<std::string>{"Back", "Close"}));

    EXPECT_THAT(dongle.receivedFrames(), ElementsAreArray(programming.frames()));
    EXPECT_EQ(dongle.skippedBytes(), 0U);
    EXPECT_EQ(dongle.state().stored, dongle.state().settings);
}

class ProgrammingTest : public WholeRunTest, public testing::WithParamInterface<Programming> {};

TEST_P(ProgrammingTest, AWholeRunSendsExactlyTheseFrames) {
    expectExactlyTheFramesOf(GetParam(), driver, dongle);
}

INSTANTIATE_TEST_SUITE_P(EveryOutputAndMode, ProgrammingTest, testing::ValuesIn(programmings),
                         [](const auto& test) { return std::string{test.param.name}; });

class ProgrammingOnATerminalTest : public testing::TestWithParam<Programming> {
  protected:
    TemporaryDirectory directory;
    VirtualDongle dongle{directory.path()};
    WizardDriver driver{directory.path()};
};

TEST_P(ProgrammingOnATerminalTest, AWholeRunSendsExactlyTheseFrames) {
    expectExactlyTheFramesOf(GetParam(), driver, dongle);
}

INSTANTIATE_TEST_SUITE_P(EveryKindOfDevice, ProgrammingOnATerminalTest,
                         testing::Values(programmings[0], programmings[5], programmings[11]),
                         [](const auto& test) { return std::string{test.param.name}; });

TEST_F(WholeRunTest, WithNeitherOutputNextIsWithheldUntilOneIsEnabled) {
    driver.walkTo(wizardState::Mode);
    driver.choose("Long/Short Mode");
    driver.check("Enable short output", false);
    driver.check("Enable long output", false);
    EXPECT_EQ(driver.buttons(), (std::vector<std::string>{"Cancel", "Back"}));
    driver.check("Enable short output", true);
    EXPECT_EQ(driver.buttons(), (std::vector<std::string>{"Cancel", "Back", "Next"}));
}

}  // namespace
}  // namespace velmorindal
