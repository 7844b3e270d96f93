#include <array>
#include <exception>
#include <span>

#include "DeviceTicks.h"
#include "FatalError.h"
#include "Print.h"
#include "VCHumDuration.h"
#include "VCHumThresholds.h"
#include "VCKeyboardConfig.h"
#include "VCOutputPath.h"
#include "VCProtocolSelect.h"
#include "VCRelayConfig.h"
#include "VCWriteSettings.h"
#include "VelmorindalSwitch.h"

namespace velmorindal {
namespace {

std::uint16_t cutoffTicks(float seconds) {
    const auto ticks = wholeTicks(seconds);
    if (!ticks) {
        fatalError("The cutoff does not fit the device's sixteen bits.");
    }
    return *ticks;
}

std::uint32_t codeOf(OutputKey key) {
    const auto entry = VelmorindalSwitch::keyCodes().find(key);
    if (entry == VelmorindalSwitch::keyCodes().end()) {
        fatalError("A chosen key has no key code.");
    }
    return entry->second;
}

/// The byte of `code` at `position`, counted from the most significant one.
std::uint8_t codeByte(std::uint32_t code, unsigned position) {
    return static_cast<std::uint8_t>(code >> (24U - 8U * position));
}

std::unique_ptr<VelmorindalCommand> protocolSelect(const VelmorindalSwitch& velmorindal) {
    using CommProtocol = VCProtocolSelect::CommProtocol;
    auto command = std::make_unique<VCProtocolSelect>();
    command->proto = velmorindal.outputPath.get() == OutputPath::BTKeyboard ? CommProtocol::Bluetooth
                                                                            : CommProtocol::Gazell;
    return command;
}

std::unique_ptr<VelmorindalCommand> outputPath(const VelmorindalSwitch& velmorindal) {
    using DevicePath = VCOutputPath::OutputPath;
    auto command = std::make_unique<VCOutputPath>();
    command->path =
        velmorindal.outputPath.get() == OutputPath::USBKeyboard ? DevicePath::USB : DevicePath::Relay;
    return command;
}

VCHumDuration::DetectMode detectMode(const VelmorindalSwitch& velmorindal) {
    using DetectMode = VCHumDuration::DetectMode;
    if (velmorindal.outputMode.get() == OutputMode::Direct) {
        return DetectMode::DetectModeContinuous;
    }
    // With neither output enabled the device listens for long hums.
    if (!velmorindal.shortEnabled.get()) {
        return DetectMode::DetectModeLongOnly;
    }
    return velmorindal.longEnabled.get() ? DetectMode::DetectModeShortAndLong
                                         : DetectMode::DetectModeShortOnly;
}

std::unique_ptr<VelmorindalCommand> humDuration(const VelmorindalSwitch& velmorindal) {
    const std::uint16_t ticks = cutoffTicks(velmorindal.cutoff.get());
    auto command = std::make_unique<VCHumDuration>();
    command->detect_mode = detectMode(velmorindal);
    command->min_short = 0;
    command->max_short = ticks;
    command->min_long = ticks;
    command->max_long = 0xFFFF;
    command->hold_on = velmorindal.outputMode.get() == OutputMode::Direct ? 2 : 4;
    command->hold_off = 0;
    return command;
}

std::unique_ptr<VelmorindalCommand> relayConfig(const VelmorindalSwitch& velmorindal) {
    using Mode = VCRelayConfig::RelayConfigMode;
    using Type = VCRelayConfig::RelayConfigType;
    auto command = std::make_unique<VCRelayConfig>();
    command->config_modeShort = Mode::RelayConfigModeFixed;
    command->config_modeLong = velmorindal.outputMode.get() == OutputMode::Direct
                                   ? Mode::RelayConfigModeFollow
                                   : Mode::RelayConfigModeFixed;
    command->config_typeShort = Type::RelayConfigTypeNO;
    command->config_typeLong = Type::RelayConfigTypeNO;
    command->min_pulse_short = 10;
    command->min_pulse_long = 10;
    command->max_pulse_short = 1000;
    command->max_pulse_long = 1000;
    return command;
}

std::unique_ptr<VelmorindalCommand> humThresholds(const VelmorindalSwitch& velmorindal) {
    auto command = std::make_unique<VCHumThresholds>();
    command->apThreshold = velmorindal.clarity.get();
    command->siThreshold = command->apThreshold;
    return command;
}

void fillShortKey(VCKeyboardConfig& command, std::uint32_t code) {
    command.shortKey0Modifier = codeByte(code, 0);
    command.shortKey0 = codeByte(code, 1);
    command.shortKey1Modifier = codeByte(code, 2);
    command.shortKey1 = codeByte(code, 3);
}

void fillLongKey(VCKeyboardConfig& command, std::uint32_t code) {
    command.longKey0Modifier = codeByte(code, 0);
    command.longKey0 = codeByte(code, 1);
    command.longKey1Modifier = codeByte(code, 2);
    command.longKey1 = codeByte(code, 3);
}

std::unique_ptr<VelmorindalCommand> keyboardConfig(const VelmorindalSwitch& velmorindal) {
    auto command = std::make_unique<VCKeyboardConfig>();
    if (velmorindal.outputPath.get() == OutputPath::Switch) {
        return command;
    }
    const keyList keys = velmorindal.outputKeys.get();
    if (velmorindal.outputMode.get() == OutputMode::Direct) {
        fillLongKey(*command, codeOf(keys.directKey));
    } else {
        fillShortKey(*command, codeOf(keys.shortKey));
        fillLongKey(*command, codeOf(keys.longKey));
    }
    return command;
}

std::unique_ptr<VelmorindalCommand> writeSettings(const VelmorindalSwitch& /*velmorindal*/) {
    return std::make_unique<VCWriteSettings>();
}

struct CommitStep {
    std::unique_ptr<VelmorindalCommand> (*build)(const VelmorindalSwitch& velmorindal);
    std::string_view code;
    /// Comes last in the error code: it distinguishes the two ways of selecting a protocol.
    std::string_view codeSuffix;
    std::optional<double> progressAfter;
};

constexpr std::array bluetoothSteps{CommitStep{protocolSelect, "PS", "", 1.0}};
constexpr std::array dongleSteps{CommitStep{protocolSelect, "PS", "2", std::nullopt},
                                 CommitStep{outputPath, "OP", "", 1.0}};
constexpr std::array commonSteps{
    CommitStep{humDuration, "HD", "", 2.0},
    CommitStep{relayConfig, "RC", "", 3.0},
    CommitStep{humThresholds, "HT", "", 4.0},
    CommitStep{keyboardConfig, "KC", "", 5.0},
    CommitStep{writeSettings, "WS", "", std::nullopt},
};

/// Sends one step's command. @returns the text of the failure, or nothing.
std::optional<std::string> failureOf(VelmorindalSwitch& velmorindal, const CommitStep& step) {
    std::string kind;
    std::string text;
    try {
        if (velmorindal.sendCommand(*step.build(velmorindal))) {
            return std::nullopt;
        }
        text = "Failed to write instruction to device.";
        kind = "/SC";
    } catch (const std::exception&) {
        text = "Disconnection during writing process. Your changes were not saved.";
        kind = "/TC";
    }
    return text + "\n\nError code: " + std::string{step.code} + kind + std::string{step.codeSuffix};
}

}  // namespace

bool VelmorindalSwitch::cutoffFitsDevice() const {
    return wholeTicks(cutoff.get()).has_value();
}

bool VelmorindalSwitch::commitSettingsToDevice() {
    if (!isValid) {
        return false;
    }
    lastError = std::nullopt;
    if (connectionState.get() != ConnectionStatus::connected) {
        lastError = std::string{notConnectedText};
        return false;
    }
    dispatch_.runOnMainAndWait([this] {
        connectionState = ConnectionStatus::writing;
        readWriteProgress = 0.0;
    });

    const std::span<const CommitStep> pathSteps = outputPath.get() == OutputPath::BTKeyboard
                                                      ? std::span<const CommitStep>{bluetoothSteps}
                                                      : dongleSteps;
    for (const auto steps : {pathSteps, std::span<const CommitStep>{commonSteps}}) {
        for (const CommitStep& step : steps) {
            if (auto failure = failureOf(*this, step)) {
                lastError = std::move(failure);
                dispatch_.postToMain([this] { connectionState = ConnectionStatus::error; });
                return false;
            }
            if (step.progressAfter) {
                dispatch_.postToMain(
                    [this, progress = *step.progressAfter] { readWriteProgress = progress; });
            }
        }
    }
    dispatch_.postToMain([this] {
        readWriteProgress = 5.0;
        connectionState = ConnectionStatus::connected;
    });
    print("Save completed.");
    return true;
}

}  // namespace velmorindal
