#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// The firmware's version. Only received; asked for by a query.
///
///     response, 0 to 255 bytes
///     0  n  _versionString, UTF-8 without a terminator
///
/// `deserialize` stops the process when the text is not UTF-8.
class VCVersion final : public VelmorindalCommand {
  public:
    static constexpr VelmorindalMessageType messageType = VelmorindalMessageType::version;

    std::string _versionString;

    ByteBuffer serialize() const override;
    bool deserialize(std::span<const std::uint8_t> buffer) override;
};

}  // namespace velmorindal
