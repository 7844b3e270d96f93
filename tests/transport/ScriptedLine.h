#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>

#include "ByteBuffer.h"
#include "VirtualSystem.h"

namespace velmorindal {

/// The far end of a line on virtual time: what it sends, what it has room for and how it fails come at the
/// moments that a test sets, counted from the start of virtual time.
class ScriptedLine final : public VirtualLine {
  public:
    using Moment = Scheduler::Moment;

    void sendAt(Moment moment, const ByteBuffer& bytes);
    /// From the first call on there is room only for what such calls have made room for.
    void makeRoomAt(Moment moment, std::size_t count);

    /// The node loses its name.
    void vanish() { present_ = false; }
    /// From now on every read that would wait returns `result` at once, with the reason `error` for -1.
    void readAtOnce(std::ptrdiff_t result, int error = 0);
    /// The next read fails with this reason.
    void failRead(int error) { readFailure_ = error; }
    /// The write after the next `untilThen` ones fails once with this reason.
    void failWrite(int error, std::size_t untilThen = 0);

    const ByteBuffer& written() const { return written_; }
    std::size_t reads() const { return reads_; }

  private:
    struct Failure {
        int error;
        std::size_t untilThen;
    };
    struct EmptyRead {
        std::ptrdiff_t result;
        int error;
    };

    std::ptrdiff_t read(std::span<std::uint8_t> buffer, System::Clock::time_point now) override;
    std::ptrdiff_t write(std::span<const std::uint8_t> bytes, System::Clock::time_point now) override;
    bool isReady(System::Readiness readiness, System::Clock::time_point now) override;
    std::optional<System::Clock::time_point> due() override;
    bool isPresent() const override { return present_; }

    void advance(System::Clock::time_point now);

    std::multimap<Moment, ByteBuffer> toSend_;
    std::multimap<Moment, std::size_t> roomToCome_;
    ByteBuffer arrived_;
    ByteBuffer written_;
    std::optional<std::size_t> room_;
    std::optional<EmptyRead> emptyRead_;
    std::optional<int> readFailure_;
    std::optional<Failure> failure_;
    bool present_ = true;
    std::size_t reads_ = 0;
};

}  // namespace velmorindal
