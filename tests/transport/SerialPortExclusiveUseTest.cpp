#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <filesystem>
#include <iterator>

#include "ChildProcess.h"
#include "FreshTerminal.h"
#include "PortHolders.h"
#include "SerialPort.h"
#include "SerialPortTesting.h"

namespace velmorindal {
namespace {

constexpr const char* tryToOpen = R"(
import serial, sys
try:
    serial.Serial(sys.argv[1], exclusive=True).close()
    print("opened")
except serial.SerialException:
    print("refused")
)";

std::ptrdiff_t openDescriptors() {
    return std::distance(std::filesystem::directory_iterator{"/proc/self/fd"},
                         std::filesystem::directory_iterator{});
}

class APortThatAnotherProcessHolds : public testing::TestWithParam<const char*> {};

TEST_P(APortThatAnotherProcessHolds, IsRefusedUntilTheOtherHasLeft) {
    const FreshTerminal terminal;
    ChildProcess other{python(GetParam(), {terminal.path()})};
    ASSERT_TRUE(other.says("held")) << other.output();
    SerialPort port{terminal.path(), posix};
    const std::ptrdiff_t before = openDescriptors();

    EXPECT_EQ(errorOf([&] { port.openPort(); }), PortError::failedToOpen);
    EXPECT_EQ(port.fileDescriptor(), -1);
    EXPECT_EQ(openDescriptors(), before);

    ASSERT_EQ(other.finish(), 0) << other.output();
    EXPECT_EQ(errorOf([&] { port.openPort(); }), std::nullopt);
    port.closePort();
}

INSTANTIATE_TEST_SUITE_P(SerialPort, APortThatAnotherProcessHolds,
                         testing::Values(holdByLock, holdByExclusiveMode),
                         [](const auto& test) { return nameOfHolder(test.param); });

TEST(SerialPortExclusiveUse, KeepsAnotherProgramAwayUntilThePortIsClosed) {
    const FreshTerminal terminal;
    SerialPort port{terminal.path(), posix};
    port.openPort();

    ChildProcess early{python(tryToOpen, {terminal.path()})};
    EXPECT_EQ(early.finish(), 0);
    EXPECT_EQ(early.output(), "refused\n");

    port.closePort();
    ChildProcess late{python(tryToOpen, {terminal.path()})};
    EXPECT_EQ(late.finish(), 0);
    EXPECT_EQ(late.output(), "opened\n");
}

TEST(SerialPortExclusiveUse, IsTheTerminalsExclusiveModeToo) {
    const FreshTerminal terminal;
    SerialPort port{terminal.path(), posix};
    port.openPort();

    int exclusive = 0;
    ASSERT_EQ(::ioctl(port.fileDescriptor().value(), TIOCGEXCL, &exclusive), 0);
    EXPECT_EQ(exclusive, 1);
    port.closePort();
}

}  // namespace
}  // namespace velmorindal
