#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "Choices.h"
#include "Scheduler.h"
#include "ScriptedLine.h"
#include "SerialPort.h"
#include "SerialPortTesting.h"

namespace velmorindal {

/// A virtual system that notes the calls that change something, counts those that wait, and runs the
/// callback for a slow open.
class NotedSystem final : public VirtualSystem {
  public:
    using VirtualSystem::VirtualSystem;

    int openExclusively(const std::string& path, int accessMode,
                        const std::function<void()>& whenSlow) override {
        calls.emplace_back("open");
        if (whenSlow) {
            whenSlow();
        }
        return VirtualSystem::openExclusively(path, accessMode, whenSlow);
    }
    void endExclusiveUse(int descriptor) override {
        calls.push_back("end the exclusive use of " + std::to_string(descriptor));
        VirtualSystem::endExclusiveUse(descriptor);
    }
    void close(int descriptor) override {
        calls.push_back("close " + std::to_string(descriptor));
        VirtualSystem::close(descriptor);
    }
    bool setLineAttributes(int descriptor, const termios& attributes) override {
        calls.emplace_back("set attributes");
        termios taken = attributes;
        taken.c_cflag &= ~refusedFlags;
        return VirtualSystem::setLineAttributes(descriptor, taken);
    }

    bool wait(int descriptor, Readiness readiness, std::optional<Clock::time_point> until) override {
        ++waits;
        return VirtualSystem::wait(descriptor, readiness, until);
    }

    std::vector<std::string> calls;
    std::size_t waits = 0;
    /// What the driver of the line leaves out of the flags that it is told to set.
    tcflag_t refusedFlags = 0;
};

/// A port on a line whose far end follows a script, on virtual time.
class VirtualPortTest : public testing::Test {
  protected:
    VirtualPortTest() { system.add(port.path, line); }

    /// What the device sends now.
    void send(const ByteBuffer& bytes) { line.sendAt(scheduler.now(), bytes); }

    /// How much virtual time `operation` takes, in seconds.
    template <typename Operation>
    double secondsTakenBy(Operation operation) {
        const Scheduler::Moment start = scheduler.now();
        operation();
        return std::chrono::duration<double>{scheduler.now() - start}.count();
    }

    Choices choices;
    Scheduler scheduler{choices, {.deviations = 0, .points = std::numeric_limits<std::size_t>::max()}};
    NotedSystem system{scheduler};
    ScriptedLine line;
    SerialPort port{"line", system};
};

/// Reads wait two tenths of a second each and two seconds in all, and writes two seconds.
class OpenVirtualPortTest : public VirtualPortTest {
  protected:
    OpenVirtualPortTest() {
        port.openPort();
        port.setSettings(dongleSettings(2));
    }
};

}  // namespace velmorindal
