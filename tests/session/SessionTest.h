#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "session/ManualDispatch.h"
#include "session/VelmorindalSwitch.h"
#include "simulator/VirtualDongle.h"
#include "support/TemporaryDirectory.h"

namespace velmorindal {

inline constexpr const char* noDongleText =
    "Could not detect Velmorindal Dongle.\nPlease ensure that it is plugged into a USB port.";

/// A model beside one simulated dongle, its main queue in the hands of the test.
class SessionTest : public testing::Test {
  protected:
    explicit SessionTest(const VirtualDongle::Options& options = {}) : dongle{directory.path(), options} {}

    void TearDown() override {
        velmorindal.pollingState = PollingState::none;
        dongle.unplug();
        dispatch.waitForBackground();
        dispatch.runPendingMainWork();
        velmorindal.disconnect(false);
    }

    /// Connects and reads the settings, the main queue running freely.
    bool connect() {
        return dispatch.finish([this] { return velmorindal.connect(); });
    }

    /// Gives the model an open port to the dongle and nothing else.
    void openPort() {
        auto port = std::make_shared<SerialPort>(dongle.path().string());
        port->openPort();
        port->setSettings({.receiveRate = BaudRate::baud115200,
                           .transmitRate = BaudRate::baud115200,
                           .minimumBytesToRead = 0,
                           .timeout = 2});
        velmorindal.serialPort = port;
    }

    /// What the model publishes and can be compared, as one line of words for each property that `change` has
    /// changed, in declaration order.
    std::vector<std::string> changesMadeBy(const std::function<void()>& change) const {
        const auto before = published();
        change();
        const auto after = published();
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
        auto result = dispatch.inBackground([operation] {
            operation();
            return true;
        });
        std::vector<std::string> changes;
        const auto runOne = [&] {
            const auto made = changesMadeBy([this] { dispatch.runOneMainWork(); });
            changes.insert(changes.end(), made.begin(), made.end());
        };
        const auto deadline = std::chrono::steady_clock::now() + ManualDispatch::bound;
        while (std::chrono::steady_clock::now() < deadline) {
            const bool ended = result.wait_for(std::chrono::milliseconds{1}) == std::future_status::ready;
            if (dispatch.pendingMainWork() > 0) {
                runOne();
            } else if (ended) {
                return changes;
            }
        }
        ADD_FAILURE() << "The operation did not end.";
        return changes;
    }

    /// The frames that the device got, without the probe that finds it.
    std::vector<ByteBuffer> framesAfter(std::size_t count) const {
        auto frames = dongle.receivedFrames();
        frames.erase(frames.begin(),
                     frames.begin() + static_cast<std::ptrdiff_t>(std::min(count, frames.size())));
        return frames;
    }

    TemporaryDirectory directory;
    VirtualDongle dongle;
    ManualDispatch dispatch;
    VelmorindalSwitch velmorindal{dispatch, {.directory = directory.path().string() + "/"}};

  private:
    std::vector<std::string> published() const;
};

/// What standard output holds while it lives.
class PrintedLines {
  public:
    PrintedLines() { testing::internal::CaptureStdout(); }
    PrintedLines(const PrintedLines&) = delete;
    PrintedLines& operator=(const PrintedLines&) = delete;
    ~PrintedLines() {
        if (!taken_) {
            testing::internal::GetCapturedStdout();
        }
    }

    /// All that was printed since the construction. Once.
    std::string take() {
        taken_ = true;
        return testing::internal::GetCapturedStdout();
    }

  private:
    bool taken_ = false;
};

}  // namespace velmorindal
