#include "SimulatedDevice.h"

#include <algorithm>
#include <iterator>

#include "SettingsBytes.h"
#include "VelmorindalMessageType.h"
#include "WireFrame.h"

namespace velmorindal {
namespace {

using enum VelmorindalMessageType;

constexpr std::uint8_t streamingChannel = 2;

ByteBuffer response(std::uint8_t type, std::span<const std::uint8_t> payload) {
    return wireFrame(VelmorindalCommandProtocol::ResponseByte, type, payload);
}

/// The payload length of a command of this type; nothing for a type that is not a command.
std::optional<std::size_t> commandLength(VelmorindalMessageType type) {
    switch (type) {
        case humDuration:
            return humDurationSize;
        case humThresholds:
            return thresholdsSize;
        case keyboardConfig:
            return KeyBytes{}.size();
        case lastHumDuration:
            return 3;
        case outputPath:
        case protocolSelect:
        case autoTune:
            return 1;
        case relayConfig:
            return relaysSize;
        case writeSettings:
        case reset:
            return 0;
        default:
            return std::nullopt;
    }
}

/// Whether `frame` is a valid command, and not a query or an invalid frame.
bool isCommand(std::span<const std::uint8_t> frame) {
    return commandLength(VelmorindalMessageType{frame[typeOffset]}) == payloadOf(frame).size();
}

/// The payload of the answer to a query; nothing for a type without queries.
std::optional<ByteBuffer> currentValue(VelmorindalMessageType type, const DeviceState& state) {
    const DeviceSettings& settings = state.settings;
    switch (type) {
        case version:
            return ByteBuffer{state.version.begin(), state.version.end()};
        case status:
            return ByteBuffer{state.linkState};
        case protocolSelect:
            return ByteBuffer{settings.protocol};
        case outputPath:
            return ByteBuffer{settings.outputPath};
        case humDuration:
            return humDurationBytes(settings.humDuration);
        case humThresholds:
            return floatPairBytes(settings.thresholds.ap, settings.thresholds.si);
        case keyboardConfig:
            return ByteBuffer{settings.keys.begin(), settings.keys.end()};
        case lastHumDuration:
            return lastHumBytes(state.lastHumTicks, state.lastHumSource);
        case relayConfig: {
            // Without the last byte, unlike the command: hosts expect 11 bytes.
            ByteBuffer bytes = relayBytes(settings.shortRelay, settings.longRelay);
            bytes.pop_back();
            return bytes;
        }
        default:
            return std::nullopt;
    }
}

void applySettings(VelmorindalMessageType type, std::span<const std::uint8_t> payload, DeviceState& state) {
    DeviceSettings& settings = state.settings;
    switch (type) {
        case humDuration:
            settings.humDuration = humDurationFrom(payload);
            break;
        case humThresholds:
            settings.thresholds = thresholdsFrom(payload);
            break;
        case keyboardConfig:
            std::copy(payload.begin(), payload.end(), settings.keys.begin());
            break;
        case outputPath:
            settings.outputPath = payload[0];
            break;
        case protocolSelect:
            settings.protocol = payload[0];
            break;
        case relayConfig:
            settings.shortRelay = relayFrom(payload);
            settings.longRelay = relayFrom(payload.subspan(relaysSize / 2));
            break;
        case lastHumDuration:
            state.lastHumTicks = littleEndian16(payload);
            state.lastHumSource = payload[2];
            break;
        case autoTune:
            state.autoTuneChannel = payload[0];
            break;
        default:
            break;
    }
}

}  // namespace

SimulatedDevice::SimulatedDevice(const DeviceState& state, const std::optional<HumSeries>& hums)
    : state_{state}, initialSettings_{state.settings}, hums_{hums} {}

ByteBuffer SimulatedDevice::answerTo(std::span<const std::uint8_t> frame) const {
    const std::uint8_t type = frame[typeOffset];
    if (isCommand(frame)) {
        return response(type, payloadOf(frame));
    }
    if (payloadOf(frame).empty()) {
        if (VelmorindalMessageType{type} == autoTune) {
            const Clarity now = clarity();
            return report(now.maximum, now.minimum);
        }
        if (const auto value = currentValue(VelmorindalMessageType{type}, state_)) {
            return response(type, *value);
        }
    }
    return wireFrame(VelmorindalCommandProtocol::ErrorByte, type);
}

void SimulatedDevice::apply(std::span<const std::uint8_t> frame) {
    const VelmorindalMessageType type{frame[typeOffset]};
    if (!isCommand(frame)) {
        if (type == lastHumDuration && payloadOf(frame).empty()) {
            state_.lastHumTicks = 0;
        }
        return;
    }
    applySettings(type, payloadOf(frame), state_);
    if (type == writeSettings) {
        state_.stored = state_.settings;
        ++state_.timesStored;
    } else if (type == reset) {
        state_.settings = state_.stored.value_or(initialSettings_);
        state_.autoTuneChannel = 0;
    }
}

void SimulatedDevice::advanceTo(HumSeries::Time now) {
    if (!hums_) {
        return;
    }
    if (const auto finished = hums_->advanceTo(now)) {
        state_.lastHumTicks = *finished;
    }
}

bool SimulatedDevice::streams() const {
    return state_.autoTuneChannel == streamingChannel;
}

ByteBuffer SimulatedDevice::nextReport() {
    Clarity next = clarity();
    if (!queued_.empty()) {
        next.maximum = queued_.front();
        queued_.pop_front();
    }
    return report(next.maximum, next.minimum);
}

ByteBuffer SimulatedDevice::report(float maximum, float minimum) {
    return response(static_cast<std::uint8_t>(autoTune), floatPairBytes(minimum, maximum));
}

void SimulatedDevice::setSteadyClarity(float maximum, float minimum) {
    steady_ = Clarity{.maximum = maximum, .minimum = minimum};
}

void SimulatedDevice::queueClarities(const std::vector<float>& maxima) {
    std::copy(maxima.begin(), maxima.end(), std::back_inserter(queued_));
}

SimulatedDevice::Clarity SimulatedDevice::clarity() const {
    if (steady_) {
        return *steady_;
    }
    if (hums_) {
        return {.maximum = hums_->clarity(), .minimum = hums_->noise()};
    }
    return {};
}

}  // namespace velmorindal
