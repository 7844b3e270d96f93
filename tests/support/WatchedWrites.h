#pragma once

#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "Mutex.h"
#include "System.h"
#include "VelmorindalCommand.h"
#include "VelmorindalMessageType.h"

namespace velmorindal {

/// A system that notes every frame written through it, whether or not it gets out, and can take a part of one
/// only, as a system under strain may do.
template <typename Base>
class WatchedWrites : public Base {
  public:
    using Base::Base;

    /// Calls `hook` on the writing thread before each frame goes out, with its number, from 1 on from here.
    /// The frame waits for it.
    void beforeFrame(std::function<void(std::size_t)> hook) {
        const Lock lock{mutex_};
        hook_ = std::move(hook);
        frames_.clear();
    }

    /// Every frame since then, as it was asked for.
    std::vector<ByteBuffer> frames() const {
        const Lock lock{mutex_};
        return frames_;
    }

    /// Of the frame of `type` that is written as number `occurrence` from now on, from 1, only `taken` bytes
    /// go out, and there is no room for more until the writer gives up; -1 for a write that fails.
    void cutWrite(VelmorindalMessageType type, std::size_t occurrence, std::ptrdiff_t taken) {
        const Lock lock{mutex_};
        cut_ = Cut{static_cast<std::uint8_t>(type), occurrence, taken};
        cutHasHappened_ = false;
    }
    void forgetCut() {
        const Lock lock{mutex_};
        cut_.reset();
    }
    bool cutHasHappened() const {
        const Lock lock{mutex_};
        return cutHasHappened_;
    }

    std::ptrdiff_t write(int descriptor, std::span<const std::uint8_t> bytes) override {
        if (isFull()) {
            errno = EAGAIN;
            return -1;
        }
        const auto taken = note(bytes);
        if (!taken) {
            return Base::write(descriptor, bytes);
        }
        if (*taken < 0) {
            errno = EIO;
            return -1;
        }
        return Base::write(descriptor, bytes.first(static_cast<std::size_t>(*taken)));
    }

    bool wait(int descriptor, System::Readiness readiness,
              std::optional<System::Clock::time_point> until) override {
        if (readiness == System::Readiness::toWrite && isFull()) {
            Base::sleepFor(until.value_or(Base::now() + patience) - Base::now());
            return !isFull();
        }
        return Base::wait(descriptor, readiness, until);
    }

  private:
    /// How long a writer of the dongle's line waits for room.
    static constexpr std::chrono::seconds patience{2};

    struct Cut {
        std::uint8_t type;
        std::size_t untilThen;
        std::ptrdiff_t taken;
    };

    bool isFull() {
        const Lock lock{mutex_};
        return Base::now() < fullUntil_;
    }

    /// @returns what the write of these bytes is to take, or nothing when they are written as usual.
    std::optional<std::ptrdiff_t> note(std::span<const std::uint8_t> bytes) {
        if (bytes.size() < 4 || bytes[0] != 'c' || bytes[1] != 'b') {
            return std::nullopt;
        }
        std::function<void(std::size_t)> hook;
        std::size_t number = 0;
        {
            const Lock lock{mutex_};
            frames_.emplace_back(bytes.begin(), bytes.end());
            number = frames_.size();
            hook = hook_;
        }
        if (hook) {
            hook(number);
        }
        const Lock lock{mutex_};
        if (!cut_ || cut_->type != bytes[2] || --cut_->untilThen > 0) {
            return std::nullopt;
        }
        const std::ptrdiff_t taken = std::exchange(cut_, std::nullopt)->taken;
        cutHasHappened_ = true;
        fullUntil_ = Base::now() + (taken >= 0 ? patience : std::chrono::seconds{0});
        return taken;
    }

    mutable Mutex mutex_;
    std::function<void(std::size_t)> hook_ GUARDED_BY(mutex_);
    std::vector<ByteBuffer> frames_ GUARDED_BY(mutex_);
    std::optional<Cut> cut_ GUARDED_BY(mutex_);
    bool cutHasHappened_ GUARDED_BY(mutex_) = false;
    System::Clock::time_point fullUntil_ GUARDED_BY(mutex_){};
};

}  // namespace velmorindal
