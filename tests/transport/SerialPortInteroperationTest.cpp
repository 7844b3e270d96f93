#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "ChildProcess.h"
#include "SerialPort.h"
#include "SerialPortTesting.h"
#include "TemporaryDirectory.h"
#include "UnhurriedSystem.h"

namespace velmorindal {
namespace {

TEST(SerialCable, CarriesEveryByteToAndFromAnotherSerialLibrary) {
    constexpr const char* answerBackwards = R"(
import serial, sys
line = serial.Serial(sys.argv[1], 115200)
print("listening", flush=True)
received = line.read(256)
line.write(received[::-1])
line.flush()
sys.stdin.read()
print(received == bytes(range(256)))
)";
    UnhurriedSystem system;
    const TemporaryDirectory directory;
    const std::string nearEnd = directory.path() / "near";
    const std::string farEnd = directory.path() / "far";
    ChildProcess cable{
        {"socat", "-d", "-d", "pty,raw,echo=0,link=" + nearEnd, "pty,raw,echo=0,link=" + farEnd}};
    ASSERT_TRUE(cable.says("starting data transfer loop")) << cable.output();
    ChildProcess answerer{python(answerBackwards, {farEnd})};
    ASSERT_TRUE(answerer.says("listening")) << answerer.output();
    SerialPort port{nearEnd, system};
    port.openPort();
    port.setSettings(dongleSettings(2));
    ByteBuffer backwards = everyByte();
    std::ranges::reverse(backwards);

    EXPECT_EQ(port.writeData(everyByte()), 256);
    EXPECT_EQ(port.readData(256), backwards);

    EXPECT_EQ(answerer.finish(), 0);
    EXPECT_EQ(answerer.output(), "listening\nTrue\n");
    port.closePort();
}

}  // namespace
}  // namespace velmorindal
