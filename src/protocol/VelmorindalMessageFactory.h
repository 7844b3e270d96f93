#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// Turns a received frame into the message object of its type. Safe from any thread.
class VelmorindalMessageFactory {
  public:
    /// Prints one line about a frame that fails its checks. Stops the process for a version text that is
    /// not UTF-8.
    ///
    /// @returns nothing for a frame shorter than its header, of an unknown type or of a type that is never
    ///          received; otherwise an object whose `_valid` says whether the frame passed its checks.
    static std::unique_ptr<VelmorindalCommand> createFromWire(std::span<const std::uint8_t> buffer);
};

}  // namespace velmorindal
