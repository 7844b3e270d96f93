#include "VirtualSystem.h"

#include <algorithm>
#include <cerrno>

namespace velmorindal {
namespace {

template <typename Result>
Result refused(int reason, Result result) {
    errno = reason;
    return result;
}

}  // namespace

void VirtualSystem::add(const std::filesystem::path& path, VirtualLine& line) {
    lines_[path.string()] = &line;
}

void VirtualSystem::remove(const VirtualLine& line) {
    std::erase_if(lines_, [&line](const auto& entry) { return entry.second == &line; });
    for (auto& [descriptor, open] : open_) {
        open.line = open.line == &line ? nullptr : open.line;
    }
}

System::Clock::time_point VirtualSystem::now() {
    return Clock::time_point{scheduler_.now()};
}

void VirtualSystem::sleepFor(Clock::duration duration) {
    const Scheduler::Moment end = scheduler_.now() + duration;
    scheduler_.waitUntil([] { return false; }, [end] { return std::optional{end}; }, "sleep");
}

int VirtualSystem::openExclusively(const std::string& path, int /*accessMode*/,
                                   const std::function<void()>& whenSlow) {
    if (opensSlowly_) {
        waitForTheOpen(slowOpen, whenSlow);
    }
    if (const auto refusal = refusals_.find(path); refusal != refusals_.end()) {
        return refused(refusal->second, -1);
    }
    const auto entry = lines_.find(path);
    if (entry == lines_.end() || !entry->second->isPresent()) {
        return refused(ENOENT, -1);
    }
    if (const auto held = heldUntil_.find(entry->second); held != heldUntil_.end()) {
        waitForTheOpen(held->second - now(), whenSlow);
    }
    const auto holds = [&](const auto& open) { return open.second.line == entry->second; };
    if (std::ranges::any_of(open_, holds)) {
        return refused(EBUSY, -1);
    }
    open_.emplace(nextDescriptor_, Opened{.line = entry->second});
    return nextDescriptor_++;
}

std::optional<NodeHolder> VirtualSystem::holderOf(const std::string& path) {
    const auto holder = holders_.find(path);
    return holder != holders_.end() ? std::optional{holder->second} : std::nullopt;
}

void VirtualSystem::endExclusiveUse(int /*descriptor*/) {
    // Ends with the descriptor.
}

void VirtualSystem::close(int descriptor) {
    if (VirtualLine* const line = lineOf(descriptor)) {
        line->closed();
        heldUntil_[line] = now() + closing_;
    }
    open_.erase(descriptor);
}

std::ptrdiff_t VirtualSystem::read(int descriptor, std::span<std::uint8_t> buffer) {
    if (VirtualLine* const line = lineOf(descriptor)) {
        return line->read(buffer, now());
    }
    return isOpen(descriptor) ? 0 : refused(EBADF, -1);
}

std::ptrdiff_t VirtualSystem::write(int descriptor, std::span<const std::uint8_t> bytes) {
    VirtualLine* const line = lineOf(descriptor);
    return line == nullptr ? refused(isOpen(descriptor) ? EIO : EBADF, -1) : line->write(bytes, now());
}

bool VirtualSystem::wait(int descriptor, Readiness readiness, std::optional<Clock::time_point> until) {
    const auto isReady = [&] {
        VirtualLine* const line = lineOf(descriptor);
        return line == nullptr || line->isReady(readiness, now());
    };
    const auto nextMoment = [&]() -> std::optional<Scheduler::Moment> {
        VirtualLine* const line = lineOf(descriptor);
        const auto due = line != nullptr ? line->due() : std::nullopt;
        if (!due && !until) {
            return std::nullopt;
        }
        return std::min(due.value_or(Clock::time_point::max()), until.value_or(Clock::time_point::max()))
            .time_since_epoch();
    };
    while (!isReady()) {
        if (until && now() >= *until) {
            return false;
        }
        scheduler_.waitUntil(isReady, nextMoment, readiness == Readiness::toRead ? "read" : "write");
    }
    return true;
}

std::optional<std::size_t> VirtualSystem::linkCount(int descriptor) {
    if (!isOpen(descriptor)) {
        return refused(EBADF, std::optional<std::size_t>{});
    }
    const VirtualLine* const line = lineOf(descriptor);
    return line != nullptr && line->isPresent() ? 1U : 0U;
}

bool VirtualSystem::lineAttributes(int descriptor, termios& attributes) {
    const Opened* const line = opened(descriptor);
    if (line == nullptr) {
        return refused(EBADF, false);
    }
    attributes = line->attributes;
    return true;
}

bool VirtualSystem::setLineAttributes(int descriptor, const termios& attributes) {
    Opened* const line = opened(descriptor);
    if (line == nullptr) {
        return refused(EBADF, false);
    }
    line->attributes = attributes;
    return true;
}

void VirtualSystem::waitForTheOpen(Clock::duration duration, const std::function<void()>& whenSlow) {
    sleepFor(std::clamp(duration, Clock::duration{0}, Clock::duration{slowOpen}));
    if (duration >= slowOpen) {
        if (whenSlow) {
            whenSlow();
        }
        sleepFor(duration - slowOpen);
    }
}

VirtualLine* VirtualSystem::lineOf(int descriptor) {
    const Opened* const open = opened(descriptor);
    return open != nullptr ? open->line : nullptr;
}

VirtualSystem::Opened* VirtualSystem::opened(int descriptor) {
    const auto entry = open_.find(descriptor);
    return entry == open_.end() ? nullptr : &entry->second;
}

}  // namespace velmorindal
