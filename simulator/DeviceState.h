#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velmorindal {

// Every field holds what was on the wire, unchecked: a test may set any byte. The initial values are the
// factory settings of the simulated device.

/// Which hums count. A tick is 40 ms.
struct HumDurationSettings {
    std::uint8_t detectMode = 3;  ///< 0 continuous, 1 short only, 2 long only, 3 short and long
    std::uint16_t minShort = 0;   ///< ticks, as the three below
    std::uint16_t maxShort = 25;
    std::uint16_t minLong = 25;
    std::uint16_t maxLong = 0xFFFF;
    std::uint8_t holdOn = 4;
    std::uint8_t holdOff = 0;

    bool operator==(const HumDurationSettings&) const = default;
};

/// How clear a sound must be to count as a hum.
struct HumThresholdSettings {
    float ap = 0.5F;  ///< clarity, 0 to 1
    float si = 0.5F;

    bool operator==(const HumThresholdSettings&) const = default;
};

/// How a switch jack closes. The unit of the pulses is not known.
struct RelaySettings {
    std::uint8_t mode = 1;  ///< 0 follow, 1 fixed, 2 toggle
    std::uint8_t type = 0;  ///< 0 normally open, 1 normally closed
    std::uint16_t minPulse = 10;
    std::uint16_t maxPulse = 1000;

    bool operator==(const RelaySettings&) const = default;
};

/// Four bytes for the short hum, then four for the long one: two keystrokes, each a modifier and a key (USB
/// HID usage numbers).
using KeyBytes = std::array<std::uint8_t, 8>;

/// All settings of the device.
struct DeviceSettings {
    std::uint8_t protocol = 0;    ///< 0 Gazell, 1 Bluetooth
    std::uint8_t outputPath = 1;  ///< 0 USB, 1 relay
    HumDurationSettings humDuration = {};
    HumThresholdSettings thresholds = {};
    KeyBytes keys{0x00, 0x2C, 0x00, 0x00, 0x00, 0x28, 0x00, 0x00};  ///< space, enter
    RelaySettings shortRelay = {};
    RelaySettings longRelay = {};

    bool operator==(const DeviceSettings&) const = default;
};

/// The whole state of a simulated device.
struct DeviceState {
    std::string version = "Velmorindal 1.1M";  ///< at most 255 bytes of it are sent
    std::uint8_t linkState = 1;                ///< 0: the dongle does not reach the device
    DeviceSettings settings = {};              ///< in use, and the answers to queries
    std::optional<DeviceSettings> stored =
        {};  ///< what the last order to store kept; nothing before the first
    unsigned timesStored = 0;
    std::uint8_t autoTuneChannel = 0;  ///< 2 while it streams reports
    std::uint16_t lastHumTicks = 0;    ///< reported once, 0 afterwards
    std::uint8_t lastHumSource = 0;    ///< the third byte of that report

    bool operator==(const DeviceState&) const = default;
};

/// The stored settings in words, one setting a line, or a single line if nothing was stored. Independent of
/// the locale.
std::vector<std::string> storedSettingsInWords(const DeviceState& state);

}  // namespace velmorindal
