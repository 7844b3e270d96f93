// What the port asks of the system, and what it does not ask.

#include <gtest/gtest.h>

#include <cerrno>

#include "VirtualPortTest.h"

namespace velmorindal {
namespace {

using Calls = std::vector<std::string>;

class SerialPortCalls : public VirtualPortTest {
  protected:
    /// As another program would, past the port.
    void changeAttributes() {
        const int descriptor = port.fileDescriptor().value();
        termios attributes{};
        system.lineAttributes(descriptor, attributes);
        attributes.c_cc[VMIN] = 1;
        system.VirtualSystem::setLineAttributes(descriptor, attributes);
    }

    cc_t minimumOnTheLine() {
        termios attributes{};
        system.lineAttributes(port.fileDescriptor().value(), attributes);
        return attributes.c_cc[VMIN];
    }
};

TEST_F(SerialPortCalls, RenewingTheSettingsSetsThemOnlyIfTheyWereChanged) {
    port.openPort();
    port.renewSettings();
    port.setSettings(dongleSettings(2));
    port.renewSettings();
    EXPECT_EQ(system.calls, (Calls{"open", "set attributes"}));

    changeAttributes();
    port.renewSettings();
    port.renewSettings();
    EXPECT_EQ(system.calls, (Calls{"open", "set attributes", "set attributes"}));
    EXPECT_EQ(minimumOnTheLine(), 0);
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

TEST_F(SerialPortCalls, RenewsNothingOnAClosedPort) {
    port.openPort();
    port.setSettings(dongleSettings(2));
    port.closePort();
    system.calls.clear();

    port.renewSettings();

    EXPECT_EQ(system.calls, Calls{});
}

TEST_F(SerialPortCalls, ANewOpenForgetsTheSettingsOfTheOneBefore) {
    port.openPort();
    port.setSettings(dongleSettings(2));
    port.closePort();
    port.openPort();
    changeAttributes();

    port.renewSettings();

    EXPECT_EQ(minimumOnTheLine(), 1);
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

}  // namespace
}  // namespace velmorindal
