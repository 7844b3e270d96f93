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

/// Replays one port of a record: what the device sends and when, and whether the host sends what the
/// record has.
///
/// The device's bytes go out in the recorded order, each line as long after the one before it as in the
/// record; an answer waits for its request. A host that is faster than the recorded one misses what was not
/// sent yet. A host that sends something else has departed, which is reported. If the record has its bytes
/// further on, the replay continues there; otherwise the device is silent until the host sends what is next
/// in the record.
///
/// Not safe from several threads.
class Replay {
  public:
    using Clock = std::chrono::steady_clock;
    /// Called for each departure with "LINE: the host sent ..., the record has ...".
    using Report = std::function<void(const std::string& departure)>;

    /// `events` are those of one port, oldest first.
    Replay(std::vector<RecordedEvent> events, Report report);

    /// A host has opened the port.
    void opened(Clock::time_point now);
    /// The host has sent these bytes.
    void receive(std::span<const std::uint8_t> bytes, Clock::time_point now);
    /// Removes and returns what the device has sent by now.
    ByteBuffer take(Clock::time_point now);

    /// When the device will do something; nothing while it waits for the host.
    std::optional<Clock::time_point> due() const;
    /// Whether the dongle was unplugged at this point of the record.
    bool isLost() const { return lost_; }

    bool hasDeparted() const { return departed_; }
    /// Whether the host has sent all that the record has from it.
    bool hostIsDone() const { return !nextOf(RecordedEvent::Kind::fromHost); }
    /// The line of the record that comes next; 0 at its end.
    std::size_t nextLine() const;

  private:
    void advanceTo(Clock::time_point now);
    /// When the device's next event happens; nothing if the host's turn comes first.
    std::optional<Clock::time_point> momentOfNext() const;
    void passed(std::size_t index, Clock::time_point now);
    std::optional<std::size_t> nextOf(RecordedEvent::Kind kind) const;
    /// Takes what the host has sent and compares it. @returns false when that needs more bytes.
    bool compare(Clock::time_point now);
    void depart(const ByteBuffer& sent, std::optional<std::size_t> expected, Clock::time_point now);
    /// How many of the host's bytes belong together; nothing while more must come.
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
