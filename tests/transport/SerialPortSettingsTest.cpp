#include <gtest/gtest.h>
#include <termios.h>

#include <ostream>

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

void PrintTo(const NamedRate& rate, std::ostream* out) {
    *out << rate.name;
}

class EveryBaudRate : public testing::TestWithParam<NamedRate> {};

TEST_P(EveryBaudRate, IsReadBackFromTheLine) {
    const auto& [rate, speed, ordinal, name] = GetParam();
    const FreshTerminal terminal;
    SerialPort port{terminal.path(), posix};
    port.openPort();

    port.setSettings({.receiveRate = rate, .transmitRate = rate, .minimumBytesToRead = 0});

    const termios attributes = attributesOf(port);
    EXPECT_EQ(static_cast<int>(rate), ordinal);
    EXPECT_EQ(cfgetispeed(&attributes), speed);
    EXPECT_EQ(cfgetospeed(&attributes), speed);
    port.closePort();
}

// baud0 asks a modem to hang up. A pseudo-terminal has none, and reads back the 0 that it was given.
INSTANTIATE_TEST_SUITE_P(SerialPort, EveryBaudRate,
                         testing::Values(NamedRate{BaudRate::baud0, B0, 0, "baud0"},
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
                                         NamedRate{BaudRate::baud230400, B230400, 18, "baud230400"}),
                         [](const auto& parameters) { return std::string{parameters.param.name}; });

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
    SerialSettings tooManyBytes = dongleSettings(2);
    tooManyBytes.minimumBytesToRead = 256;

    EXPECT_EXIT(port.setSettings(dongleSettings(256)), testing::KilledBySignal(SIGABRT), "timeout");
    EXPECT_EXIT(port.setSettings(dongleSettings(-1)), testing::KilledBySignal(SIGABRT), "timeout");
    EXPECT_EXIT(port.setSettings(tooManyBytes), testing::KilledBySignal(SIGABRT), "minimumBytesToRead");

    port.setSettings(dongleSettings(255));
    EXPECT_EQ(port.timeout(), 255);
    port.closePort();
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
