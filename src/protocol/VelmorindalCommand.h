#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "ByteBuffer.h"
#include "VelmorindalError.h"
#include "VelmorindalMessageType.h"

namespace velmorindal {

/// What all messages share: the four-byte header.
///
///     offset  width  field
///     0       1      frame kind: CommandByte or ResponseByte
///     1       1      MarkerByte, the binary marker
///     2       1      message type
///     3       1      n, the number of payload bytes that follow, 0..255
///     4       n      payload
///
/// There is no checksum and no terminator; multi-byte values are little-endian. Safe from any thread.
class VelmorindalCommandProtocol {
  public:
    static constexpr std::size_t HeaderSize = 4;
    static constexpr std::size_t TypeOffset = 2;
    static constexpr std::size_t LengthOffset = 3;
    static constexpr std::uint8_t CommandByte = 0x63;   // 'c'
    static constexpr std::uint8_t ResponseByte = 0x72;  // 'r'
    static constexpr std::uint8_t ErrorByte = 0x65;     // 'e', never built and never accepted
    static constexpr std::uint8_t MarkerByte = 0x62;    // 'b', the second byte of every frame

    /// The frame of `payload`. Of the payload's length only the low eight bits reach the header.
    static ByteBuffer addHeader(std::span<const std::uint8_t> payload, std::uint8_t messageType,
                                bool isCommand);

    /// Whether `buffer` is one whole command or response frame of `messageType`. If not, prints one line
    /// about the first check that failed.
    static bool verifyHeader(std::span<const std::uint8_t> buffer, std::uint8_t messageType);

  protected:
    ~VelmorindalCommandProtocol() = default;
};

/// One message, built for one exchange. Not safe from several threads.
class VelmorindalCommand : public VelmorindalCommandProtocol {
  public:
    VelmorindalCommand() = default;
    VelmorindalCommand(const VelmorindalCommand&) = default;
    VelmorindalCommand& operator=(const VelmorindalCommand&) = default;
    virtual ~VelmorindalCommand() = default;

    /// The whole frame, header included.
    ///
    /// @throws VelmorindalException NotImplementedError where a message cannot be sent; InvalidMessageError
    ///         where the message checks `_valid` and it is false.
    virtual ByteBuffer serialize() const;

    /// Decodes a whole frame into the fields and sets `_valid` to whether that succeeded; on failure the
    /// other fields keep their values.
    ///
    /// @returns `_valid`.
    /// @throws VelmorindalException NotImplementedError where a message cannot be received.
    virtual bool deserialize(std::span<const std::uint8_t> buffer);

    /// True while the object holds a usable message.
    bool _valid = true;

  protected:
    /// @throws VelmorindalException InvalidMessageError when `_valid` is false.
    void requireValid() const;
};

}  // namespace velmorindal
