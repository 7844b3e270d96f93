#include "FloatPair.h"

#include "PayloadReader.h"

namespace velmorindal {

std::optional<FloatPair> FloatPair::ofFrame(std::span<const std::uint8_t> frame,
                                            VelmorindalMessageType messageType) {
    const auto payload = PayloadReader::ofFrame(frame, messageType, 8);
    if (!payload) {
        return std::nullopt;
    }
    return FloatPair{.first = payload->float32(0), .second = payload->float32(4)};
}

}  // namespace velmorindal
