#include "OutgoingLine.h"

#include <algorithm>
#include <utility>

namespace velmorindal {
namespace {

/// 115200 bits a second, ten bits a byte: 86.8 microseconds.
constexpr std::chrono::nanoseconds byteTime{1'000'000'000LL * 10 / 115'200};
/// The bytes of about a millisecond, so that pacing does not wake the processor for every byte.
constexpr std::size_t pacedPortion = 12;

}  // namespace

void OutgoingLine::put(std::span<const std::uint8_t> bytes, Clock::time_point now) {
    if (waiting() == 0) {
        free_ = std::max(free_, now);
    }
    if (taken_ > pending_.size() / 2) {
        pending_.erase(pending_.begin(), pending_.begin() + static_cast<std::ptrdiff_t>(taken_));
        taken_ = 0;
    }
    pending_.insert(pending_.end(), bytes.begin(), bytes.end());
}

void OutgoingLine::putLater(ByteBuffer bytes, Clock::time_point due) {
    late_.push_back({.due = due, .bytes = std::move(bytes)});
}

std::span<const std::uint8_t> OutgoingLine::ready(Clock::time_point now) {
    putWhatIsDue(now);
    if (waiting() == 0 || portionDue().value_or(now) > now) {
        return {};
    }
    return std::span{pending_}.subspan(taken_, nextPortion());
}

void OutgoingLine::take(std::size_t count) {
    taken_ += count;
    free_ += byteTime * count;
}

std::optional<OutgoingLine::Clock::time_point> OutgoingLine::due() const {
    std::optional<Clock::time_point> earliest = portionDue();
    for (const LateBytes& late : late_) {
        earliest = std::min(earliest.value_or(late.due), late.due);
    }
    return earliest;
}

void OutgoingLine::putWhatIsDue(Clock::time_point now) {
    std::erase_if(late_, [&](const LateBytes& late) {
        if (late.due > now) {
            return false;
        }
        put(late.bytes, now);
        return true;
    });
}

std::optional<OutgoingLine::Clock::time_point> OutgoingLine::portionDue() const {
    if (!paced_ || waiting() == 0) {
        return std::nullopt;
    }
    return free_ + byteTime * nextPortion();
}

std::size_t OutgoingLine::nextPortion() const {
    return paced_ ? std::min(waiting(), pacedPortion) : waiting();
}

}  // namespace velmorindal
