#include "FrameSplitter.h"

#include <utility>

#include "VelmorindalCommand.h"

namespace velmorindal {
namespace {

using Header = VelmorindalCommandProtocol;

bool isKindOf(std::uint8_t byte, FrameSplitter::Side side) {
    // A device may answer with a command's own bytes.
    return byte == Header::CommandByte || (side == FrameSplitter::Side::device &&
                                           (byte == Header::ResponseByte || byte == Header::ErrorByte));
}

}  // namespace

std::vector<ByteBuffer> FrameSplitter::add(std::span<const std::uint8_t> bytes) {
    std::vector<ByteBuffer> pieces;
    const auto cut = [&](std::size_t length) {
        const auto end = pending_.begin() + static_cast<std::ptrdiff_t>(length);
        pieces.emplace_back(pending_.begin(), end);
        pending_.erase(pending_.begin(), end);
    };
    for (const std::uint8_t byte : bytes) {
        pending_.push_back(byte);
        const std::size_t strange = lengthBetweenFrames();
        if (strange >= longestPieceBetweenFrames) {
            // It can be one byte too long, when a byte that might have started a frame did not.
            cut(longestPieceBetweenFrames);
        } else if (strange > 0 && pending_.size() == strange + 2) {
            cut(strange);
        }
        if (lengthBetweenFrames() == 0 && pending_.size() >= Header::HeaderSize &&
            pending_.size() == Header::HeaderSize + pending_[Header::LengthOffset]) {
            cut(pending_.size());
        }
    }
    return pieces;
}

ByteBuffer FrameSplitter::flush() {
    return std::exchange(pending_, {});
}

bool FrameSplitter::mayStartAFrame(std::size_t offset) const {
    return isKindOf(pending_[offset], side_) &&
           (offset + 1 == pending_.size() || pending_[offset + 1] == Header::MarkerByte);
}

std::size_t FrameSplitter::lengthBetweenFrames() const {
    std::size_t length = 0;
    while (length < pending_.size() && !mayStartAFrame(length)) {
        ++length;
    }
    return length;
}

}  // namespace velmorindal
