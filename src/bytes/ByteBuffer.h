#pragma once

#include <cstdint>
#include <vector>

namespace velmorindal {

/// Bytes as they travel, in order. The transport and the protocol share this type.
using ByteBuffer = std::vector<std::uint8_t>;

}  // namespace velmorindal
