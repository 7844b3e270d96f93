#include "InProcessDongle.h"

#include <algorithm>
#include <cerrno>

namespace velmorindal {
namespace {

/// Time must pass between a question and its answer: a host that asks again and again would never let anybody
/// else run.
SimulatedDongle::Options atLineSpeed(SimulatedDongle::Options options) {
    options.paced = true;
    return options;
}

}  // namespace

InProcessDongle::InProcessDongle(VirtualSystem& system, const std::filesystem::path& directory,
                                 const Options& options)
    : SimulatedDongle{directory / options.name, atLineSpeed(options), system.now()}, system_{system} {
    // A search looks at what kind of node it finds.
    std::filesystem::create_symlink("/dev/null", path());
    system_.add(path(), *this);
}

InProcessDongle::~InProcessDongle() {
    InProcessDongle::unplug();
    system_.remove(*this);
}

void InProcessDongle::unplug() {
    const Lock lock{mutex_};
    unplugAsked_ = true;
    unplugIfAsked();
}

void InProcessDongle::unplugIfAsked() {
    if (unplugAsked_ && plugged_) {
        plugged_ = false;
        std::error_code ignored;
        std::filesystem::remove(path(), ignored);
    }
}

bool InProcessDongle::waitForFrames(std::size_t count, std::chrono::milliseconds timeout) const {
    const auto haveArrived = [this, count] {
        const Lock lock{mutex_};
        return receivedCount() >= count;
    };
    Scheduler& scheduler = system_.scheduler();
    const Scheduler::Moment end = scheduler.now() + timeout;
    scheduler.waitUntil([&] { return haveArrived() || !isPlugged(); }, [end] { return std::optional{end}; },
                        "frames to arrive");
    return haveArrived();
}

std::size_t InProcessDongle::bytesRead() const {
    const Lock lock{mutex_};
    return bytesRead_;
}

void InProcessDongle::closed() {
    const Lock lock{mutex_};
    line_.take(line_.waiting());
    arrived_.clear();
}

std::ptrdiff_t InProcessDongle::read(std::span<std::uint8_t> buffer, Clock::time_point now) {
    const Lock lock{mutex_};
    advance(now);
    if (!plugged_) {
        return 0;
    }
    if (arrived_.empty()) {
        errno = EAGAIN;
        return -1;
    }
    const auto count = static_cast<std::ptrdiff_t>(std::min(arrived_.size(), buffer.size()));
    std::copy_n(arrived_.begin(), count, buffer.begin());
    arrived_.erase(arrived_.begin(), arrived_.begin() + count);
    bytesRead_ += static_cast<std::size_t>(count);
    unplugOnceTaken(arrived_.empty() && line_.waiting() == 0, now);
    unplugIfAsked();
    return count;
}

std::ptrdiff_t InProcessDongle::write(std::span<const std::uint8_t> bytes, Clock::time_point now) {
    const Lock lock{mutex_};
    advance(now);
    // A host that goes on to its next frame has what it waited for.
    unplugOnceTaken(true, now);
    unplugIfAsked();
    if (!plugged_) {
        errno = EIO;
        return -1;
    }
    receive(bytes);
    unplugIfAsked();
    return std::ssize(bytes);
}

bool InProcessDongle::isReady(System::Readiness readiness, Clock::time_point now) {
    const Lock lock{mutex_};
    advance(now);
    return readiness == System::Readiness::toWrite || !plugged_ || !arrived_.empty();
}

std::optional<InProcessDongle::Clock::time_point> InProcessDongle::due() {
    const Lock lock{mutex_};
    return plugged_ ? SimulatedDongle::due(false) : std::nullopt;
}

void InProcessDongle::advance(Clock::time_point now) {
    if (plugged_) {
        advanceTo(now);
        for (auto portion = line_.ready(now); !portion.empty(); portion = line_.ready(now)) {
            arrived_.insert(arrived_.end(), portion.begin(), portion.end());
            line_.take(portion.size());
        }
        unplugOnceTaken(false, now);
        unplugIfAsked();
    }
}

}  // namespace velmorindal
