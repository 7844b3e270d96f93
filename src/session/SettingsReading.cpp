#include <exception>
#include <utility>

#include "DeviceTicks.h"
#include "FatalError.h"
#include "MessageCast.h"
#include "Print.h"
#include "RawValue.h"
#include "VCHumDuration.h"
#include "VCHumThresholds.h"
#include "VCKeyboardConfig.h"
#include "VCOutputPath.h"
#include "VCProtocolSelect.h"
#include "VelmorindalSwitch.h"

namespace velmorindal {
namespace {

constexpr float cutoffInDirectMode = 1.0F;

/// The device has 0 for USB and 1 for the relays, the model the reverse, so the lowest bit is inverted.
OutputPath modelPath(VCOutputPath::OutputPath devicePath) {
    return static_cast<OutputPath>(static_cast<unsigned>(devicePath) ^ 1U);
}

}  // namespace

OperationResult VelmorindalSwitch::readSettingsFromDevice() {
    lastError = std::nullopt;
    if (connectionState.get() != ConnectionStatus::connecting) {
        return failure(std::string{notConnectedText});
    }
    dispatch_.postToMain([this] { readWriteProgress = 3.0; });
    for (const auto step : {&VelmorindalSwitch::readOutputPath, &VelmorindalSwitch::readHumDuration,
                            &VelmorindalSwitch::readThresholds, &VelmorindalSwitch::readKeys}) {
        if (auto reason = (this->*step)()) {
            return failure(std::move(reason));
        }
    }
    isValid = true;
    return {};
}

VelmorindalSwitch::Reading VelmorindalSwitch::readSetting(VelmorindalMessageType type,
                                                          std::string_view step) {
    Reading reading;
    try {
        reading.answer = queryDevice(rawValue(type));
    } catch (const std::exception&) {
        // This is how a silent device ends. It is the only failure that changes the state here, and it waits
        // until the posts before it are applied.
        dispatch_.runOnMainAndWait([this] { connectionState = ConnectionStatus::error; });
        reading.failure = "Invalid message received from server.\n\n(Error code: VC/TC)";
        return reading;
    }
    const std::string code = "(Error code: VC" + std::string{step};
    if (!reading.answer) {
        reading.failure = "Response timeout " + code + "/TO)";
    } else if (!reading.answer->_valid) {
        reading.failure = "Invalid response from dongle " + code + "/IV)";
    }
    return reading;
}

std::optional<std::string> VelmorindalSwitch::readOutputPath() {
    const Reading radio = readSetting(VCProtocolSelect::messageType, "PS");
    if (radio.failure) {
        return radio.failure;
    }
    if (messageAs<VCProtocolSelect>(*radio.answer).proto == VCProtocolSelect::CommProtocol::Bluetooth) {
        dispatch_.postToMain([this] { outputPath = OutputPath::BTKeyboard; });
    } else {
        const Reading reading = readSetting(VCOutputPath::messageType, "OP");
        if (reading.failure) {
            return reading.failure;
        }
        const OutputPath path = modelPath(messageAs<VCOutputPath>(*reading.answer).path);
        dispatch_.postToMain([this, path] { outputPath = path; });
    }
    dispatch_.postToMain([this] { readWriteProgress = 4.0; });
    return std::nullopt;
}

std::optional<std::string> VelmorindalSwitch::readHumDuration() {
    using DetectMode = VCHumDuration::DetectMode;
    const Reading reading = readSetting(VCHumDuration::messageType, "HD");
    if (reading.failure) {
        return reading.failure;
    }
    const auto& hum = messageAs<VCHumDuration>(*reading.answer);
    const DetectMode detect = hum.detect_mode;
    const OutputMode mode =
        detect == DetectMode::DetectModeContinuous ? OutputMode::Direct : OutputMode::LongShort;
    const bool isShort =
        detect == DetectMode::DetectModeShortOnly || detect == DetectMode::DetectModeShortAndLong;
    const bool isLong =
        detect == DetectMode::DetectModeLongOnly || detect == DetectMode::DetectModeShortAndLong;
    dispatch_.postToMain([this, mode] { outputMode = mode; });
    dispatch_.postToMain([this, isShort] { shortEnabled = isShort; });
    dispatch_.postToMain([this, isLong] { longEnabled = isLong; });

    // The mode that the main thread has now, often still the one before this reading: the value just posted
    // is not waited for.
    const float seconds =
        outputMode.get() == OutputMode::LongShort ? thresholdSeconds(hum.max_short) : cutoffInDirectMode;
    dispatch_.postToMain([this, seconds] { cutoff = seconds; });
    print("Test: cutoff is ", seconds);
    dispatch_.postToMain([this] { readWriteProgress = 5.0; });
    return std::nullopt;
}

std::optional<std::string> VelmorindalSwitch::readThresholds() {
    const Reading reading = readSetting(VCHumThresholds::messageType, "HT");
    if (reading.failure) {
        return reading.failure;
    }
    const float threshold = messageAs<VCHumThresholds>(*reading.answer).apThreshold;
    dispatch_.postToMain([this, threshold] {
        clarity = threshold;
        readWriteProgress = 6.0;
    });
    return std::nullopt;
}

std::optional<std::string> VelmorindalSwitch::readKeys() {
    const Reading reading = readSetting(VCKeyboardConfig::messageType, "KC");
    if (reading.failure) {
        return reading.failure;
    }
    const auto& keys = messageAs<VCKeyboardConfig>(*reading.answer);
    // One byte is compared with whole 32-bit codes. No code is below 256, so both lists are always empty and
    // the keys get the defaults below. This is intended.
    const auto shortKeys = keysWithCode(keys.shortKey1);
    const auto longKeys = keysWithCode(keys.longKey1);
    const auto postKey = [this](OutputKey keyList::*field, OutputKey key) {
        dispatch_.postToMain([this, field, key] {
            keyList next = outputKeys.get();
            next.*field = key;
            outputKeys = next;
        });
    };
    postKey(&keyList::shortKey, shortKeys.empty() ? OutputKey::Space : shortKeys.front());
    if (longKeys.empty()) {
        postKey(&keyList::longKey, OutputKey::Enter);
        postKey(&keyList::directKey, OutputKey::Enter);
        return std::nullopt;
    }
    postKey(&keyList::longKey, longKeys.front());
    if (longKeys.size() == 1) {
        fatalError("The keyboard configuration names a long key but no direct key.");
    }
    postKey(&keyList::directKey, longKeys[1]);
    return std::nullopt;
}

}  // namespace velmorindal
