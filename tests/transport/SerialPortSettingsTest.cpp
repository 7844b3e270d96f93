#include <gtest/gtest.h>
#include <termios.h>

#include <array>
#include <utility>

#include "ChildProcess.h"
#include "FreshTerminal.h"
#include "SerialPort.h"
#include "SerialPortTesting.h"

namespace velmorindal {
namespace {

termios attributesOf(const SerialPort& port) {
    termios attributes{};
    EXPECT_EQ(::tcgetattr(port.fileDescriptor().value(), &attributes), 0);
    return attributes;
}

// baud0 asks a modem to hang up. A pseudo-terminal has none, and reads back the 0 that it was given.
constexpr std::array rates{std::pair{BaudRate::baud0, B0},          std::pair{BaudRate::baud50, B50},
                           std::pair{BaudRate::baud75, B75},        std::pair{BaudRate::baud110, B110},
                           std::pair{BaudRate::baud134, B134},      std::pair{BaudRate::baud150, B150},
                           std::pair{BaudRate::baud200, B200},      std::pair{BaudRate::baud300, B300},
                           std::pair{BaudRate::baud600, B600},      std::pair{BaudRate::baud1200, B1200},
                           std::pair{BaudRate::baud1800, B1800},    std::pair{BaudRate::baud2400, B2400},
                           std::pair{BaudRate::baud4800, B4800},    std::pair{BaudRate::baud9600, B9600},
                           std::pair{BaudRate::baud19200, B19200},  std::pair{BaudRate::baud38400, B38400},
                           std::pair{BaudRate::baud57600, B57600},  std::pair{BaudRate::baud115200, B115200},
                           std::pair{BaudRate::baud230400, B230400}};

TEST(SerialPortSettings, EveryBaudRateIsReadBackFromTheLine) {
    const FreshTerminal terminal;
    SerialPort port{terminal.path(), posix};
    port.openPort();
    int ordinal = 0;
    for (const auto& [rate, speed] : rates) {
        port.setSettings({.receiveRate = rate, .transmitRate = rate, .minimumBytesToRead = 0});

        const termios attributes = attributesOf(port);
        EXPECT_EQ(static_cast<int>(rate), ordinal++);
        EXPECT_EQ(cfgetispeed(&attributes), static_cast<speed_t>(speed)) << ordinal;
        EXPECT_EQ(cfgetospeed(&attributes), static_cast<speed_t>(speed)) << ordinal;
    }
    port.closePort();
}

TEST(SerialPortSettings, DefaultToEightBitsWithoutParityFlowControlOrOutputProcessing) {
    const SerialSettings settings{
        .receiveRate = BaudRate::baud9600, .transmitRate = BaudRate::baud9600, .minimumBytesToRead = 1};

    EXPECT_EQ(settings.timeout, 0);
    EXPECT_EQ(settings.parityType, ParityType::none);
    EXPECT_FALSE(settings.sendTwoStopBits);
    EXPECT_EQ(settings.dataBitsSize, DataBitsSize::bits8);
    EXPECT_FALSE(settings.useHardwareFlowControl);
    EXPECT_FALSE(settings.useSoftwareFlowControl);
    EXPECT_FALSE(settings.processOutput);
}

TEST(SerialPortSettings, OnAClosedPortChangeNothingNotEvenWhenTheyAreOutOfRange) {
    SerialPort port{"/nowhere/at/all", posix};

    port.setSettings(dongleSettings(2));
    port.setSettings(dongleSettings(256));

    EXPECT_EQ(port.timeout(), 0);
    EXPECT_EQ(port.fileDescriptor(), std::nullopt);
}

TEST(SerialPortSettings, MayBeChangedWhileThePortIsOpen) {
    const FreshTerminal terminal;
    SerialPort port{terminal.path(), posix};
    port.openPort();
    SerialSettings settings = dongleSettings(3);
    settings.sendTwoStopBits = true;
    settings.useHardwareFlowControl = true;
    settings.useSoftwareFlowControl = true;
    settings.processOutput = true;
    const tcflag_t softwareFlowControl = IXON | IXOFF | IXANY;

    port.setSettings(settings);
    termios attributes = attributesOf(port);
    EXPECT_NE(attributes.c_cflag & CSTOPB, 0U);
    EXPECT_EQ(attributes.c_cflag & CRTSCTS, CRTSCTS);
    EXPECT_EQ(attributes.c_iflag & softwareFlowControl, softwareFlowControl);
    EXPECT_NE(attributes.c_oflag & OPOST, 0U);
    EXPECT_EQ(port.timeout(), 3);

    port.setSettings(dongleSettings(2));
    attributes = attributesOf(port);
    EXPECT_EQ(attributes.c_cflag & CSTOPB, 0U);
    EXPECT_EQ(attributes.c_cflag & CRTSCTS, 0U);
    EXPECT_EQ(attributes.c_iflag & softwareFlowControl, 0U);
    EXPECT_EQ(attributes.c_oflag & OPOST, 0U);
    EXPECT_EQ(port.timeout(), 2);
    port.closePort();
}

TEST(SerialPortSettings, LeaveWhatHasArrivedToBeRead) {
    const FreshTerminal terminal;
    SerialPort port{terminal.path(), posix};
    port.openPort();
    port.setSettings(dongleSettings(2));
    const ByteBuffer bytes{0x72, 0x62, 0x73};
    terminal.send(bytes);
    ASSERT_TRUE(posix.wait(port.fileDescriptor().value(), System::Readiness::toRead,
                           posix.now() + std::chrono::minutes{2}));

    port.setSettings(dongleSettings(2));

    EXPECT_EQ(port.readData(bytes.size()), bytes);
    port.closePort();
}

TEST(SerialPortSettings, LeaveNoControlCharacterForAnotherProgramToFind) {
    constexpr const char* listControlCharacters = R"(
import os, sys, termios
line = os.open(sys.argv[1], os.O_RDWR | os.O_NOCTTY)
attributes = termios.tcgetattr(line)
print(attributes[4] == attributes[5] == termios.B57600)
print({index: value for index, value in enumerate(attributes[6]) if value != b"\0"}
      == {termios.VTIME: 30, termios.VMIN: 200})
)";
    const FreshTerminal terminal;
    SerialPort port{terminal.path(), posix};
    port.openPort();
    port.setSettings({.receiveRate = BaudRate::baud57600,
                      .transmitRate = BaudRate::baud57600,
                      .minimumBytesToRead = 200,
                      .timeout = 30});
    port.closePort();

    ChildProcess reader{python(listControlCharacters, {terminal.path()})};

    EXPECT_EQ(reader.finish(), 0);
    EXPECT_EQ(reader.output(), "True\nTrue\n");
}

}  // namespace
}  // namespace velmorindal
