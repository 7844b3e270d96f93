#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "ByteBuffer.h"

namespace velmorindal {

/// Cuts the bytes of one side of a line into frames, as their length bytes say, and what lies between them.
///
/// Every byte that is added comes out once, in order. Bytes that start like a header of that side are taken
/// for one; only flush() ends a frame that stays incomplete. Not safe from several threads.
class FrameSplitter {
  public:
    enum class Side { host, device };

    /// Bytes that belong to no frame come out in pieces of at most this size.
    static constexpr std::size_t longestPieceBetweenFrames = 64;

    explicit FrameSplitter(Side side) : side_{side} {}

    /// @returns the pieces that end with these bytes: whole frames, and what belongs to none.
    std::vector<ByteBuffer> add(std::span<const std::uint8_t> bytes);
    /// Removes what was added and has not come out. @returns it.
    ByteBuffer flush();

  private:
    bool mayStartAFrame(std::size_t offset) const;
    /// How many of the pending bytes belong to no frame.
    std::size_t lengthBetweenFrames() const;

    const Side side_;
    ByteBuffer pending_;
};

}  // namespace velmorindal
