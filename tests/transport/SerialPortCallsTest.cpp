// What the port asks of the system, and what it does not ask.

#include <gtest/gtest.h>

#include <cerrno>

#include "VirtualPortTest.h"

namespace velmorindal {
namespace {

using Calls = std::vector<std::string>;

class SerialPortCalls : public VirtualPortTest {
  protected:
    termios attributes() {
        termios now{};
        system.lineAttributes(port.fileDescriptor().value(), now);
        return now;
    }

    /// As another program would, past the port.
    void changeAttributes() {
        termios changed = attributes();
        changed.c_cc[VMIN] = 1;
        changed.c_cflag |= HUPCL;
        system.VirtualSystem::setLineAttributes(port.fileDescriptor().value(), changed);
    }
};

TEST_F(SerialPortCalls, SettingsLeaveWhatTheyDoNotNameAsItWas) {
    port.openPort();
    changeAttributes();

    port.setSettings(dongleSettings(2));

    EXPECT_NE(attributes().c_cflag & HUPCL, 0U);
    EXPECT_EQ(attributes().c_cc[VMIN], 0);
}

TEST_F(SerialPortCalls, RenewingTheSettingsSetsThemOnlyIfTheyWereChangedOnAnOpenPort) {
    port.openPort();
    port.renewSettings();
    port.setSettings(dongleSettings(2));
    port.renewSettings();
    EXPECT_EQ(system.calls, (Calls{"open", "set attributes"}));

    changeAttributes();
    port.renewSettings();
    port.renewSettings();
    EXPECT_EQ(system.calls, (Calls{"open", "set attributes", "set attributes"}));
    EXPECT_EQ(attributes().c_cc[VMIN], 0);

    port.closePort();
    system.calls.clear();
    port.renewSettings();
    EXPECT_EQ(system.calls, Calls{});
}

TEST_F(SerialPortCalls, WhatTheDriverDidNotTakeIsNotAskedOfItAgain) {
    system.refusedFlags = CRTSCTS;
    SerialSettings settings = dongleSettings(2);
    settings.useHardwareFlowControl = true;
    port.openPort();
    port.setSettings(settings);

    port.renewSettings();

    EXPECT_EQ(system.calls, (Calls{"open", "set attributes"}));
}

TEST_F(SerialPortCalls, ANewOpenForgetsTheSettingsOfTheOneBefore) {
    port.openPort();
    port.setSettings(dongleSettings(2));
    port.closePort();
    port.openPort();
    changeAttributes();

    port.renewSettings();

    EXPECT_EQ(attributes().c_cc[VMIN], 1);
}

TEST_F(SerialPortCalls, AFailedOpenLeavesNothingToEndOrClose) {
    line.vanish();
    EXPECT_EQ(errorOf([&] { port.openPort(); }), PortError::failedToOpen);

    port.closePort();

    EXPECT_EQ(system.calls, Calls{"open"});
}

TEST_F(SerialPortCalls, ClosingEndsTheExclusiveUseAndThenTheDescriptorOnce) {
    port.openPort();
    const std::string descriptor = std::to_string(port.fileDescriptor().value());

    port.closePort();
    port.closePort();

    EXPECT_EQ(system.calls, (Calls{"open", "end the exclusive use of " + descriptor, "close " + descriptor}));
}

TEST_F(SerialPortCalls, OpeningAnOpenPortDoesNotCloseTheDescriptorItHad) {
    port.openPort();
    const int before = port.fileDescriptor().value();

    EXPECT_EQ(errorOf([&] { port.openPort(); }), PortError::failedToOpen) << "held by this program itself";

    EXPECT_EQ(port.fileDescriptor(), -1);
    EXPECT_TRUE(system.isOpen(before));
    EXPECT_EQ(system.calls, (Calls{"open", "open"}));
}

TEST_F(SerialPortCalls, OpeningPassesOnTheCallbackForASlowOpen) {
    int calls = 0;

    port.openPort(true, true, [&calls] { ++calls; });

    EXPECT_EQ(calls, 1);
}

TEST_F(SerialPortCalls, WhatFollowsAFullReadIsReadWithoutAWait) {
    port.openPort();
    port.setSettings(dongleSettings(2));
    send({1, 2, 3, 4});

    EXPECT_EQ(port.readData(2), (ByteBuffer{1, 2}));
    EXPECT_EQ(system.waits, 1U);
    EXPECT_EQ(port.readData(2), (ByteBuffer{3, 4}));
    EXPECT_EQ(system.waits, 1U);
}

TEST_F(SerialPortCalls, AReadThatTheSystemRefusesFailsWithoutAWait) {
    port.openPort();
    port.setSettings(dongleSettings(2));
    line.failRead(EBADF);
    ByteBuffer buffer(1);

    EXPECT_EQ(port.readBytes(buffer), -1);
    EXPECT_EQ(system.waits, 0U);
}

}  // namespace
}  // namespace velmorindal
