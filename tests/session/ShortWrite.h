#pragma once

#include <cstddef>

#include "protocol/VelmorindalMessageType.h"

namespace velmorindal {

/// While it lives, one write of a frame takes fewer bytes than it was given, as a system under strain may do.
///
/// Counts the frames of `type` that this process writes from now on, from 1. The program it is linked into
/// has its own `write`. One at a time.
class ShortWrite {
  public:
    /// @param taken the bytes that really go out, and what the write returns; -1 for a write that fails.
    ShortWrite(VelmorindalMessageType type, std::size_t occurrence, std::ptrdiff_t taken);
    ShortWrite(const ShortWrite&) = delete;
    ShortWrite& operator=(const ShortWrite&) = delete;
    ~ShortWrite();

    bool hasHappened() const;
};

}  // namespace velmorindal
