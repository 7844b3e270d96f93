#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// How one frame is going to be answered. A fault bends it before anything is sent.
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

/// One way in which an answer goes wrong. A value: copy it, keep tables of it.
///
/// A command whose answer never leaves whole (silence, half of it, an error frame, unplugging before or
/// during it) does not take effect, as if the radio had lost it on the way to the device; `stillApplied()`
/// says that it does. All others take effect.
class Fault {
  public:
    /// A custom fault. `bend` runs on the server thread and must not call the dongle.
    Fault(std::string name, std::function<void(AnswerPlan&)> bend);

    /// Nothing is sent.
    static Fault silence();
    /// The first two bytes of the answer and nothing more.
    static Fault halfAHeader();
    /// The header and the first half of the payload (rounded down). An answer without payload comes without
    /// its last byte instead.
    static Fault halfAPayload();
    /// `frame` first, then the answer. Without `frame`: a well-formed status response, or a protocol response
    /// where the status is what was asked for.
    static Fault anotherFrameFirst(ByteBuffer frame = {});
    /// The same `count` times over.
    static Fault floodFirst(std::size_t count = 10'000, ByteBuffer frame = {});
    /// The answer's header and payload with the kind byte of an error, 'e'.
    static Fault errorFrame();
    /// The answer with another first byte.
    static Fault wrongKind(std::uint8_t kind = 'x');
    /// The answer with another second byte.
    static Fault wrongMarker(std::uint8_t marker = 'a');
    /// The answer with another type byte.
    static Fault wrongType(std::uint8_t type = 0x41);
    /// The length byte announces one byte more than are sent.
    static Fault lengthTooLong();
    /// The length byte announces one byte fewer than are sent; of an answer without payload, which cannot,
    /// one byte too many follows.
    static Fault lengthTooShort();
    /// The frame is well-formed but its payload has one byte more (zero) or one fewer than it should.
    static Fault payloadOneByteLonger();
    static Fault payloadOneByteShorter();
    /// The answer is held back until the next frame arrives and is sent before that frame's answer.
    static Fault late();
    /// The answer is sent after `delay`, whatever arrives meanwhile.
    static Fault lateBy(std::chrono::milliseconds delay);
    /// `noise` first, then the answer.
    static Fault noiseFirst(ByteBuffer noise = {0x00, 0xFF, 0x55});
    /// These bytes in place of the answer.
    static Fault answerWith(ByteBuffer bytes);
    /// The dongle is pulled out instead of answering; in the middle of the answer; right after it. The last
    /// two wait until the host has taken the bytes, a second at most, since the system drops what is still
    /// unread.
    static Fault unplugBeforeAnswer();
    static Fault unplugDuringAnswer();
    static Fault unplugAfterAnswer();

    /// The same fault, but the command takes effect.
    Fault stillApplied() const;

    /// A few words for the names of parameterised tests, such as "half a header".
    const std::string& name() const { return name_; }

    void bend(AnswerPlan& plan) const { bend_(plan); }

  private:
    std::string name_;
    std::function<void(AnswerPlan&)> bend_;
};

}  // namespace velmorindal
