#include "DeviceState.h"

#include <array>
#include <span>
#include <string_view>

#include "Hexadecimal.h"
#include "Print.h"

namespace velmorindal {
namespace {

std::string text(const PrintItem& item) {
    return item.text();
}

/// The word for `value`, or the bare number where there is none.
std::string word(std::uint8_t value, std::span<const std::string_view> words) {
    return value < words.size() ? std::string{words[value]} : text(value);
}

std::string duration(std::uint16_t ticks) {
    return text(ticks) + " ticks (" + text(static_cast<double>(ticks) * 40.0 / 1000.0) + " s)";
}

std::string relay(const RelaySettings& settings) {
    constexpr auto modes = std::to_array<std::string_view>({"follow", "fixed", "toggle"});
    constexpr auto types = std::to_array<std::string_view>({"normally open", "normally closed"});
    return word(settings.mode, modes) + ", " + word(settings.type, types) + ", pulses of " +
           text(settings.minPulse) + " to " + text(settings.maxPulse);
}

}  // namespace

std::vector<std::string> storedSettingsInWords(const DeviceState& state) {
    if (!state.stored) {
        return {"Nothing was stored."};
    }
    constexpr auto protocols = std::to_array<std::string_view>({"Gazell", "Bluetooth"});
    constexpr auto paths = std::to_array<std::string_view>({"USB", "relay"});
    constexpr auto detectModes =
        std::to_array<std::string_view>({"continuous", "short only", "long only", "short and long"});
    const DeviceSettings& stored = *state.stored;
    const HumDurationSettings& hums = stored.humDuration;
    const std::span<const std::uint8_t> keys = stored.keys;
    return {
        "Protocol: " + word(stored.protocol, protocols),
        "Output path: " + word(stored.outputPath, paths),
        "Hums detected: " + word(hums.detectMode, detectModes),
        "Short hums: " + duration(hums.minShort) + " to " + duration(hums.maxShort),
        "Long hums: " + duration(hums.minLong) + " to " + duration(hums.maxLong),
        "Hold counts: on " + text(hums.holdOn) + ", off " + text(hums.holdOff),
        "Clarity thresholds: " + text(stored.thresholds.ap) + " and " + text(stored.thresholds.si),
        "Short hum keys: " + hexadecimal(keys.first(4), " "),
        "Long hum keys: " + hexadecimal(keys.subspan(4), " "),
        "Short hum relay: " + relay(stored.shortRelay),
        "Long hum relay: " + relay(stored.longRelay),
        "Times stored: " + text(state.timesStored),
    };
}

}  // namespace velmorindal
