#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "ChildProcess.h"
#include "SerialPort.h"
#include "SerialPortTesting.h"
#include "UnhurriedSystem.h"

namespace velmorindal {
namespace {

/// A cable between two serial nodes, played by socat.
class SerialCable : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(socat_.says("starting data transfer loop")) << socat_.output(); }

    void TearDown() override { std::filesystem::remove_all(directory_); }

  private:
    static std::string newDirectory() {
        std::string directory = testing::TempDir() + "velmorindal-cable-XXXXXX";
        EXPECT_NE(::mkdtemp(directory.data()), nullptr);
        return directory;
    }

    const std::string directory_ = newDirectory();

  protected:
    UnhurriedSystem system;
    const std::string nearEnd = directory_ + "/near";
    const std::string farEnd = directory_ + "/far";

  private:
    ChildProcess socat_{
        {"socat", "-d", "-d", "pty,raw,echo=0,link=" + nearEnd, "pty,raw,echo=0,link=" + farEnd}};
};

TEST_F(SerialCable, CarriesEveryByteBothWaysBetweenTwoPorts) {
    SerialPort nearPort{nearEnd, system};
    SerialPort farPort{farEnd, system};
    for (SerialPort* port : {&nearPort, &farPort}) {
        port->openPort();
        port->setSettings(dongleSettings(2));
    }
    ByteBuffer backwards = everyByte();
    std::ranges::reverse(backwards);

    EXPECT_EQ(nearPort.writeData(everyByte()), 256);
    EXPECT_EQ(farPort.readData(256), everyByte());
    EXPECT_EQ(farPort.writeData(backwards), 256);
    EXPECT_EQ(nearPort.readData(256), backwards);

    nearPort.closePort();
    farPort.closePort();
}

TEST_F(SerialCable, CarriesEveryByteToAndFromAnotherSerialLibrary) {
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
