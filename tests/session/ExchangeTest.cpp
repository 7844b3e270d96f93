#include <algorithm>
#include <typeinfo>

#include "SessionTest.h"
#include "VCHumDuration.h"
#include "VCOutputPath.h"
#include "VCReset.h"
#include "VCVersion.h"
#include "VCWriteSettings.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Type = VelmorindalMessageType;

constexpr std::uint8_t versionCode = 0x76;
constexpr std::uint8_t statusCode = 0x73;

const auto soonAfterTwoSeconds = testing::AllOf(testing::Ge(2.0), testing::Le(2.2));

/// Answers a version query, the header in one read and each byte of the payload in another.
class AnsweringLine final : public VirtualLine {
  public:
    std::function<void()> onHeader;
    int reads = 0;

  private:
    std::ptrdiff_t read(std::span<std::uint8_t> buffer, System::Clock::time_point /*now*/) override {
        if (++reads > 1) {
            buffer.front() = 'V';
            return 1;
        }
        onHeader();
        std::ranges::copy(ByteBuffer{0x72, 0x62, versionCode, 0x01}, buffer.begin());
        return 4;
    }
};

class ExchangeTest : public SessionTest {
  protected:
    void SetUp() override { openPort(); }

    std::string versionText() {
        const auto answer = velmorindal.queryDevice(versionCode);
        const auto* const version = dynamic_cast<const VCVersion*>(answer.get());
        return version != nullptr ? version->_versionString : "(no version)";
    }

    /// How long a version query takes that has to fail.
    double secondsUntilThrown() {
        return secondsTakenBy([this] {
            EXPECT_EQ(errorOf([this] { velmorindal.queryDevice(versionCode); }),
                      VelmorindalError::NoConnectionError);
        });
    }

    static VelmorindalError errorOf(const std::function<void()>& exchange) {
        try {
            exchange();
        } catch (const VelmorindalException& exception) {
            return exception.error;
        }
        ADD_FAILURE() << "The exchange did not throw.";
        return {};
    }
};

TEST_F(ExchangeTest, AQueryIsFourBytesAndItsAnswerIsDecoded) {
    EXPECT_EQ(versionText(), "Velmorindal 1.1M");
    EXPECT_THAT(dongle.receivedFrames(), ElementsAre(ByteBuffer{0x63, 0x62, 0x76, 0x00}));
}

TEST_F(ExchangeTest, AnAnswerWithoutPayloadIsAWholeFrame) {
    dongle.onFirst(Type::version, Fault::answerWith({0x72, 0x62, 0x76, 0x00}));
    EXPECT_EQ(versionText(), "");
}

TEST_F(ExchangeTest, ADeviceThatStreamsAndDoesNotAnswerIsWaitedForUntilTheDongleIsPulledOut) {
    dongle.prepare([](DeviceState& state) { state.autoTuneChannel = 2; });
    dongle.staySilentOn(Type::version);
    const auto error = dispatch.inBackground([this] { return errorOf([this] { versionText(); }); });

    EXPECT_FALSE(dispatch.waitUntil([&] { return error.isReady(); })) << "far longer than the deadline";
    dongle.unplug();

    EXPECT_EQ(error.get(), VelmorindalError::NoConnectionError);
}

TEST_F(ExchangeTest, AnAnswerThatDoesNotBecomeWholeMakesAQueryThrowAfterTheTimeOut) {
    for (const Fault& fault : {Fault::silence(), Fault::halfAHeader(), Fault::halfAPayload()}) {
        dongle.onNext(Type::version, fault);
        EXPECT_THAT(secondsUntilThrown(), soonAfterTwoSeconds) << fault.name();
    }
}

TEST_F(ExchangeTest, AMalformedAnswerOfTheRightTypeIsReturnedAsAnInvalidObject) {
    dongle.onFirst(Type::status, Fault::errorFrame());
    PrintedLines lines;
    const auto answer = velmorindal.queryDevice(statusCode);
    ASSERT_NE(answer, nullptr);
    EXPECT_FALSE(answer->_valid);
    EXPECT_EQ(lines.take(), "Message type unexpected:  101  command/response/error are  99 114 101\n");
}

TEST_F(ExchangeTest, AQueryThatTheFactoryCannotDecodeReturnsNothing) {
    dongle.onFirst(Type::writeSettings, Fault::answerWith({0x72, 0x62, 0x77, 0x00}));
    EXPECT_EQ(velmorindal.queryDevice(0x77), nullptr);
}

TEST_F(ExchangeTest, AQueryThatCannotBeWrittenWholeReturnsNothingAndSaysSo) {
    system.cutWrite(Type::version, 1, 3);
    PrintedLines lines;
    EXPECT_EQ(velmorindal.queryDevice(versionCode), nullptr);
    EXPECT_EQ(lines.take(), "Could not write my whole sequence.\n");
    EXPECT_TRUE(system.cutHasHappened());
}

