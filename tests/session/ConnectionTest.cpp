#include <termios.h>

#include "ConnectionTest.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using Type = VelmorindalMessageType;

constexpr const char* openFailedText = "Error connecting to the serial port. It might already be in use.";
constexpr const char* linkDownText =
    "Please ensure that your Velmorindal is turned on and in configuration mode.";

void expectLineOfADongle(System& system, int descriptor) {
    termios line{};
    ASSERT_TRUE(system.lineAttributes(descriptor, line));
    EXPECT_EQ(cfgetispeed(&line), static_cast<speed_t>(B115200));
    EXPECT_EQ(cfgetospeed(&line), static_cast<speed_t>(B115200));
    EXPECT_EQ(line.c_cflag & (CSIZE | PARENB | CSTOPB | CRTSCTS), static_cast<tcflag_t>(CS8));
    EXPECT_EQ(line.c_iflag & (IXON | IXOFF), 0U);
    EXPECT_EQ(line.c_cc[VMIN], 0);
    EXPECT_EQ(line.c_cc[VTIME], 2);
}

TEST_F(ConnectionTest, TheLineIsSetAsTheDongleNeedsIt) {
    EXPECT_TRUE(connect());
    expectLineOfADongle(system, velmorindal.serialPort.get()->fileDescriptor().value());
}

TEST_F(ConnectionTest, TheProbeSetsTheLineBeforeItAsks) {
    PrintedLines lines;
    std::size_t questions = 0;
    system.beforeFrame([&](std::size_t number) {
        const std::string openResult = lines.take();
        expectLineOfADongle(system, std::stoi(openResult.substr(openResult.rfind(' '))));
        questions = number;
    });

    EXPECT_THAT(velmorindal.listDevices(), ElementsAre(path()));

    EXPECT_EQ(questions, 1U);
}

TEST_F(ConnectionTest, NothingIsPublishedWhileTheMainThreadDoesNotTurn) {
    auto result = dispatch.inBackground([this] { return velmorindal.connect(); });
    EXPECT_TRUE(dispatch.waitForPendingMainWork(2));
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::idle);
    dispatch.runOneMainWork();
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::idle);
    dispatch.runOneMainWork();
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::connecting);
    // Fourteen changes and the final state; none has arrived before the main thread turns again.
    EXPECT_TRUE(dispatch.waitForPendingMainWork(15));
    EXPECT_EQ(velmorindal.readWriteProgress.get(), 0.0);
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::connecting);
    EXPECT_FALSE(result.isReady());
    dispatch.runPendingMainWork();
    EXPECT_TRUE(result.get());
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::connected);
}

TEST_F(ConnectionTest, ASecondAttemptIsRefusedAfterDisconnectingTooBecauseThePortIsKept) {
    EXPECT_TRUE(connect());
    velmorindal.disconnect(false);
    EXPECT_NE(velmorindal.serialPort.get(), nullptr);
    EXPECT_EQ(velmorindal.serialPort.get()->fileDescriptor(), std::nullopt);
    EXPECT_FALSE(connect());
    EXPECT_EQ(velmorindal.lastError.get(), "Already connected to the Velmorindal Device.");
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::disconnected);
}

TEST_F(ConnectionTest, ADongleThatVanishesBeforeItIsOpenedSaysSoAndThePortObjectStays) {
    const auto result = dispatch.inBackground([this] { return velmorindal.connect(); });
    ASSERT_TRUE(dispatch.waitForPendingMainWork(2));  // the progress of 0, then the state
    dongle.unplug();
    ASSERT_TRUE(dispatch.runMainWorkUntil([&] { return result.isReady(); }));
    dispatch.runPendingMainWork();
    EXPECT_FALSE(result.get());
    EXPECT_EQ(velmorindal.lastError.get(), openFailedText);
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::error);
    ASSERT_NE(velmorindal.serialPort.get(), nullptr);
    EXPECT_EQ(velmorindal.serialPort.get()->fileDescriptor(), -1);
}

TEST_F(ConnectionTest, ALinkThatIsDownEndsDisconnectedAndAsksForNoSetting) {
    dongle.prepare([](DeviceState& device) { device.linkState = 0; });
    PrintedLines lines;
    EXPECT_THAT(
        changesWhile([this] { EXPECT_FALSE(velmorindal.connect()); }),
        ElementsAre("connectionState connecting", "readWriteProgress 1.0", "connectionState disconnected"));
    EXPECT_EQ(velmorindal.lastError.get(), linkDownText);
    EXPECT_EQ(dongle.receivedFrames().size(), 3U);
    EXPECT_NE(lines.take().find("Have a status:  0\n"), std::string::npos);
}

TEST_F(ConnectionTest, EveryOtherStateOfTheLinkIsUp) {
    for (const int state : {2, 255}) {
        dongle.prepare([state](DeviceState& device) { device.linkState = static_cast<std::uint8_t>(state); });
        EXPECT_TRUE(connect()) << state;
        velmorindal.disconnect(false);
        velmorindal.serialPort = nullptr;
    }
}

TEST_F(ConnectionTest, ClosingThePortUnderARunningConnectionEndsItWithoutAnotherByte) {
    // The device goes on sending other frames: only the closed port ends this.
    dongle.onFirst(Type::status, Fault::silence());
    const auto result = dispatch.inBackground([this] { return velmorindal.connect(); });
    ASSERT_TRUE(dispatch.runMainWorkUntil([this] { return dongle.timesReceived(Type::status) == 1; }));
    for (int frame = 0; frame < 10'000; ++frame) {
        dongle.send(ByteBuffer{0x72, 0x62, 0x70, 0x01, 0x01});
    }
    velmorindal.disconnect(false);
    ASSERT_TRUE(dispatch.runMainWorkUntil([&] { return result.isReady(); }));
    EXPECT_FALSE(result.get());
    EXPECT_EQ(velmorindal.serialPort.get()->fileDescriptor(), std::nullopt);
    EXPECT_EQ(dongle.timesReceived(Type::protocolSelect), 0U);
}

TEST_F(ConnectionTest, ATextThatAFailedLoadHasLeftMeanwhileIsNoWarningOfTheConnection) {
    auto result = dispatch.inBackground([this] { return velmorindal.connect(); });
    // Everything is read; the connection waits for its last state to be set.
    ASSERT_TRUE(dispatch.waitForPendingMainWork(2));
    dispatch.runPendingMainWork();
    ASSERT_TRUE(dispatch.waitForPendingMainWork(15));
    velmorindal.lastError = "Could not load contents of XML file";
    dispatch.runPendingMainWork();
    EXPECT_TRUE(result.get());
    EXPECT_EQ(result.get().text, std::nullopt);
    EXPECT_EQ(velmorindal.lastError.get(), "Could not load contents of XML file");
}

TEST_F(ConnectionTest, WritingLastErrorFromTheMainThreadWhileConnectingIsHarmless) {
    auto result = dispatch.inBackground([this] { return velmorindal.connect(); });
    dispatch.runMainWorkUntil([&] {
        velmorindal.lastError = "Could not load contents of XML file";
        return result.isReady();
    });
    EXPECT_TRUE(result.get());
}

}  // namespace
}  // namespace velmorindal
