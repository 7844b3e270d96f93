#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace velmorindal {

/// The third byte of every frame: a query, a command and the device's answer of one kind share it.
enum class VelmorindalMessageType : std::uint8_t {
    none = 0x00,
    humDuration = 0x64,      // 'd'
    humThresholds = 0x68,    // 'h'
    keyboardConfig = 0x6B,   // 'k'
    lastHumDuration = 0x6C,  // 'l'
    outputPath = 0x70,       // 'p'
    status = 0x73,           // 's'
    autoTune = 0x74,         // 't'
    version = 0x76,          // 'v'
    writeSettings = 0x77,    // 'w'
    protocolSelect = 0x78,   // 'x'
    relayConfig = 0x79,      // 'y'
    reset = 0x7A,            // 'z'
};

/// The case with that wire value, or nothing.
std::optional<VelmorindalMessageType> messageTypeFromCode(std::uint8_t code);

/// The case's name as it is spelled here; an empty text for a value outside the cases.
std::string_view caseName(VelmorindalMessageType type);

}  // namespace velmorindal
