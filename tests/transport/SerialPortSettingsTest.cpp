#include <gtest/gtest.h>
#include <termios.h>

#include <array>
#include <utility>

#include "TerminalPortTest.h"

namespace velmorindal {
namespace {

using SerialPortSettings = TerminalPortTest;

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

TEST_F(SerialPortSettings, EveryBaudRateIsReadBackFromTheLine) {
    port.openPort();
    int ordinal = 0;
    for (const auto& [rate, speed] : rates) {
        port.setSettings({.receiveRate = rate, .transmitRate = rate, .minimumBytesToRead = 0});

        const termios attributes = attributesOf(port);
        EXPECT_EQ(static_cast<int>(rate), ordinal++);
        EXPECT_EQ(cfgetispeed(&attributes), static_cast<speed_t>(speed)) << ordinal;
        EXPECT_EQ(cfgetospeed(&attributes), static_cast<speed_t>(speed)) << ordinal;
    }
}

TEST_F(SerialPortSettings, DefaultToEightBitsWithoutParityFlowControlOrOutputProcessing) {
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

TEST_F(SerialPortSettings, OnAClosedPortChangeNothingNotEvenWhenTheyAreOutOfRange) {
    port.setSettings(dongleSettings(2));
    port.setSettings(dongleSettings(256));

    EXPECT_EQ(port.timeout(), 0);
    EXPECT_EQ(port.fileDescriptor(), std::nullopt);
}

TEST_F(SerialPortSettings, MayBeChangedWhileThePortIsOpen) {
    port.openPort();
    SerialSettings settings = dongleSettings(3);
    settings.sendTwoStopBits = true;

    port.setSettings(settings);
    EXPECT_NE(attributesOf(port).c_cflag & CSTOPB, 0U);
    EXPECT_EQ(port.timeout(), 3);

    port.setSettings(dongleSettings(2));
    EXPECT_EQ(attributesOf(port).c_cflag & CSTOPB, 0U);
    EXPECT_EQ(port.timeout(), 2);
}

TEST_F(SerialPortSettings, LeaveWhatHasArrivedToBeRead) {
    port.openPort();
    port.setSettings(dongleSettings(2));
    const ByteBuffer bytes{0x72, 0x62, 0x73};
    terminal.send(bytes);
    ASSERT_TRUE(posix.wait(port.fileDescriptor().value(), System::Readiness::toRead,
                           posix.now() + std::chrono::minutes{2}));

    port.setSettings(dongleSettings(2));

    EXPECT_EQ(port.readData(bytes.size()), bytes);
}

}  // namespace
}  // namespace velmorindal
