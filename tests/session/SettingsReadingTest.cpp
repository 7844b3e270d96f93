#include "SessionTest.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using testing::SizeIs;
using Type = VelmorindalMessageType;

constexpr const char* thrownText = "Invalid message received from server.\n\n(Error code: VC/TC)";

class SettingsReadingTest : public SessionTest {
  protected:
    void SetUp() override {
        openPort();
        velmorindal.connectionState = ConnectionStatus::connecting;
        velmorindal.outputMode = OutputMode::LongShort;
    }

    bool read() {
        return dispatch.finish([this] { return velmorindal.readSettingsFromDevice(); });
    }
};

TEST_F(SettingsReadingTest, TheDevicesRelayIsTheSwitchAndItsUsbTheKeyboard) {
    dongle.prepare([](DeviceState& device) { device.settings.outputPath = 1; });
    velmorindal.outputPath = OutputPath::BTKeyboard;
    EXPECT_TRUE(read());
    EXPECT_EQ(velmorindal.outputPath.get(), OutputPath::Switch);
    dongle.prepare([](DeviceState& device) { device.settings.outputPath = 0; });
    EXPECT_TRUE(read());
    EXPECT_EQ(velmorindal.outputPath.get(), OutputPath::USBKeyboard);
}

struct DetectModeExpectation {
    std::uint8_t detectMode;
    OutputMode outputMode;
    bool shortEnabled;
    bool longEnabled;
};

class DetectModeReadingTest : public SettingsReadingTest,
                              public testing::WithParamInterface<DetectModeExpectation> {};

TEST_P(DetectModeReadingTest, BecomesModeAndOutputs) {
    const auto& expected = GetParam();
    dongle.prepare(
        [&](DeviceState& device) { device.settings.humDuration.detectMode = expected.detectMode; });
    EXPECT_TRUE(read());
    EXPECT_EQ(velmorindal.outputMode.get(), expected.outputMode);
    EXPECT_EQ(velmorindal.shortEnabled.get(), expected.shortEnabled);
    EXPECT_EQ(velmorindal.longEnabled.get(), expected.longEnabled);
}

INSTANTIATE_TEST_SUITE_P(EveryDetectMode, DetectModeReadingTest,
                         testing::Values(DetectModeExpectation{0, OutputMode::Direct, false, false},
                                         DetectModeExpectation{1, OutputMode::LongShort, true, false},
                                         DetectModeExpectation{2, OutputMode::LongShort, false, true},
                                         DetectModeExpectation{3, OutputMode::LongShort, true, true}),
                         [](const auto& test) {
                             return "DetectMode" + std::to_string(test.param.detectMode);
                         });

TEST_F(SettingsReadingTest, TwentyFiveTicksAreOneSecondOfCutoff) {
    using Cutoff = std::pair<std::uint16_t, float>;
    for (const auto& cutoff : {Cutoff{25, 1.0F}, {40, 1.6F}}) {
        dongle.prepare([&](DeviceState& device) { device.settings.humDuration.maxShort = cutoff.first; });
        EXPECT_TRUE(read());
        EXPECT_EQ(velmorindal.cutoff.get(), cutoff.second);
    }
}

TEST_F(SettingsReadingTest, TheCutoffFollowsTheModeThatHasArrivedAndNotTheOnePosted) {
    velmorindal.outputMode = OutputMode::Direct;
    dongle.prepare([](DeviceState& device) {
        device.settings.humDuration.detectMode = 3;
        device.settings.humDuration.maxShort = 40;
    });
    // The main queue stands still until the reading is over.
    auto result = dispatch.inBackground([this] { return velmorindal.readSettingsFromDevice(); });
    EXPECT_TRUE(result.get());
    EXPECT_EQ(velmorindal.outputMode.get(), OutputMode::Direct);
    dispatch.runPendingMainWork();
    EXPECT_EQ(velmorindal.outputMode.get(), OutputMode::LongShort);
    EXPECT_EQ(velmorindal.cutoff.get(), 1.0F);
}

