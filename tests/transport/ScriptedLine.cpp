#include "ScriptedLine.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace velmorindal {
namespace {

std::ptrdiff_t failed(int reason) {
    errno = reason;
    return -1;
}

}  // namespace

void ScriptedLine::sendAt(Moment moment, const ByteBuffer& bytes) {
    toSend_.emplace(moment, bytes);
}

void ScriptedLine::makeRoomAt(Moment moment, std::size_t count) {
    room_ = room_.value_or(0);
    roomToCome_.emplace(moment, count);
}

void ScriptedLine::readAtOnce(std::ptrdiff_t result, int error) {
    emptyRead_ = EmptyRead{result, error};
}

void ScriptedLine::failWrite(int error, std::size_t untilThen) {
    failure_ = Failure{error, untilThen};
}

std::ptrdiff_t ScriptedLine::read(std::span<std::uint8_t> buffer, System::Clock::time_point now) {
    advance(now);
    ++reads_;
    if (readFailure_) {
        return failed(*std::exchange(readFailure_, std::nullopt));
    }
    if (arrived_.empty()) {
        errno = emptyRead_ ? emptyRead_->error : EAGAIN;
        return emptyRead_ ? emptyRead_->result : -1;
    }
    const auto count = static_cast<std::ptrdiff_t>(std::min(arrived_.size(), buffer.size()));
    std::copy_n(arrived_.begin(), count, buffer.begin());
    arrived_.erase(arrived_.begin(), arrived_.begin() + count);
    return count;
}

std::ptrdiff_t ScriptedLine::write(std::span<const std::uint8_t> bytes, System::Clock::time_point now) {
    advance(now);
    if (failure_ && failure_->untilThen-- == 0) {
        const int error = failure_->error;
        failure_.reset();
        return failed(error);
    }
    const std::size_t count = std::min(bytes.size(), room_.value_or(bytes.size()));
    if (count == 0 && !bytes.empty()) {
        return failed(EAGAIN);
    }
    written_.insert(written_.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
    if (room_) {
        *room_ -= count;
    }
    return static_cast<std::ptrdiff_t>(count);
}

bool ScriptedLine::isReady(System::Readiness readiness, System::Clock::time_point now) {
    advance(now);
    return readiness == System::Readiness::toRead ? !arrived_.empty() || emptyRead_.has_value()
                                                  : room_ != 0U || failure_.has_value();
}

std::optional<System::Clock::time_point> ScriptedLine::due() {
    std::optional<Moment> next;
    if (!toSend_.empty()) {
        next = toSend_.begin()->first;
    }
    if (!roomToCome_.empty()) {
        next = std::min(next.value_or(Moment::max()), roomToCome_.begin()->first);
    }
    return next ? std::optional{System::Clock::time_point{*next}} : std::nullopt;
}

void ScriptedLine::advance(System::Clock::time_point now) {
    while (!toSend_.empty() && toSend_.begin()->first <= now.time_since_epoch()) {
        const ByteBuffer& bytes = toSend_.begin()->second;
        arrived_.insert(arrived_.end(), bytes.begin(), bytes.end());
        toSend_.erase(toSend_.begin());
    }
    while (!roomToCome_.empty() && roomToCome_.begin()->first <= now.time_since_epoch()) {
        *room_ += roomToCome_.begin()->second;
        roomToCome_.erase(roomToCome_.begin());
    }
}

}  // namespace velmorindal
