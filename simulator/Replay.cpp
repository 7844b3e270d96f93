#include "Replay.h"

#include <algorithm>
#include <utility>

#include "Hexadecimal.h"
#include "WireFrame.h"

namespace velmorindal {
namespace {

using Kind = RecordedEvent::Kind;
using namespace std::chrono_literals;

/// A record cuts its times to whole milliseconds. This is what it cuts off on average, and it lets time pass
/// between a query and its answer.
constexpr auto cutOff = 500us;

bool isOfDevice(const RecordedEvent& event) {
    return event.kind == Kind::fromDevice || event.kind == Kind::lost;
}

}  // namespace

Replay::Replay(std::vector<RecordedEvent> events, Report report)
    : events_{std::move(events)}, report_{std::move(report)} {}

void Replay::opened(Clock::time_point now) {
    advanceTo(now);
    // Bytes that the device had not sent when the last host closed the port are lost.
    for (std::size_t index = next_; index < events_.size() && events_[index].kind != Kind::fromHost;
         ++index) {
        if (events_[index].kind == Kind::opened) {
            passed(index, now);
            return;
        }
    }
}

void Replay::receive(std::span<const std::uint8_t> bytes, Clock::time_point now) {
    advanceTo(now);
    fromHost_.insert(fromHost_.end(), bytes.begin(), bytes.end());
    while (!fromHost_.empty() && compare(now)) {
    }
}

ByteBuffer Replay::take(Clock::time_point now) {
    advanceTo(now);
    return std::exchange(toHost_, {});
}

std::optional<Replay::Clock::time_point> Replay::due() const {
    return toHost_.empty() ? momentOfNext() : last_;
}

std::optional<Replay::Clock::time_point> Replay::momentOfNext() const {
    if (lost_ || next_ >= events_.size() || !isOfDevice(events_[next_])) {
        return std::nullopt;
    }
    const auto before = next_ > 0 ? events_[next_ - 1].time : events_[next_].time;
    return last_ + (events_[next_].time - before) + cutOff;
}

std::size_t Replay::nextLine() const {
    return next_ < events_.size() ? events_[next_].line : 0;
}

void Replay::advanceTo(Clock::time_point now) {
    while (!lost_ && next_ < events_.size()) {
        const RecordedEvent& event = events_[next_];
        if (event.kind == Kind::closed || event.kind == Kind::refused) {
            ++next_;
            continue;
        }
        const auto moment = momentOfNext();
        if (!moment || *moment > now) {
            return;
        }
        toHost_.insert(toHost_.end(), event.bytes.begin(), event.bytes.end());
        lost_ = event.kind == Kind::lost;
        passed(next_, *moment);
    }
}

void Replay::passed(std::size_t index, Clock::time_point now) {
    next_ = index + 1;
    last_ = now;
}

std::optional<std::size_t> Replay::nextOf(Kind kind) const {
    for (std::size_t index = next_; index < events_.size(); ++index) {
        if (events_[index].kind == kind) {
            return index;
        }
    }
    return std::nullopt;
}

bool Replay::compare(Clock::time_point now) {
    const auto expected = nextOf(Kind::fromHost);
    const auto take = [this](std::size_t length) {
        const auto end = fromHost_.begin() + static_cast<std::ptrdiff_t>(length);
        ByteBuffer taken{fromHost_.begin(), end};
        fromHost_.erase(fromHost_.begin(), end);
        return taken;
    };
    if (expected) {
        const ByteBuffer& recorded = events_[*expected].bytes;
        const std::size_t common = std::min(recorded.size(), fromHost_.size());
        if (std::equal(recorded.begin(), recorded.begin() + static_cast<std::ptrdiff_t>(common),
                       fromHost_.begin())) {
            if (common < recorded.size()) {
                return false;
            }
            take(recorded.size());
            passed(*expected, now);
            return true;
        }
    }
    const auto length = lengthOfUnit();
    if (!length) {
        return false;
    }
    depart(take(*length), expected, now);
    return true;
}

void Replay::depart(const ByteBuffer& sent, std::optional<std::size_t> expected, Clock::time_point now) {
    departed_ = true;
    std::string text = expected ? std::to_string(events_[*expected].line)
                                : std::to_string(events_.empty() ? 1 : events_.back().line);
    text += ": the host sent " + hexadecimal(sent, " ") + ", the record has " +
            (expected ? hexadecimal(events_[*expected].bytes, " ") : "nothing more from it");
    for (std::size_t index = next_; index < events_.size(); ++index) {
        if (events_[index].kind == Kind::fromHost && events_[index].bytes == sent) {
            report_(text + "; going on at line " + std::to_string(events_[index].line));
            passed(index, now);
            return;
        }
    }
    report_(text);
}

std::optional<std::size_t> Replay::lengthOfUnit() const {
    const bool startsAFrame = fromHost_[kindOffset] == VelmorindalCommandProtocol::CommandByte &&
                              (fromHost_.size() == 1 || fromHost_[markerOffset] == wireMarker);
    if (!startsAFrame) {
        return fromHost_.size();
    }
    if (fromHost_.size() < headerSize || fromHost_.size() < headerSize + fromHost_[lengthOffset]) {
        return std::nullopt;
    }
    return headerSize + fromHost_[lengthOffset];
}

}  // namespace velmorindal