TEST_F(SettingsReadingTest, ADirectDeviceStillGetsItsCutoffWhileTheModelStandsInLongShort) {
    dongle.prepare([](DeviceState& device) {
        device.settings.humDuration.detectMode = 0;
        device.settings.humDuration.maxShort = 40;
    });
    auto result = dispatch.inBackground([this] { return velmorindal.readSettingsFromDevice(); });
    EXPECT_TRUE(result.get());
    dispatch.runPendingMainWork();
    EXPECT_EQ(velmorindal.outputMode.get(), OutputMode::Direct);
    EXPECT_EQ(velmorindal.cutoff.get(), 1.6F);
}

TEST_F(SettingsReadingTest, TheKeysEndAsTheDefaultsWhateverTheDeviceHolds) {
    for (const KeyBytes keys :
         {KeyBytes{0, 0x2B, 0, 0x2C, 0, 0x3A, 0, 0x28}, KeyBytes{}, KeyBytes{2, 0x2B, 0x80, 0x1E}}) {
        dongle.prepare([&](DeviceState& device) { device.settings.keys = keys; });
        velmorindal.outputKeys = {OutputKey::F5, OutputKey::F6, OutputKey::F7};
        EXPECT_TRUE(read());
        EXPECT_EQ(velmorindal.outputKeys.get(),
                  (keyList{OutputKey::Enter, OutputKey::Space, OutputKey::Enter}));
    }
}

TEST_F(SettingsReadingTest, EachKeyIsAPostOfItsOwnThatKeepsTheOthers) {
    velmorindal.outputKeys = {OutputKey::F5, OutputKey::F6, OutputKey::F7};
    const auto changes = changesWhile([this] { velmorindal.readSettingsFromDevice(); });
    ASSERT_GE(changes.size(), 3U);
    EXPECT_THAT((std::vector<std::string>{changes.end() - 3, changes.end()}),
                ElementsAre("shortKey Space", "longKey Enter", "directKey Enter"));
}

TEST_F(SettingsReadingTest, OutsideConnectingItRefusesAtOnce) {
    for (const ConnectionStatus state :
         {ConnectionStatus::idle, ConnectionStatus::connected, ConnectionStatus::disconnected,
          ConnectionStatus::writing, ConnectionStatus::error}) {
        velmorindal.connectionState = state;
        EXPECT_FALSE(read());
        EXPECT_EQ(
            velmorindal.lastError.get(),
            "The Velmorindal is not connected, or the connection has been lost.\n\nPlease ensure your device "
            "is connected and run this program again.");
        EXPECT_EQ(velmorindal.connectionState.get(), state);
    }
    EXPECT_THAT(dongle.receivedFrames(), SizeIs(0));
}

TEST_F(SettingsReadingTest, ASilentDeviceIsReportedAsAnInvalidMessageAndSetsTheErrorItself) {
    dongle.staySilentOn(Type::humDuration);
    auto result = dispatch.inBackground([this] { return velmorindal.readSettingsFromDevice(); });
    // Long after the time-out the state is still to come, and the text waits for it.
    system.sleepFor(std::chrono::seconds{5});
    EXPECT_FALSE(result.isReady());
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::connecting);
    EXPECT_EQ(velmorindal.lastError.get(), std::nullopt);
    dispatch.runPendingMainWork();
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::error);
    EXPECT_FALSE(result.get());
    EXPECT_EQ(dispatch.pendingMainWork(), 0U);
    EXPECT_EQ(result.get().text, thrownText);
    EXPECT_EQ(velmorindal.lastError.get(), thrownText);
    EXPECT_FALSE(velmorindal.isValid);
    EXPECT_THAT(dongle.receivedFrames(), SizeIs(3));
}

}  // namespace
}  // namespace velmorindal
