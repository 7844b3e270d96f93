#pragma once

#include <cstdint>
#include <span>

#include "DeviceState.h"
#include "VelmorindalCommand.h"

namespace velmorindal {

// The device's side of the payloads, little-endian. A reader needs as many bytes as its size says; that is
// not checked.

constexpr std::size_t humDurationSize = 11;
constexpr std::size_t thresholdsSize = 8;
constexpr std::size_t relaysSize = 12;

ByteBuffer humDurationBytes(const HumDurationSettings& settings);
HumDurationSettings humDurationFrom(std::span<const std::uint8_t> payload);

/// Two floats, 8 bytes: the payload of thresholds and of reports.
ByteBuffer floatPairBytes(float first, float second);
HumThresholdSettings thresholdsFrom(std::span<const std::uint8_t> payload);

/// The short hum's relay, then the long hum's, 6 bytes each.
ByteBuffer relayBytes(const RelaySettings& shortRelay, const RelaySettings& longRelay);
RelaySettings relayFrom(std::span<const std::uint8_t> sixBytes);

/// 3 bytes.
ByteBuffer lastHumBytes(std::uint16_t ticks, std::uint8_t source);
/// The number in the first two bytes.
std::uint16_t littleEndian16(std::span<const std::uint8_t> bytes);

}  // namespace velmorindal
