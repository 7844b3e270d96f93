#include <sys/file.h>

#include "session/ConnectionTest.h"
#include "session/ShortWrite.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Type = VelmorindalMessageType;

constexpr const char* severalDonglesText =
    "Multiple dongles found. To ensure that you program the correct device, please remove any extra USB "
    "dongles.";

class DongleCandidatesTest : public ConnectionTest {};

TEST_F(DongleCandidatesTest, WithoutAnyEntryItFailsWithTheNoDongleText) {
    dongle.unplug();
    PrintedLines lines;
    EXPECT_THAT(changesWhile([this] { EXPECT_FALSE(velmorindal.connect()); }),
                ElementsAre("connectionState error"));
    EXPECT_EQ(velmorindal.lastError.get(), noDongleText);
    EXPECT_EQ(lines.take(), "No dongles found. Quitting.\n");
}

TEST_F(DongleCandidatesTest, ALowerCaseVersionTextIsNotADongle) {
    dongle.prepare([](DeviceState& device) { device.version = "velmorindal 1.1M"; });
    PrintedLines lines;
    expectFailure(noDongleText);
    EXPECT_EQ(withoutDescriptors(lines.take()),
              "Open Result:  N\nGot version string:  velmorindal 1.1M\nNo dongles found. Quitting.\n");
}

TEST_F(DongleCandidatesTest, ARefusedCandidateIsClosedAgain) {
    dongle.prepare([](DeviceState& device) { device.version = "Another modem"; });
    EXPECT_THAT(velmorindal.listDevices(), IsEmpty());
    SerialPort port{path()};
    port.openPort();
    port.closePort();
}

TEST_F(DongleCandidatesTest, AVersionTextThatIsNotUtf8EndsTheCandidate) {
    dongle.onFirst(Type::version, Fault::answerWith({0x72, 0x62, 0x76, 0x02, 0xC3, 0x28}));
    PrintedLines lines;
    EXPECT_THAT(velmorindal.listDevices(), IsEmpty());
    EXPECT_EQ(withoutDescriptors(lines.take()), "Open Result:  N\n");
}

TEST_F(DongleCandidatesTest, ASilentCandidateIsSkipped) {
    dongle.onFirst(Type::version, Fault::silence());
    expectFailure(noDongleText);
}

TEST_F(DongleCandidatesTest, AVersionTextCutShortIsJudgedByWhatArrived) {
    dongle.onFirst(Type::version, Fault::halfAPayload());
    PrintedLines lines;
    EXPECT_THAT(velmorindal.listDevices(), IsEmpty());
    EXPECT_EQ(withoutDescriptors(lines.take()), "Open Result:  N\nGot version string:  Velmorin\n");
}

TEST_F(DongleCandidatesTest, ACandidateThatTakesOnlyAPartOfTheQueryIsSkipped) {
    const ShortWrite shortWrite{Type::version, 1, 3};
    PrintedLines lines;
    EXPECT_THAT(velmorindal.listDevices(), IsEmpty());
    EXPECT_EQ(withoutDescriptors(lines.take()), "Open Result:  N\nCould not write my whole sequence.\n");
}

TEST_F(DongleCandidatesTest, ACandidateThatAnotherProgramHoldsIsSkippedAndTheOthersAreTried) {
    VirtualDongle second{directory.path(), {.name = "cu.usbmodem-second"}};
    const int other = ::open(path().c_str(), O_RDWR | O_NOCTTY);
    ASSERT_EQ(::flock(other, LOCK_EX | LOCK_NB), 0);
    PrintedLines lines;
    EXPECT_THAT(velmorindal.listDevices(), ElementsAre(second.path().string()));
    EXPECT_NE(lines.take().find("Open Result:  -1\n"), std::string::npos);
    ::close(other);
}

TEST_F(DongleCandidatesTest, TwoDonglesLeaveAWarningThatOutlivesTheSuccess) {
    VirtualDongle second{directory.path(), {.name = "cu.usbmodem-second"}};
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

TEST_F(DongleCandidatesTest, ADonglePulledOutWhileItIsProbedIsNoDongle) {
    dongle.onFirst(Type::version, Fault::unplugDuringAnswer());
    expectFailure(noDongleText);
}

}  // namespace
}  // namespace velmorindal
