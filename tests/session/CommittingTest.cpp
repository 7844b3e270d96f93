#include <limits>

#include "SessionTest.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Type = VelmorindalMessageType;

class CommittingTest : public SessionTest {
  protected:
    void SetUp() override {
        openPort();
        velmorindal.connectionState = ConnectionStatus::connected;
        velmorindal.isValid = true;
    }

    bool commit() {
        return dispatch.finish([this] { return velmorindal.commitSettingsToDevice(); });
    }
};

TEST_F(CommittingTest, DoesNothingBeforeSettingsWereRead) {
    velmorindal.isValid = false;
    velmorindal.lastError = "An earlier text";
    EXPECT_THAT(changesWhile([this] { EXPECT_FALSE(velmorindal.commitSettingsToDevice()); }), IsEmpty());
    EXPECT_EQ(velmorindal.lastError.get(), "An earlier text");
    EXPECT_THAT(dongle.receivedFrames(), IsEmpty());
}

TEST_F(CommittingTest, OutsideConnectedItRefusesAndTheStateNeverBecomesWriting) {
    for (const ConnectionStatus state :
         {ConnectionStatus::idle, ConnectionStatus::connecting, ConnectionStatus::disconnected,
          ConnectionStatus::writing, ConnectionStatus::error}) {
        velmorindal.connectionState = state;
        EXPECT_THAT(changesWhile([this] { EXPECT_FALSE(velmorindal.commitSettingsToDevice()); }), IsEmpty());
        EXPECT_EQ(
            velmorindal.lastError.get(),
            "The Velmorindal is not connected, or the connection has been lost.\n\nPlease ensure your device "
            "is connected and run this program again.");
    }
    EXPECT_THAT(dongle.receivedFrames(), IsEmpty());
}

TEST_F(CommittingTest, AFullWriteAnnouncesItsLastProgressTwice) {
    int announcements = 0;
    const auto subscription = velmorindal.objectWillChange.subscribe([&] { ++announcements; });
    EXPECT_TRUE(commit());
    // Seven values of the progress, the last of them 5 once more, and two of the state.
    EXPECT_EQ(announcements, 9);
}

TEST_F(CommittingTest, ASwitchInDirectModeIsSevenCommandsWithNoKeys) {
    EXPECT_TRUE(commit());
    // clarity 0.5, cutoff 1.5: 37 ticks
    EXPECT_THAT(
        dongle.receivedFrames(),
        ElementsAre(
            ByteBuffer{0x63, 0x62, 0x78, 0x01, 0x00},  //
            ByteBuffer{0x63, 0x62, 0x70, 0x01, 0x01},
            ByteBuffer{0x63, 0x62, 0x64, 0x0B, 0x00, 0x00, 0x00, 37, 0x00, 37, 0x00, 0xFF, 0xFF, 2, 0},
            ByteBuffer{0x63, 0x62, 0x79, 0x0C, 0x01, 0x00, 10, 0, 0xE8, 0x03, 0x00, 0x00, 10, 0, 0xE8, 0x03},
            ByteBuffer{0x63, 0x62, 0x68, 0x08, 0, 0, 0, 0x3F, 0, 0, 0, 0x3F},
            ByteBuffer{0x63, 0x62, 0x6B, 0x08, 0, 0, 0, 0, 0, 0, 0, 0}, ByteBuffer{0x63, 0x62, 0x77, 0x00}));
}

TEST_F(CommittingTest, ABluetoothKeyboardIsSixCommandsWithoutAnOutputPath) {
    velmorindal.outputPath = OutputPath::BTKeyboard;
    velmorindal.outputMode = OutputMode::LongShort;
    velmorindal.shortEnabled = true;
    velmorindal.outputKeys = {OutputKey::F1, OutputKey::Tilde2, OutputKey::Tilde3};
    EXPECT_TRUE(commit());
    EXPECT_THAT(
        dongle.receivedFrames(),
        ElementsAre(
            ByteBuffer{0x63, 0x62, 0x78, 0x01, 0x01},  //
            ByteBuffer{0x63, 0x62, 0x64, 0x0B, 0x03, 0x00, 0x00, 37, 0x00, 37, 0x00, 0xFF, 0xFF, 4, 0},
            ByteBuffer{0x63, 0x62, 0x79, 0x0C, 0x01, 0x00, 10, 0, 0xE8, 0x03, 0x01, 0x00, 10, 0, 0xE8, 0x03},
            ByteBuffer{0x63, 0x62, 0x68, 0x08, 0, 0, 0, 0x3F, 0, 0, 0, 0x3F},
            ByteBuffer{0x63, 0x62, 0x6B, 0x08, 0x02, 0x35, 0x80, 0x1F, 0x02, 0x35, 0x80, 0x20},
            ByteBuffer{0x63, 0x62, 0x77, 0x00}));
}

TEST_F(CommittingTest, TheDetectModeIsChosenFromModeAndOutputs) {
    struct Choice {
        OutputMode mode;
        bool shortEnabled;
        bool longEnabled;
        std::uint8_t detectMode;
    };
    for (const auto& [mode, shortEnabled, longEnabled, detectMode] : {
             Choice{OutputMode::Direct, false, false, 0},
             Choice{OutputMode::Direct, true, true, 0},
             Choice{OutputMode::LongShort, true, false, 1},
             Choice{OutputMode::LongShort, false, true, 2},
             Choice{OutputMode::LongShort, true, true, 3},
             // With neither output the device listens for long hums.
             Choice{OutputMode::LongShort, false, false, 2},
         }) {
        velmorindal.outputMode = mode;
        velmorindal.shortEnabled = shortEnabled;
        velmorindal.longEnabled = longEnabled;
        EXPECT_TRUE(commit());
        EXPECT_EQ(dongle.state().settings.humDuration.detectMode, detectMode)
            << caseName(mode) << shortEnabled << longEnabled;
    }
}

TEST_F(CommittingTest, TheCutoffIsCutToWholeTicks) {
    for (const auto& [seconds, ticks] : std::vector<std::pair<float, std::uint16_t>>{
             {1.5F, 37}, {0.1F, 2}, {3.0F, 75}, {1.0F, 25}, {0.0F, 0}, {-0.03F, 0}, {2621.0F, 65525}}) {
        velmorindal.cutoff = seconds;
        EXPECT_TRUE(commit());
        EXPECT_EQ(dongle.state().settings.humDuration.maxShort, ticks) << seconds;
        EXPECT_EQ(dongle.state().settings.humDuration.minLong, ticks) << seconds;
    }
}

using CommittingDeathTest = CommittingTest;

TEST_F(CommittingDeathTest, ACutoffBeyondSixteenBitsStopsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const float seconds : {2621.44F, -0.04F, std::numeric_limits<float>::infinity(),
                                std::numeric_limits<float>::quiet_NaN()}) {
        EXPECT_DEATH(
            {
                velmorindal.cutoff = seconds;
                commit();
            },
            "The cutoff does not fit the device's sixteen bits\\.")
            << seconds;
    }
}

TEST_F(CommittingTest, DoesNotSetJustSaved) {
    EXPECT_TRUE(commit());
    EXPECT_FALSE(velmorindal.justSaved.get());
}

}  // namespace
}  // namespace velmorindal
