#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>

#include "FreshTerminal.h"
#include "SerialPort.h"
#include "SerialPortTesting.h"

namespace velmorindal {

/// A port, still closed, on a device that the test plays.
class TerminalPortTest : public testing::Test {
  protected:
    void TearDown() override { port.closePort(); }

    static std::ptrdiff_t openDescriptors() {
        return std::distance(std::filesystem::directory_iterator{"/proc/self/fd"}, {});
    }

    FreshTerminal terminal;
    SerialPort port{terminal.path(), posix};
};

}  // namespace velmorindal
