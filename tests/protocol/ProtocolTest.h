#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <optional>
#include <string>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// What `action` writes to standard output.
template <typename Action>
std::string printedBy(Action action) {
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
}

/// The protocol error that `action` throws, or nothing.
template <typename Action>
std::optional<VelmorindalError> errorOf(Action action) {
    try {
        action();
    } catch (const VelmorindalException& exception) {
        return exception.error;
    }
    return std::nullopt;
}

/// Floats are compared by these: the same bytes, or not the same.
inline std::uint32_t bitsOf(float value) {
    return std::bit_cast<std::uint32_t>(value);
}

/// `message` serialized, decoded by a new object of its class.
template <typename Message>
Message throughTheWire(const Message& message) {
    Message decoded;
    EXPECT_TRUE(decoded.deserialize(message.serialize()));
    return decoded;
}

}  // namespace velmorindal
