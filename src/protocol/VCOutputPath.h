#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// Whether hums become keystrokes of the dongle or closures of the device's jacks. Sent and received.
///
///     command and response, 1 byte
///     0  1  path; of a response only the lowest bit counts
class VCOutputPath final : public VelmorindalCommand {
  public:
    static constexpr VelmorindalMessageType messageType = VelmorindalMessageType::outputPath;

    enum class OutputPath : std::uint8_t { USB = 0, Relay = 1 };

    /// The case with that wire value, or nothing.
    static std::optional<OutputPath> outputPathFromRawValue(std::uint8_t value);

    OutputPath path = OutputPath::USB;

    ByteBuffer serialize() const override;
    bool deserialize(std::span<const std::uint8_t> buffer) override;
};

}  // namespace velmorindal
