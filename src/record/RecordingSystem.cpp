#include "RecordingSystem.h"

#include <cerrno>

namespace velmorindal {
namespace {

/// Writing the record must not change the `errno` that a call has set.
class KeptReason {
  public:
    KeptReason() = default;
    KeptReason(const KeptReason&) = delete;
    KeptReason& operator=(const KeptReason&) = delete;
    ~KeptReason() { errno = reason_; }

  private:
    const int reason_ = errno;
};

}  // namespace

RecordingSystem::RecordingSystem(System& system, const std::string& file)
    : system_{system}, record_{file, system.now()} {}

System::Clock::time_point RecordingSystem::now() {
    return system_.now();
}

void RecordingSystem::sleepFor(Clock::duration duration) {
    system_.sleepFor(duration);
}

int RecordingSystem::openExclusively(const std::string& path, int accessMode,
                                     const std::function<void()>& whenSlow) {
    const int descriptor = system_.openExclusively(path, accessMode, whenSlow);
    const KeptReason reason;
    const Lock lock{mutex_};
    const int port = numberOf(path);
    if (descriptor == -1) {
        record_.refused(port, now());
    } else {
        open_.insert_or_assign(descriptor, Opened{.port = port});
        record_.opened(port, now());
    }
    return descriptor;
}

std::optional<NodeHolder> RecordingSystem::holderOf(const std::string& path) {
    return system_.holderOf(path);
}

void RecordingSystem::endExclusiveUse(int descriptor) {
    {
        // Now, since the process may end before the descriptor is closed.
        const Lock lock{mutex_};
        record_.endPiece();
    }
    system_.endExclusiveUse(descriptor);
}

void RecordingSystem::close(int descriptor) {
    {
        // Before the call: the next open may have the same number.
        const Lock lock{mutex_};
        if (const auto closing = open_.extract(descriptor)) {
            record_.closed(closing.mapped().port, now());
        }
    }
    system_.close(descriptor);
}

std::ptrdiff_t RecordingSystem::read(int descriptor, std::span<std::uint8_t> buffer) {
    const std::ptrdiff_t count = system_.read(descriptor, buffer);
    if (count > 0) {
        moved(descriptor, LineRecord::Side::device, buffer.first(static_cast<std::size_t>(count)));
    }
    return count;
}

std::ptrdiff_t RecordingSystem::write(int descriptor, std::span<const std::uint8_t> bytes) {
    const std::ptrdiff_t count = system_.write(descriptor, bytes);
    if (count > 0) {
        moved(descriptor, LineRecord::Side::host, bytes.first(static_cast<std::size_t>(count)));
    }
    return count;
}

bool RecordingSystem::wait(int descriptor, Readiness readiness, std::optional<Clock::time_point> until) {
    const bool ready = system_.wait(descriptor, readiness, until);
    if (!ready) {
        const KeptReason reason;
        const Lock lock{mutex_};
        record_.endPiece();
    }
    return ready;
}

std::optional<std::size_t> RecordingSystem::linkCount(int descriptor) {
    const std::optional<std::size_t> count = system_.linkCount(descriptor);
    if (count != 1U) {
        const KeptReason reason;
        const Lock lock{mutex_};
        const auto entry = open_.find(descriptor);
        if (entry != open_.end() && !entry->second.lost) {
            entry->second.lost = true;
            record_.lost(entry->second.port, now());
        }
    }
    return count;
}

bool RecordingSystem::lineAttributes(int descriptor, termios& attributes) {
    return system_.lineAttributes(descriptor, attributes);
}

bool RecordingSystem::setLineAttributes(int descriptor, const termios& attributes) {
    return system_.setLineAttributes(descriptor, attributes);
}

int RecordingSystem::numberOf(const std::string& path) {
    return numbers_.try_emplace(path, static_cast<int>(numbers_.size()) + 1).first->second;
}

void RecordingSystem::moved(int descriptor, LineRecord::Side from, std::span<const std::uint8_t> bytes) {
    const KeptReason reason;
    const Lock lock{mutex_};
    if (const auto entry = open_.find(descriptor); entry != open_.end()) {
        record_.moved(entry->second.port, from, bytes, now());
    }
}

}  // namespace velmorindal
