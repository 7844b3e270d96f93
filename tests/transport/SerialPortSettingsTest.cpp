#include <gtest/gtest.h>
#include <termios.h>

#include <array>

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

struct NamedRate {
    BaudRate rate;
    speed_t speed;
    int ordinal;
    const char* name;
};

// baud0 asks a modem to hang up. A pseudo-terminal has none, and reads back the 0 that it was given.
constexpr std::array everyBaudRate{
    NamedRate{BaudRate::baud0, B0, 0, "baud0"},
    NamedRate{BaudRate::baud50, B50, 1, "baud50"},
    NamedRate{BaudRate::baud75, B75, 2, "baud75"},
    NamedRate{BaudRate::baud110, B110, 3, "baud110"},
    NamedRate{BaudRate::baud134, B134, 4, "baud134"},
    NamedRate{BaudRate::baud150, B150, 5, "baud150"},
    NamedRate{BaudRate::baud200, B200, 6, "baud200"},
    NamedRate{BaudRate::baud300, B300, 7, "baud300"},
    NamedRate{BaudRate::baud600, B600, 8, "baud600"},
    NamedRate{BaudRate::baud1200, B1200, 9, "baud1200"},
    NamedRate{BaudRate::baud1800, B1800, 10, "baud1800"},
    NamedRate{BaudRate::baud2400, B2400, 11, "baud2400"},
    NamedRate{BaudRate::baud4800, B4800, 12, "baud4800"},
    NamedRate{BaudRate::baud9600, B9600, 13, "baud9600"},
    NamedRate{BaudRate::baud19200, B19200, 14, "baud19200"},
    NamedRate{BaudRate::baud38400, B38400, 15, "baud38400"},
    NamedRate{BaudRate::baud57600, B57600, 16, "baud57600"},
    NamedRate{BaudRate::baud115200, B115200, 17, "baud115200"},
    NamedRate{BaudRate::baud230400, B230400, 18, "baud230400"},
};

TEST(SerialPortSettings, OfEveryBaudRateAreReadBackFromTheLine) {
    const FreshTerminal terminal;
    SerialPort port{terminal.path(), posix};
    port.openPort();
    for (const auto& [rate, speed, ordinal, name] : everyBaudRate) {
        port.setSettings({.receiveRate = rate, .transmitRate = rate, .minimumBytesToRead = 0});

        const termios attributes = attributesOf(port);
        EXPECT_EQ(static_cast<int>(rate), ordinal) << name;
        EXPECT_EQ(cfgetispeed(&attributes), speed) << name;
        EXPECT_EQ(cfgetospeed(&attributes), speed) << name;
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

TEST(SerialPortSettingsDeathTest, OutOfRangeStopTheProcessOnAnOpenPort) {
    const FreshTerminal terminal;
    SerialPort port{terminal.path(), posix};
    port.openPort();

    EXPECT_EXIT(port.setSettings(dongleSettings(256)), testing::KilledBySignal(SIGABRT), "timeout");

    port.setSettings(dongleSettings(255));
    EXPECT_EQ(port.timeout(), 255);
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

TEST(SerialPortSettings, OfTheDongleAreWhatAnotherProgramFindsOnTheLine) {
    const FreshTerminal terminal;
    SerialPort port{terminal.path(), posix};
    port.openPort();
    port.setSettings(dongleSettings(2));
    port.closePort();

    ChildProcess stty{{"stty", "-a", "-F", terminal.path()}};

    ASSERT_EQ(stty.finish(), 0) << stty.output();
    for (const char* setting : {"speed 115200 baud;",
                                "min = 0;",
                                "time = 2;",
                                "intr = <undef>;",
                                "eof = <undef>;",
                                "start = <undef>;",
                                " cs8 ",
                                "-parenb",
                                "-cstopb",
                                "cread",
                                "clocal",
                                "-crtscts",
                                "-inlcr",
                                "-igncr",
                                "-icrnl",
                                "-ixon",
                                "-ixoff",
                                "-ixany",
                                "-opost",
                                "-isig",
                                "-icanon",
                                "-echo ",
                                "-echoe "}) {
        EXPECT_NE(stty.output().find(setting), std::string::npos) << setting << " in\n" << stty.output();
    }
}

}  // namespace
}  // namespace velmorindal
