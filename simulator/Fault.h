#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// The plan for the answer to one frame. A fault changes it before anything is sent.
struct AnswerPlan {
    enum class Delivery { now, afterDelay, beforeNextAnswer, never };
    enum class Unplugging { none, before, after };

    ByteBuffer request = {};      ///< the frame received; empty for a report, which has no request
    ByteBuffer bytesBefore = {};  ///< sent at once
    ByteBuffer answer = {};       ///< sent as `delivery` says; one whole frame to begin with
    Delivery delivery = Delivery::now;
    std::chrono::milliseconds delay{0};
    Unplugging unplugging = Unplugging::none;
    bool applies = true;  ///< whether the frame takes effect; of the queries only the last hum's has one
};

/// One way in which an answer goes wrong. A value, which can be copied and kept in tables.
///
/// A command without a complete answer (silence, half an answer, an error frame, unplugging before or during
/// it) does not take effect, as if the radio had lost it on the way to the device; with `stillApplied()` it
/// does. With all other faults it takes effect.
class Fault {
  public:
    /// A custom fault. `bend` runs while the dongle is locked, and must not call it.
    Fault(std::string name, std::function<void(AnswerPlan&)> bend);

    /// Nothing is sent.
    static Fault silence();
    /// Only the first two bytes of the answer are sent.
    static Fault halfAHeader();
    /// The header and the first half of the payload (rounded down) are sent. Of an answer without payload,
    /// the last byte is missing instead.
    static Fault halfAPayload();
    /// `frame` first, then the answer. Without `frame`, a well-formed status response is first, or a protocol
    /// response if the status was asked for.
    static Fault anotherFrameFirst(ByteBuffer frame = {});
    /// The same, with `frame` sent `count` times.
    static Fault floodFirst(std::size_t count = 10'000, ByteBuffer frame = {});
    /// The answer with the kind byte of an error, 'e'.
    static Fault errorFrame();
    /// The answer with another first byte.
    static Fault wrongKind(std::uint8_t kind = 'x');
    /// The answer with another second byte.
    static Fault wrongMarker(std::uint8_t marker = 'a');
    /// The answer with another type byte.
    static Fault wrongType(std::uint8_t type = 0x41);
    /// The length byte is one more than the number of bytes sent.
    static Fault lengthTooLong();
    /// The length byte is one less than the number of bytes sent. An answer without payload is followed by
    /// one extra byte.
    static Fault lengthTooShort();
    /// The frame is well-formed, but its payload has one byte too many (zero) or one too few. An answer
    /// without payload is not shortened.
    static Fault payloadOneByteLonger();
    static Fault payloadOneByteShorter();
    /// The answer is held back until the next frame arrives, and is sent before the answer to that.
    static Fault late();
    /// The answer is sent after `delay`, whatever arrives meanwhile.
    static Fault lateBy(std::chrono::milliseconds delay);
    /// `noise` first, then the answer.
    static Fault noiseFirst(ByteBuffer noise = {0x00, 0xFF, 0x55});
    /// `bytes` instead of the answer.
    static Fault answerWith(ByteBuffer bytes);
    /// The dongle is unplugged instead of answering, in the middle of the answer, or right after it. The last
    /// two wait until the host has read the bytes, `waitForTheHost` at most, since the system drops
    /// unread bytes.
    static Fault unplugBeforeAnswer();
    static Fault unplugDuringAnswer();
    static Fault unplugAfterAnswer();

    /// The same fault, but the command takes effect.
    Fault stillApplied() const;

    /// A short name, such as "half a header".
    const std::string& name() const { return name_; }

    /// Changes `plan` as the fault says.
    void bend(AnswerPlan& plan) const { bend_(plan); }

  private:
    std::string name_;
    std::function<void(AnswerPlan&)> bend_;
};

}  // namespace velmorindal
