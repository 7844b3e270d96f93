#pragma once

#include <cstdint>
#include <vector>

namespace velmorindal {

/// Bytes as they travel, in order: what the transport and the protocol have in common.
using ByteBuffer = std::vector<std::uint8_t>;

}  // namespace velmorindal
