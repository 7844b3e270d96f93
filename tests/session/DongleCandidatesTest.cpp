#include "ConnectionTest.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Type = VelmorindalMessageType;

constexpr const char* severalDonglesText =
    "Multiple dongles found. To ensure that you program the correct device, please remove any extra USB "
    "dongles.";

class DongleCandidatesTest : public ConnectionTest {};

/// A device that is no dongle: it takes every write or none, and every read returns the same byte.
class EndlessLine final : public VirtualLine {
  public:
    explicit EndlessLine(std::uint8_t byte, bool takesBytes = true) : byte_{byte}, takesBytes_{takesBytes} {}

  private:
    using Moment = System::Clock::time_point;

    std::ptrdiff_t read(std::span<std::uint8_t> buffer, Moment /*now*/) override {
        std::ranges::fill(buffer, byte_);
        return std::ssize(buffer);
    }
    std::ptrdiff_t write(std::span<const std::uint8_t> bytes, Moment /*now*/) override {
        errno = ENOSPC;
        return takesBytes_ ? std::ssize(bytes) : -1;
    }

    const std::uint8_t byte_;
    const bool takesBytes_;
};

/// A device that sends the header of a version answer and nothing else, on a system whose reads take time.
class HeaderAlone final : public VirtualLine {
  public:
    explicit HeaderAlone(System& system) : system_{system} {}

  private:
    using Moment = System::Clock::time_point;

    std::ptrdiff_t read(std::span<std::uint8_t> buffer, Moment /*now*/) override {
        system_.sleepFor(std::chrono::milliseconds{1});
        errno = EAGAIN;
        if (header_.empty()) {
            return -1;
        }
        std::ranges::copy(std::exchange(header_, {}), buffer.begin());
        return std::ssize(buffer);
    }
    bool isReady(System::Readiness readiness, Moment /*now*/) override {
        return readiness == System::Readiness::toWrite || !header_.empty();
    }

    System& system_;
    ByteBuffer header_{0x72, 0x62, 0x76, 0x10};
};

TEST_F(DongleCandidatesTest, AVersionTextThatDoesNotStartWithTheNameIsNotADongle) {
    for (const std::string text : {"velmorindal 1.1M", "A Velmorindal"}) {
        dongle.prepare([&](DeviceState& device) { device.version = text; });
        PrintedLines lines;
        expectFailure(noDongleText);
        EXPECT_EQ(withoutDescriptors(lines.take()),
                  "Open Result:  N\nGot version string:  " + text + "\nNo dongles found. Quitting.\n");
    }
}

TEST_F(DongleCandidatesTest, ARefusedCandidateIsClosedAgain) {
    dongle.prepare([](DeviceState& device) { device.version = "Another modem"; });
    EXPECT_THAT(velmorindal.listDevices(), IsEmpty());
    EXPECT_EQ(system.openDescriptors(), 0U);
    SerialPort port{path(), system};
    port.openPort();
    port.closePort();
}

TEST_F(DongleCandidatesTest, AVersionTextThatIsNotUtf8EndsTheCandidate) {
    dongle.onFirst(Type::version, Fault::answerWith({0x72, 0x62, 0x76, 0x02, 0xC3, 0x28}));
    PrintedLines lines;
    EXPECT_THAT(velmorindal.listDevices(), IsEmpty());
    EXPECT_EQ(withoutDescriptors(lines.take()), "Open Result:  N\n");
}

TEST_F(DongleCandidatesTest, AVersionTextCutShortIsJudgedByWhatArrivedBeforeTheTimeOut) {
    dongle.onFirst(Type::version, Fault::halfAPayload());
    PrintedLines lines;
    // The read that begins at the time-out, to the moment, is the last one.
    EXPECT_THAT(secondsTakenBy([this] { EXPECT_THAT(velmorindal.listDevices(), IsEmpty()); }),
                testing::AllOf(testing::Ge(4.0), testing::Le(4.1)));
    EXPECT_EQ(withoutDescriptors(lines.take()), "Open Result:  N\nGot version string:  Velmorin\n");
}

TEST_F(DongleCandidatesTest, AVersionTextIsReadNoFurtherOnceTheTimeOutHasPassed) {
    dongle.unplug();
    HeaderAlone line{system};
    std::filesystem::create_symlink("/dev/null", directory.path() / "cu.usbmodem-header");
    system.add(directory.path() / "cu.usbmodem-header", line);
    EXPECT_THAT(secondsTakenBy([this] { EXPECT_THAT(velmorindal.listDevices(), IsEmpty()); }),
                testing::AllOf(testing::Ge(2.0), testing::Le(2.1)));
}

