#include "SettingsBytes.h"

#include <bit>

namespace velmorindal {
namespace {

void append16(ByteBuffer& bytes, std::uint16_t value) {
    bytes.push_back(static_cast<std::uint8_t>(value & 0xFFU));
    bytes.push_back(static_cast<std::uint8_t>(value >> 8U));
}

void appendFloat(ByteBuffer& bytes, float value) {
    const auto bits = std::bit_cast<std::uint32_t>(value);
    append16(bytes, static_cast<std::uint16_t>(bits & 0xFFFFU));
    append16(bytes, static_cast<std::uint16_t>(bits >> 16U));
}

float floatFrom(std::span<const std::uint8_t> bytes) {
    const std::uint32_t low = littleEndian16(bytes);
    const std::uint32_t high = littleEndian16(bytes.subspan(2));
    return std::bit_cast<float>(high << 16U | low);
}

void appendRelay(ByteBuffer& bytes, const RelaySettings& relay) {
    bytes.push_back(relay.mode);
    bytes.push_back(relay.type);
    append16(bytes, relay.minPulse);
    append16(bytes, relay.maxPulse);
}

}  // namespace

ByteBuffer humDurationBytes(const HumDurationSettings& settings) {
    ByteBuffer bytes{settings.detectMode};
    append16(bytes, settings.minShort);
    append16(bytes, settings.maxShort);
    append16(bytes, settings.minLong);
    append16(bytes, settings.maxLong);
    bytes.push_back(settings.holdOn);
    bytes.push_back(settings.holdOff);
    return bytes;
}

HumDurationSettings humDurationFrom(std::span<const std::uint8_t> payload) {
    return {.detectMode = payload[0],
            .minShort = littleEndian16(payload.subspan(1)),
            .maxShort = littleEndian16(payload.subspan(3)),
            .minLong = littleEndian16(payload.subspan(5)),
            .maxLong = littleEndian16(payload.subspan(7)),
            .holdOn = payload[9],
            .holdOff = payload[10]};
}

ByteBuffer floatPairBytes(float first, float second) {
    ByteBuffer bytes;
    appendFloat(bytes, first);
    appendFloat(bytes, second);
    return bytes;
}

HumThresholdSettings thresholdsFrom(std::span<const std::uint8_t> payload) {
    return {.ap = floatFrom(payload), .si = floatFrom(payload.subspan(4))};
}

ByteBuffer relayBytes(const RelaySettings& shortRelay, const RelaySettings& longRelay) {
    ByteBuffer bytes;
    appendRelay(bytes, shortRelay);
    appendRelay(bytes, longRelay);
    return bytes;
}

RelaySettings relayFrom(std::span<const std::uint8_t> sixBytes) {
    return {.mode = sixBytes[0],
            .type = sixBytes[1],
            .minPulse = littleEndian16(sixBytes.subspan(2)),
            .maxPulse = littleEndian16(sixBytes.subspan(4))};
}

ByteBuffer lastHumBytes(std::uint16_t ticks, std::uint8_t source) {
    ByteBuffer bytes;
    append16(bytes, ticks);
    bytes.push_back(source);
    return bytes;
}

std::uint16_t littleEndian16(std::span<const std::uint8_t> bytes) {
    return static_cast<std::uint16_t>(bytes[1] << 8U | bytes[0]);
}

}  // namespace velmorindal
