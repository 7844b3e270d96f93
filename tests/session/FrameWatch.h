#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "protocol/VelmorindalCommand.h"

namespace velmorindal {

/// Every frame that this process writes while it lives, whether or not it gets out.
///
/// The program must be linked with ShortWrite, which stands before the system's `write`. One at a time.
class FrameWatch {
  public:
    /// @param beforeFrame called on the writing thread before each frame goes out, with its number, from 1.
    ///        The frame waits for it.
    explicit FrameWatch(std::function<void(std::size_t)> beforeFrame);
    FrameWatch(const FrameWatch&) = delete;
    FrameWatch& operator=(const FrameWatch&) = delete;
    ~FrameWatch();

    std::vector<ByteBuffer> frames() const;

    /// For whoever stands before `write`.
    static void noteWrite(std::span<const std::uint8_t> bytes);
};

}  // namespace velmorindal