TEST_F(DongleCandidatesTest, ACandidateThatTakesOnlyAPartOfTheQueryIsSkippedAndLeftOpen) {
    system.cutWrite(Type::version, 1, 3);
    PrintedLines lines;
    EXPECT_THAT(velmorindal.listDevices(), IsEmpty());
    EXPECT_EQ(system.openDescriptors(), 1U);
    EXPECT_EQ(withoutDescriptors(lines.take()), "Open Result:  N\nCould not write my whole sequence.\n");
}

TEST_F(DongleCandidatesTest, ACandidateThatAnotherProgramHoldsIsSkippedAndTheOthersAreTried) {
    InProcessDongle second{system, directory.path(), {.name = "cu.usbmodem-second"}};
    SerialPort other{path(), system};
    other.openPort();
    PrintedLines lines;
    EXPECT_THAT(velmorindal.listDevices(), ElementsAre(second.path().string()));
    EXPECT_NE(lines.take().find("Open Result:  -1\n"), std::string::npos);
    other.closePort();
}

TEST_F(DongleCandidatesTest, TwoDonglesLeaveAWarningThatOutlivesTheSuccess) {
    InProcessDongle second{system, directory.path(), {.name = "cu.usbmodem-second"}};
    PrintedLines lines;
    EXPECT_TRUE(connect());
    EXPECT_EQ(velmorindal.lastError.get(), severalDonglesText);
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::connected);
    const std::string printed = lines.take();
    EXPECT_NE(printed.find("This program has detected 2 dongles.\n\nOne will be chosen arbitrarily.\n"),
              std::string::npos);
    // The first one in the order of the directory walk is the one that is talked to.
    const auto first = DongleSearch{.directory = directory.path().string()}.candidates().front();
    EXPECT_EQ(velmorindal.serialPort.get()->path, first);
}

TEST_F(DongleCandidatesTest, TheWarningOfTwoDonglesIsThereWhileTheOneIsAskedForItsLink) {
    InProcessDongle second{system, directory.path(), {.name = "cu.usbmodem-second"}};
    std::optional<std::string> text;
    for (InProcessDongle* const each : {&dongle, &second}) {
        each->whenReceived([this, &text](std::span<const std::uint8_t> frame) {
            if (frame[VelmorindalCommand::TypeOffset] == static_cast<std::uint8_t>(Type::status)) {
                text = velmorindal.lastError.get();
            }
        });
    }
    EXPECT_TRUE(connect());
    EXPECT_EQ(text, severalDonglesText);
}

TEST_F(DongleCandidatesTest, AnEndlessDeviceIsNoDongle) {
    // Reading brings zeros, which is a frame without a text; reading brings text; writing fails at once.
    EndlessLine zeros{0};
    EndlessLine text{'V'};
    EndlessLine full{0, false};
    int number = 0;
    for (EndlessLine* const line : {&zeros, &text, &full}) {
        const auto name = directory.path() / ("cu.usbmodem-endless" + std::to_string(++number));
        std::filesystem::create_symlink("/dev/null", name);
        system.add(name, *line);
    }
    PrintedLines lines;
    EXPECT_THAT(velmorindal.listDevices(), ElementsAre(path()));
    const std::string printed = lines.take();
    EXPECT_THAT(printed, testing::HasSubstr("Could not write my whole sequence.\n"));
    EXPECT_THAT(printed, testing::HasSubstr("Got version string:  \n"));
    EXPECT_THAT(printed, testing::HasSubstr("Got version string:  " + std::string(0x56, 'V') + "\n"));
}

TEST_F(DongleCandidatesTest, EachPieceOfAVersionTextMustBeUtf8ByItself) {
    // The time-out cuts the last character in two.
    dongle.onFirst(Type::version, Fault{"a character in two pieces", [](AnswerPlan& plan) {
                                            plan.bytesBefore = {0x72, 0x62, 0x76, 0x0D, 'V', 'e', 'l', 'm',
                                                                'o',  'r',  'i',  'n',  'd', 'a', 'l', 0xC3};
                                            plan.answer = {0xA9};
                                            plan.delivery = AnswerPlan::Delivery::afterDelay;
                                            plan.delay = std::chrono::milliseconds{3000};
                                        }});
    PrintedLines lines;
    EXPECT_THAT(velmorindal.listDevices(), IsEmpty());
    EXPECT_EQ(withoutDescriptors(lines.take()), "Open Result:  N\n");
}

}  // namespace
}  // namespace velmorindal
