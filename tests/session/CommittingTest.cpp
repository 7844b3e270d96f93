#include <limits>

#include "SessionTest.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
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

TEST_F(CommittingTest, AFullWriteRunsThroughItsProgressAndBackToConnected) {
    velmorindal.readWriteProgress = 6.0;
    int announcements = 0;
    const auto subscription = velmorindal.objectWillChange.subscribe([&] { ++announcements; });
    PrintedLines lines;
    EXPECT_THAT(changesWhile([this] { EXPECT_TRUE(velmorindal.commitSettingsToDevice()); }),
                ElementsAre("connectionState writing", "readWriteProgress 0.0", "readWriteProgress 1.0",
                            "readWriteProgress 2.0", "readWriteProgress 3.0", "readWriteProgress 4.0",
                            "readWriteProgress 5.0", "connectionState connected"));
    // Seven values of the progress, the last of them 5 once more, and two of the state.
    EXPECT_EQ(announcements, 9);
    EXPECT_EQ(lines.take(), "Save completed.\n");
    EXPECT_EQ(velmorindal.lastError.get(), std::nullopt);
    EXPECT_TRUE(dongle.state().stored.has_value());
}

TEST_F(CommittingTest, TheWritingStateIsSetBeforeTheFirstByteGoesOutAndProgressIsNotWaitedFor) {
    std::vector<std::string> seen;
    dongle.whenReceived([&](std::span<const std::uint8_t>) {
        seen.push_back(std::string{caseName(velmorindal.connectionState.get())} + " " +
                       std::to_string(static_cast<int>(velmorindal.readWriteProgress.get())));
    });
    auto result = dispatch.inBackground([this] { return velmorindal.commitSettingsToDevice(); });
    EXPECT_TRUE(dispatch.runOneMainWork());
    EXPECT_TRUE(result.get());
    EXPECT_THAT(seen, ElementsAre("writing 0", "writing 0", "writing 0", "writing 0", "writing 0",
                                  "writing 0", "writing 0"));
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::writing);
    dispatch.runPendingMainWork();
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::connected);
}

TEST_F(CommittingTest, NothingGoesOutUntilTheMainThreadHasSetTheState) {
    auto result = dispatch.inBackground([this] { return velmorindal.commitSettingsToDevice(); });
    EXPECT_TRUE(dispatch.waitForPendingMainWork(1));
    EXPECT_FALSE(dongle.waitForFrames(1, std::chrono::milliseconds{50}));
    dispatch.runOneMainWork();
    EXPECT_TRUE(result.get());
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
    velmorindal.outputKeys = {OutputKey::F1, OutputKey::Tilde2, OutputKey::ShiftTab};
    EXPECT_TRUE(commit());
    EXPECT_THAT(
        dongle.receivedFrames(),
        ElementsAre(
            ByteBuffer{0x63, 0x62, 0x78, 0x01, 0x01},  //
            ByteBuffer{0x63, 0x62, 0x64, 0x0B, 0x03, 0x00, 0x00, 37, 0x00, 37, 0x00, 0xFF, 0xFF, 4, 0},
            ByteBuffer{0x63, 0x62, 0x79, 0x0C, 0x01, 0x00, 10, 0, 0xE8, 0x03, 0x01, 0x00, 10, 0, 0xE8, 0x03},
            ByteBuffer{0x63, 0x62, 0x68, 0x08, 0, 0, 0, 0x3F, 0, 0, 0, 0x3F},
            ByteBuffer{0x63, 0x62, 0x6B, 0x08, 0x02, 0x35, 0x80, 0x1F, 0x02, 0x2B, 0, 0},
            ByteBuffer{0x63, 0x62, 0x77, 0x00}));
}

TEST_F(CommittingTest, AUsbKeyboardInDirectModeCarriesItsKeyInTheLongBytesOnly) {
    velmorindal.outputPath = OutputPath::USBKeyboard;
    velmorindal.outputKeys = {OutputKey::F12, OutputKey::Tab, OutputKey::Num0};
    EXPECT_TRUE(commit());
    const auto frames = dongle.receivedFrames();
    ASSERT_THAT(frames, SizeIs(7));
    EXPECT_EQ(frames[0], (ByteBuffer{0x63, 0x62, 0x78, 0x01, 0x00}));
    EXPECT_EQ(frames[1], (ByteBuffer{0x63, 0x62, 0x70, 0x01, 0x00}));
    EXPECT_EQ(frames[5], (ByteBuffer{0x63, 0x62, 0x6B, 0x08, 0, 0, 0, 0, 0, 0x45, 0, 0}));
}

struct DetectModeChoice {
    const char* name;
    OutputMode mode;
    bool shortEnabled;
    bool longEnabled;
    std::uint8_t detectMode;
};

class DetectModeCommittingTest : public CommittingTest,
                                 public testing::WithParamInterface<DetectModeChoice> {};

TEST_P(DetectModeCommittingTest, IsChosenFromModeAndOutputs) {
    velmorindal.outputMode = GetParam().mode;
    velmorindal.shortEnabled = GetParam().shortEnabled;
    velmorindal.longEnabled = GetParam().longEnabled;
    EXPECT_TRUE(commit());
    EXPECT_EQ(dongle.state().settings.humDuration.detectMode, GetParam().detectMode);
}

INSTANTIATE_TEST_SUITE_P(
    EveryChoice, DetectModeCommittingTest,
    testing::Values(DetectModeChoice{"DirectWithNeither", OutputMode::Direct, false, false, 0},
                    DetectModeChoice{"DirectWithBoth", OutputMode::Direct, true, true, 0},
                    DetectModeChoice{"ShortOnly", OutputMode::LongShort, true, false, 1},
                    DetectModeChoice{"LongOnly", OutputMode::LongShort, false, true, 2},
                    DetectModeChoice{"Both", OutputMode::LongShort, true, true, 3},
                    DetectModeChoice{"NeitherListensForLongHums", OutputMode::LongShort, false, false, 2}),
    [](const auto& test) { return std::string{test.param.name}; });

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

TEST_F(CommittingTest, ClarityGoesIntoBothThresholdsUnscaled) {
    velmorindal.clarity = 0.37F;
    EXPECT_TRUE(commit());
    EXPECT_EQ(dongle.state().settings.thresholds, (HumThresholdSettings{.ap = 0.37F, .si = 0.37F}));
}

TEST_F(CommittingTest, ARefusedStepIsScAndNothingFollows) {
    dongle.onFirst(Type::humDuration, Fault::wrongKind());
    EXPECT_FALSE(commit());
    EXPECT_THAT(dongle.receivedFrames(), SizeIs(3));
    EXPECT_EQ(velmorindal.lastError.get(), "Failed to write instruction to device.\n\nError code: HD/SC");
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::error);
    EXPECT_EQ(velmorindal.readWriteProgress.get(), 1.0);
}

TEST_F(CommittingTest, ASilentStepIsTcAndNothingIsStored) {
    dongle.staySilentOn(Type::keyboardConfig);
    EXPECT_FALSE(commit());
    EXPECT_THAT(dongle.receivedFrames(), SizeIs(6));
    EXPECT_EQ(velmorindal.lastError.get(),
              "Disconnection during writing process. Your changes were not saved.\n\nError code: KC/TC");
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::error);
    EXPECT_FALSE(dongle.state().stored.has_value());
}

TEST_F(CommittingTest, DoesNotSetJustSaved) {
    EXPECT_TRUE(commit());
    EXPECT_FALSE(velmorindal.justSaved.get());
}

}  // namespace
}  // namespace velmorindal
