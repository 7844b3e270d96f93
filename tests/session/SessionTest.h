#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "DongleProbe.h"
#include "InProcessDongle.h"
#include "ManualDispatch.h"
#include "PrintedLines.h"
#include "TemporaryDirectory.h"
#include "UnhurriedSystem.h"
#include "VelmorindalSwitch.h"
#include "VirtualDongle.h"
#include "VirtualWorld.h"

namespace velmorindal {

inline constexpr const char* noDongleText =
    "Could not detect Velmorindal Dongle.\nPlease ensure that it is plugged into a USB port.";

/// A dongle in this process, on virtual time.
struct VirtualDongleWorld : VirtualWorld {
    explicit VirtualDongleWorld(const SimulatedDongle::Options& options)
        : dongle{system, directory.path(), options} {}

    TemporaryDirectory directory;
    InProcessDongle dongle;
};

/// A dongle on a pseudo-terminal, threads that run at once, and no deadline that a busy machine could miss.
struct TerminalDongleWorld {
    explicit TerminalDongleWorld(const SimulatedDongle::Options& options)
        : dongle{directory.path(), options} {}

    void end() { dispatch.waitForBackground(); }

    UnhurriedSystem system;
    ManualDispatch dispatch;
    TemporaryDirectory directory;
    VirtualDongle dongle;
};

/// The text with every descriptor of an opened port replaced by N: they differ from run to run.
std::string withoutDescriptors(const std::string& lines);

std::ptrdiff_t occurrences(const std::string& text, std::string_view piece);

/// What the model publishes and can be compared, as one line of words for each property, in declaration
/// order.
std::vector<std::string> publishedBy(const VelmorindalSwitch& velmorindal);

/// A model beside one simulated dongle, its main queue in the hands of the test.
template <typename World>
class SessionTestOn : public testing::Test, protected World {
  public:
    ~SessionTestOn() override { World::end(); }
    SessionTestOn(const SessionTestOn&) = delete;
    SessionTestOn& operator=(const SessionTestOn&) = delete;

  protected:
    using World::directory;
    using World::dispatch;
    using World::dongle;
    using World::system;

    explicit SessionTestOn(const SimulatedDongle::Options& options = {}) : World{options} {}

    void TearDown() override {
        velmorindal.pollingState = PollingState::none;
        dongle.unplug();
        dispatch.waitForBackground();
        dispatch.runPendingMainWork();
        velmorindal.disconnect(false);
    }

    /// Connects and reads the settings, the main queue running freely.
    OperationResult connect() {
        return dispatch.finish([this] { return velmorindal.connect(); });
    }

    /// Gives the model an open port to the dongle and nothing else.
    void openPort() {
        auto port = std::make_shared<SerialPort>(dongle.path().string(), system);
        port->openPort();
        port->setSettings(dongleLine);
        velmorindal.serialPort = port;
    }

    /// Those of publishedBy() that `change` has changed.
    std::vector<std::string> changesMadeBy(const std::function<void()>& change) const {
        const auto before = publishedBy(velmorindal);
        change();
        const auto after = publishedBy(velmorindal);
        std::vector<std::string> changes;
        for (std::size_t index = 0; index < before.size(); ++index) {
            if (before[index] != after[index]) {
                changes.push_back(after[index]);
            }
        }
        return changes;
    }

    /// Runs the pieces of main-queue work that come until `operation` has ended on a background thread, and
    /// lists what each of them changed.
    template <typename Operation>
    std::vector<std::string> changesWhile(Operation operation) {
        const auto result = dispatch.inBackground([operation] {
            operation();
            return true;
        });
        std::vector<std::string> changes;
        while (dispatch.waitUntil([&] { return dispatch.pendingMainWork() > 0 || result.isReady(); })) {
            if (dispatch.pendingMainWork() == 0) {
                return changes;
            }
            const auto made = changesMadeBy([this] { dispatch.runOneMainWork(); });
            changes.insert(changes.end(), made.begin(), made.end());
        }
        ADD_FAILURE() << "The operation did not end.";
        return changes;
    }

    /// The frames that the device got, without the first `count`.
    std::vector<ByteBuffer> framesAfter(std::size_t count) const {
        auto frames = dongle.receivedFrames();
        frames.erase(frames.begin(),
                     frames.begin() + static_cast<std::ptrdiff_t>(std::min(count, frames.size())));
        return frames;
    }

    VelmorindalSwitch velmorindal{dispatch, system, {.directory = directory.path().string() + "/"}};
};

/// Exact to the tick of a virtual clock. For everything but what a real terminal and real threads do.
class SessionTest : public SessionTestOn<VirtualDongleWorld> {
  protected:
    using SessionTestOn::SessionTestOn;
    using VirtualWorld::scheduler;
    using VirtualWorld::secondsTakenBy;
};

using TerminalSessionTest = SessionTestOn<TerminalDongleWorld>;

}  // namespace velmorindal