TEST_F(ExchangeTest, AQueryOnAClosedPortSaysThatTheWriteFailedAndThrowsItsOwnError) {
    velmorindal.serialPort.get()->closePort();
    PrintedLines lines;
    EXPECT_EQ(errorOf([&] { velmorindal.queryDevice(versionCode); }), VelmorindalError::NoConnectionError);
    EXPECT_EQ(lines.take(), "Caught an error on write\n");
}

TEST_F(ExchangeTest, ACommandOutsideTheSettingsIsSentThroughItsOwnSerialize) {
    EXPECT_TRUE(velmorindal.sendCommand(VCWriteSettings{}));
    EXPECT_TRUE(velmorindal.sendCommand(VCReset{}));
    EXPECT_THAT(dongle.receivedFrames(),
                ElementsAre(ByteBuffer{0x63, 0x62, 0x77, 0x00}, ByteBuffer{0x63, 0x62, 0x7A, 0x00}));
}

TEST_F(ExchangeTest, AnInvalidCommandThrowsBeforeAnythingIsWritten) {
    VCHumDuration command;
    command._valid = false;
    EXPECT_EQ(errorOf([&] { velmorindal.sendCommand(command); }), VelmorindalError::InvalidMessageError);
    EXPECT_EQ(versionText(), "Velmorindal 1.1M");
    EXPECT_EQ(dongle.receivedFrames().size(), 1U);
}

TEST_F(ExchangeTest, TheBaseClassCannotBeSent) {
    EXPECT_EQ(errorOf([&] { velmorindal.sendCommand(VelmorindalCommand{}); }),
              VelmorindalError::NotImplementedError);
}

TEST_F(ExchangeTest, ACommandOnAClosedPortPassesThePortsOwnErrorOnWithoutALine) {
    velmorindal.serialPort.get()->closePort();
    PrintedLines lines;
    try {
        velmorindal.sendCommand(VCOutputPath{});
        ADD_FAILURE() << "The command did not throw.";
    } catch (const PortException& exception) {
        EXPECT_EQ(exception.error, PortError::mustBeOpen);
    }
    EXPECT_EQ(lines.take(), "");
}

TEST_F(ExchangeTest, WithoutAPortBothThrowAndNothingIsWritten) {
    velmorindal.serialPort.get()->closePort();
    velmorindal.serialPort = nullptr;
    EXPECT_EQ(errorOf([&] { velmorindal.queryDevice(versionCode); }), VelmorindalError::NoConnectionError);
    VCHumDuration invalid;
    invalid._valid = false;
    EXPECT_EQ(errorOf([&] { velmorindal.sendCommand(VCOutputPath{}); }), VelmorindalError::NoConnectionError);
    EXPECT_EQ(errorOf([&] { velmorindal.sendCommand(VelmorindalCommand{}); }),
              VelmorindalError::NoConnectionError);
    EXPECT_EQ(errorOf([&] { velmorindal.sendCommand(invalid); }), VelmorindalError::NoConnectionError);
    EXPECT_THAT(dongle.receivedFrames(), IsEmpty());
}

TEST_F(ExchangeTest, APortThatIsTakenAwayAfterTheHeaderIsNotAskedForThePayload) {
    AnsweringLine line;
    line.onHeader = [this] { velmorindal.serialPort = nullptr; };
    system.add("answering", line);
    const auto port = std::make_shared<SerialPort>("answering", system);
    port->openPort();
    port->setSettings(dongleLine);
    velmorindal.serialPort = port;

    EXPECT_EQ(errorOf([this] { velmorindal.queryDevice(versionCode); }), VelmorindalError::NoConnectionError);

    EXPECT_EQ(line.reads, 1);
}

TEST_F(ExchangeTest, LineSettingsThatAnotherProgramChangedAreRestoredBeforeAFrameGoesOut) {
    const int descriptor = velmorindal.serialPort.get()->fileDescriptor().value();
    const auto minimumOnTheLine = [&] {
        termios attributes{};
        EXPECT_TRUE(system.lineAttributes(descriptor, attributes));
        return static_cast<int>(attributes.c_cc[VMIN]);
    };
    const auto changeTheLine = [&] {
        termios attributes{};
        EXPECT_TRUE(system.lineAttributes(descriptor, attributes));
        attributes.c_cc[VMIN] = 1;
        EXPECT_TRUE(system.setLineAttributes(descriptor, attributes));
    };
    std::vector<int> minima;
    system.beforeFrame([&](std::size_t) { minima.push_back(minimumOnTheLine()); });

    changeTheLine();
    EXPECT_EQ(versionText(), "Velmorindal 1.1M");
    changeTheLine();
    EXPECT_TRUE(velmorindal.sendCommand(VCReset{}));

    EXPECT_THAT(minima, ElementsAre(0, 0));
}

}  // namespace
}  // namespace velmorindal
