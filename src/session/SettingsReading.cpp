#include <exception>
#include <utility>

#include "FatalError.h"
#include "MessageCast.h"
#include "Print.h"
#include "VCHumDuration.h"
#include "VCHumThresholds.h"
#include "VCKeyboardConfig.h"
#include "VCOutputPath.h"
#include "VCProtocolSelect.h"
#include "VelmorindalSwitch.h"

namespace velmorindal {
namespace {

/// Milliseconds in one tick of the device's clock.
constexpr float tickMilliseconds = 40.0F;
constexpr float cutoffInDirectMode = 1.0F;

/// Asks for one setting. On failure leaves the reason in `connectionError`, naming the step by its two
/// letters, and returns nothing. A query that throws, which is what a silent device leads to, is also the one
/// that moves the state.
template <typename Message>
std::unique_ptr<VelmorindalCommand> readSetting(VelmorindalSwitch& velmorindal, std::string_view step) {
    std::unique_ptr<VelmorindalCommand> answer;
    try {
        answer = velmorindal.queryDevice(static_cast<std::uint8_t>(Message::messageType));
    } catch (const std::exception&) {
        velmorindal.connectionState = ConnectionStatus::error;
        velmorindal.connectionError = "Invalid message received from server.\n\n(Error code: VC/TC)";
        return nullptr;
    }
    const std::string code = "(Error code: VC" + std::string{step};
    if (!answer) {
        velmorindal.connectionError = "Response timeout " + code + "/TO)";
    } else if (!answer->_valid) {
        velmorindal.connectionError = "Invalid response from dongle " + code + "/IV)";
        answer.reset();
    }
    return answer;
}

/// The device counts USB as 0 and the relays as 1, the model the other way round, so the lowest bit is
/// inverted. A value beyond the cases is kept as it is.
OutputPath modelPath(VCOutputPath::OutputPath devicePath) {
    return static_cast<OutputPath>(static_cast<unsigned>(devicePath) ^ 1U);
}

}  // namespace

bool VelmorindalSwitch::readSettingsFromDevice() {
    tellConnectionError(std::nullopt);
    if (connectionState.get() != ConnectionStatus::connecting) {
        tellConnectionError(std::string{notConnectedText});
        return false;
    }
    dispatch_.postToMain([this] { readWriteProgress = 3.0; });
    if (!readOutputPath() || !readHumDuration() || !readThresholds() || !readKeys()) {
        lastError = connectionError.get();
        return false;
    }
    isValid = true;
    return true;
}

bool VelmorindalSwitch::readOutputPath() {
    const auto radio = readSetting<VCProtocolSelect>(*this, "PS");
    if (!radio) {
        return false;
    }
    if (messageAs<VCProtocolSelect>(*radio).proto == VCProtocolSelect::CommProtocol::Bluetooth) {
        dispatch_.postToMain([this] { outputPath = OutputPath::BTKeyboard; });
    } else {
        const auto answer = readSetting<VCOutputPath>(*this, "OP");
        if (!answer) {
            return false;
        }
        const OutputPath path = modelPath(messageAs<VCOutputPath>(*answer).path);
        dispatch_.postToMain([this, path] { outputPath = path; });
    }
    dispatch_.postToMain([this] { readWriteProgress = 4.0; });
    return true;
}

bool VelmorindalSwitch::readHumDuration() {
    using DetectMode = VCHumDuration::DetectMode;
    const auto answer = readSetting<VCHumDuration>(*this, "HD");
    if (!answer) {
        return false;
    }
    const auto& hum = messageAs<VCHumDuration>(*answer);
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

    // The mode as the main thread has it by now, which may well be the one before this reading: the value
    // just posted is not waited for.
    const float seconds = outputMode.get() == OutputMode::LongShort
                              ? static_cast<float>(hum.max_short) * tickMilliseconds / 1000.0F
                              : cutoffInDirectMode;
    dispatch_.postToMain([this, seconds] { cutoff = seconds; });
    print("Test: cutoff is ", seconds);
    dispatch_.postToMain([this] { readWriteProgress = 5.0; });
    return true;
}

bool VelmorindalSwitch::readThresholds() {
    const auto answer = readSetting<VCHumThresholds>(*this, "HT");
    if (!answer) {
        return false;
    }
    const float threshold = messageAs<VCHumThresholds>(*answer).apThreshold;
    dispatch_.postToMain([this, threshold] {
        clarity = threshold;
        readWriteProgress = 6.0;
    });
    return true;
}

bool VelmorindalSwitch::readKeys() {
    const auto answer = readSetting<VCKeyboardConfig>(*this, "KC");
    if (!answer) {
        return false;
    }
    const auto& keys = messageAs<VCKeyboardConfig>(*answer);
    // One byte each, compared with whole 32-bit codes: as no code is below 256, both lists are empty and the
    // keys always start from the defaults below. Kept as it is.
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
        return true;
    }
    postKey(&keyList::longKey, longKeys.front());
    if (longKeys.size() == 1) {
        fatalError("The keyboard configuration names a long key but no direct key.");
    }
    postKey(&keyList::directKey, longKeys[1]);
    return true;
}

}  // namespace velmorindal
