#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Record.h"

namespace velmorindal {

/// One port of a record, played again: what the device sends, when, and whether the host does as it did.
///
/// The device's bytes go out in the recorded order, each line as long after what precedes it as it was then;
/// an answer waits for its request. A host that is faster than the recorded one misses what was not sent yet.
/// A host that sends something else has departed: that is said, and where the record has its bytes further
/// on, it goes on from there; otherwise the device is silent and waits for what comes next in the record.
///
/// Not safe from several threads.
class Replay {
  public:
    using Clock = std::chrono::steady_clock;
    /// Called with a departure: "LINE: the host sent ..., the record has ...".
    using Report = std::function<void(const std::string& departure)>;

    /// `events` of one port, oldest first.
    Replay(std::vector<RecordedEvent> events, Report report);

    /// A host has opened the port.
    void opened(Clock::time_point now);
    /// The host has sent these bytes.
    void receive(std::span<const std::uint8_t> bytes, Clock::time_point now);
    /// What the device has sent by now and was not taken yet.
    ByteBuffer take(Clock::time_point now);

    /// When the device will do something next; nothing while it waits for the host.
    std::optional<Clock::time_point> due() const;
    /// Whether the dongle was pulled out at this point of the record.
    bool isLost() const { return lost_; }

    bool hasDeparted() const { return departed_; }
    /// Whether the host has sent all that the record has of it.
    bool hostIsDone() const { return !nextOf(RecordedEvent::Kind::fromHost); }
    /// The line of the record that comes next; 0 at its end.
    std::size_t nextLine() const;

  private:
    void advanceTo(Clock::time_point now);
    /// When the device's next event happens; nothing where the host's turn comes first.
    std::optional<Clock::time_point> momentOfNext() const;
    void passed(std::size_t index, Clock::time_point now);
    std::optional<std::size_t> nextOf(RecordedEvent::Kind kind) const;
    /// Takes what the host has sent and compares it. @returns false when that needs more bytes.
    bool compare(Clock::time_point now);
    void depart(const ByteBuffer& sent, std::optional<std::size_t> expected, Clock::time_point now);
    /// How many of the host's bytes belong together; nothing as long as more have to come.
    std::optional<std::size_t> lengthOfUnit() const;

    const std::vector<RecordedEvent> events_;
    const Report report_;
    /// The next event, and when the one before it happened.
    std::size_t next_ = 0;
    Clock::time_point last_;
    ByteBuffer fromHost_;
    ByteBuffer toHost_;
    bool lost_ = false;
    bool departed_ = false;
};

}  // namespace velmorindal
