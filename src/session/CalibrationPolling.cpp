#include <chrono>
#include <exception>

#include "DeviceTicks.h"
#include "MessageCast.h"
#include "Print.h"
#include "RawValue.h"
#include "VCAutoTune.h"
#include "VCLastHumDuration.h"
#include "VelmorindalMessageFactory.h"
#include "VelmorindalSwitch.h"

namespace velmorindal {
namespace {

constexpr auto lastHumCode = rawValue(VelmorindalMessageType::lastHumDuration);
constexpr auto reportCode = rawValue(VelmorindalMessageType::autoTune);
constexpr std::uint8_t reportingChannel = 2;
constexpr std::uint8_t silentChannel = 0;
constexpr std::chrono::milliseconds betweenChecks{20};

/// A turn without a result takes at least this long. On an open port the port's deadline paces the loop; a
/// port that is gone fails at once, and would keep a core and the log busy.
constexpr std::chrono::milliseconds shortestEmptyTurn{500};

}  // namespace

void VelmorindalSwitch::beginClarityPolling() {
    beginPolling(&VelmorindalSwitch::clarityPolling);
}

void VelmorindalSwitch::beginDurationPolling() {
    beginPolling(&VelmorindalSwitch::durationPolling);
}

void VelmorindalSwitch::beginPolling(void (VelmorindalSwitch::*run)()) {
    // Set here, not on the run's thread: a second press in between must not start a second run.
    if (!bgIsProcessing.exchange(true)) {
        dispatch_.runInBackground([this, run] { (this->*run)(); });
    }
}

void VelmorindalSwitch::stopPollingAndWait() {
    while (true) {
        // In each turn: a run that was just starting may have set its state meanwhile.
        if (pollingState.get() != PollingState::none) {
            pollingState = PollingState::none;
        }
        if (!bgIsProcessing) {
            return;
        }
        system_.sleepFor(betweenChecks);
        dispatch_.runPendingMainWork();
    }
}

bool VelmorindalSwitch::acknowledged(const VelmorindalCommand& command) {
    try {
        return sendCommand(command);
    } catch (const std::exception&) {
        return false;
    }
}

void VelmorindalSwitch::pollWhile(PollingState state, bool (VelmorindalSwitch::*turn)()) {
    while (pollingState.get() == state) {
        const auto end = system_.now() + shortestEmptyTurn;
        if ((this->*turn)()) {
            continue;
        }
        while (pollingState.get() == state && system_.now() < end) {
            system_.sleepFor(betweenChecks);
        }
    }
}

void VelmorindalSwitch::clarityPolling() {
    print("Starting clarity polling");
    VCAutoTune autoTune;
    autoTune.channel = reportingChannel;
    if (!acknowledged(autoTune)) {
        bgIsProcessing = false;
        return;
    }
    dispatch_.runOnMainAndWait([this] { pollingState = PollingState::clarity; });
    print("Device configured. Polling now.");
    pollWhile(PollingState::clarity, &VelmorindalSwitch::pollClarity);
    autoTune.channel = silentChannel;
    acknowledged(autoTune);
    dispatch_.postToMain([this] { detectedClarity = 0.0; });
    bgIsProcessing = false;
}

bool VelmorindalSwitch::pollClarity() {
    const auto frame = readMessage();
    if (!frame) {
        // Writing a frame restores the line's attributes if another program has changed them, but this loop
        // writes nothing.
        if (const auto port = serialPort.get()) {
            port->renewSettings();
        }
        return false;
    }
    // All other frames are ignored, however malformed.
    if ((*frame)[VelmorindalCommand::TypeOffset] != reportCode) {
        return true;
    }
    const auto message = VelmorindalMessageFactory::createFromWire(*frame);
    const auto* const report = dynamic_cast<const VCAutoTune*>(message.get());
    if (report == nullptr || !report->_valid) {
        return true;
    }
    const float reading = report->_maxThreshold;
    print("Have a reading of ", reading);
    dispatch_.postToMain([this, reading] {
        ++readingsReceived;
        detectedClarity = static_cast<double>(reading);
    });
    return true;
}

void VelmorindalSwitch::durationPolling() {
    dispatch_.runOnMainAndWait([this] { pollingState = PollingState::duration; });
    try {
        // The device may still hold a hum from before this run; the first query clears it.
        queryDevice(lastHumCode);
    } catch (const std::exception& exception) {
        print("Not a good start to duration polling", exception.what());
        dispatch_.runOnMainAndWait([this] {
            pollingState = PollingState::none;
            bgIsProcessing = false;
        });
        return;
    }
    dispatch_.postToMain([this] { detectedDuration = 0.0; });
    pollWhile(PollingState::duration, &VelmorindalSwitch::pollDuration);
    dispatch_.postToMain([this] { detectedDuration = 0.0; });
    bgIsProcessing = false;
}

bool VelmorindalSwitch::pollDuration() {
    std::unique_ptr<VelmorindalCommand> answer;
    try {
        answer = queryDevice(lastHumCode);
    } catch (const std::exception&) {
        return false;
    }
    if (!answer) {
        return false;
    }
    if (!answer->_valid) {
        return true;
    }
    const double seconds = humSeconds(messageAs<VCLastHumDuration>(*answer)._duration);
    dispatch_.postToMain([this, seconds] {
        ++readingsReceived;
        detectedDuration = seconds;
    });
    if (seconds > 0.0) {
        print("Last hum duration was ", seconds, "s");
    }
    return true;
}

}  // namespace velmorindal
