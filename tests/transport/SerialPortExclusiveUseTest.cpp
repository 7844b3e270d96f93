#include <gtest/gtest.h>
#include <sys/ioctl.h>

#include "ChildProcess.h"
#include "PortHolders.h"
#include "TerminalPortTest.h"

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

using SerialPortExclusiveUse = TerminalPortTest;

class APortThatAnotherProcessHolds : public TerminalPortTest,
                                     public testing::WithParamInterface<const char*> {};

TEST_P(APortThatAnotherProcessHolds, IsRefusedUntilTheOtherHasLeft) {
    ChildProcess other{python(GetParam(), {terminal.path()})};
    ASSERT_TRUE(other.says("held")) << other.output();
    const std::ptrdiff_t before = openDescriptors();

    EXPECT_EQ(errorOf([&] { port.openPort(); }), PortError::failedToOpen);
    EXPECT_EQ(port.fileDescriptor(), -1);
    EXPECT_EQ(openDescriptors(), before);

    ASSERT_EQ(other.finish(), 0) << other.output();
    EXPECT_EQ(errorOf([&] { port.openPort(); }), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(SerialPort, APortThatAnotherProcessHolds,
                         testing::Values(holdByLock, holdByExclusiveMode),
                         [](const auto& test) { return nameOfHolder(test.param); });

TEST_F(SerialPortExclusiveUse, KeepsAnotherProgramAwayUntilThePortIsClosed) {
    port.openPort();

    int exclusiveMode = 0;
    ASSERT_EQ(::ioctl(port.fileDescriptor().value(), TIOCGEXCL, &exclusiveMode), 0);
    EXPECT_EQ(exclusiveMode, 1);
    ChildProcess early{python(tryToOpen, {terminal.path()})};
    EXPECT_EQ(early.finish(), 0);
    EXPECT_EQ(early.output(), "refused\n");

    port.closePort();
    ChildProcess late{python(tryToOpen, {terminal.path()})};
    EXPECT_EQ(late.finish(), 0);
    EXPECT_EQ(late.output(), "opened\n");
}

}  // namespace
}  // namespace velmorindal
