#pragma once

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "Replay.h"
#include "VirtualSystem.h"

namespace velmorindal {

/// One port of a record on a line of a virtual system. Its name stands in a real directory, where a search
/// finds it.
class ReplayedLine final : public VirtualLine {
  public:
    using Clock = System::Clock;

    ReplayedLine(VirtualSystem& system, std::filesystem::path path, std::vector<RecordedEvent> events)
        : system_{system},
          path_{std::move(path)},
          replay_{std::move(events), [this](const std::string& text) { departures_.push_back(text); }} {
        std::filesystem::create_symlink("/dev/null", path_);
        system_.add(path_, *this);
    }
    ~ReplayedLine() override {
        system_.remove(*this);
        std::filesystem::remove(path_);
    }

    const Replay& replay() const { return replay_; }
    const std::vector<std::string>& departures() const { return departures_; }

  private:
    std::ptrdiff_t read(std::span<std::uint8_t> buffer, Clock::time_point now) override {
        advance(now);
        if (arrived_.empty()) {
            errno = EAGAIN;
            return replay_.isLost() ? 0 : -1;
        }
        const std::size_t count = std::min(arrived_.size(), buffer.size());
        const auto end = arrived_.begin() + static_cast<std::ptrdiff_t>(count);
        std::copy(arrived_.begin(), end, buffer.begin());
        arrived_.erase(arrived_.begin(), end);
        return static_cast<std::ptrdiff_t>(count);
    }
    std::ptrdiff_t write(std::span<const std::uint8_t> bytes, Clock::time_point now) override {
        advance(now);
        replay_.receive(bytes, now);
        return std::ssize(bytes);
    }
    bool isReady(System::Readiness readiness, Clock::time_point now) override {
        advance(now);
        return readiness == System::Readiness::toWrite || replay_.isLost() || !arrived_.empty();
    }
    std::optional<Clock::time_point> due() override { return replay_.due(); }
    bool isPresent() const override { return !replay_.isLost(); }
    void closed() override {
        arrived_.clear();
        isOpen_ = false;
    }

    void advance(Clock::time_point now) {
        // A line that is not open gets no calls.
        if (!std::exchange(isOpen_, true)) {
            replay_.opened(now);
        }
        const ByteBuffer sent = replay_.take(now);
        arrived_.insert(arrived_.end(), sent.begin(), sent.end());
    }

    VirtualSystem& system_;
    const std::filesystem::path path_;
    std::vector<std::string> departures_;
    Replay replay_;
    ByteBuffer arrived_;
    bool isOpen_ = false;
};

}  // namespace velmorindal
