#include "WireFrame.h"

#include <algorithm>

namespace velmorindal {
namespace {

constexpr std::size_t longestPayload = 0xFF;

}  // namespace

ByteBuffer wireFrame(std::uint8_t kind, std::uint8_t type, std::span<const std::uint8_t> payload) {
    const auto sent = payload.first(std::min(payload.size(), longestPayload));
    ByteBuffer frame(headerSize + sent.size());
    frame[0] = kind;
    frame[1] = wireMarker;
    frame[2] = type;
    frame[lengthOffset] = static_cast<std::uint8_t>(sent.size());
    std::ranges::copy(sent, frame.begin() + headerSize);
    return frame;
}

std::span<const std::uint8_t> payloadOf(std::span<const std::uint8_t> frame) {
    return frame.subspan(headerSize);
}

void WireFrameReader::add(std::span<const std::uint8_t> bytes) {
    pending_.insert(pending_.end(), bytes.begin(), bytes.end());
}

std::optional<ByteBuffer> WireFrameReader::next() {
    skipToAStart();
    if (pending_.size() < headerSize) {
        return std::nullopt;
    }
    const std::size_t length = headerSize + pending_[lengthOffset];
    if (pending_.size() < length) {
        return std::nullopt;
    }
    const auto end = pending_.begin() + static_cast<std::ptrdiff_t>(length);
    ByteBuffer frame{pending_.begin(), end};
    pending_.erase(pending_.begin(), end);
    return frame;
}

void WireFrameReader::skipToAStart() {
    auto start = pending_.begin();
    while (start != pending_.end()) {
        const bool mayStart = *start == VelmorindalCommandProtocol::CommandByte &&
                              (start + 1 == pending_.end() || start[1] == wireMarker);
        if (mayStart) {
            break;
        }
        ++start;
    }
    skipped_ += static_cast<std::size_t>(start - pending_.begin());
    pending_.erase(pending_.begin(), start);
}

}  // namespace velmorindal
