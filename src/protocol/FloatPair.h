#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "VelmorindalMessageType.h"

namespace velmorindal {

/// The payload of every response about clarity: two floats, bit for bit as they arrived.
///
///     response, 8 bytes
///     0  4  first
///     4  4  second
struct FloatPair {
    float first;
    float second;

    /// The pair in `frame`, or nothing unless it is one whole frame of `messageType` with a payload of 8
    /// bytes. Prints as PayloadReader::ofFrame does.
    static std::optional<FloatPair> ofFrame(std::span<const std::uint8_t> frame,
                                            VelmorindalMessageType messageType);
};

}  // namespace velmorindal
