#include "ExploredSystem.h"

#include <algorithm>
#include <cerrno>

namespace velmorindal {
namespace {

/// The deadline of the wizard's port: what a read without an answer waits in the end, here in one go.
constexpr std::chrono::seconds patience{2};

}  // namespace

ExploredSystem::ExploredSystem(Scheduler& scheduler, const std::filesystem::path& directory,
                               std::size_t troubles)
    : scheduler_{scheduler}, path_{directory / "cu.usbmodem-explored"}, troublesLeft_{troubles} {
    // A search looks at what kind of node it finds.
    std::filesystem::create_symlink("/dev/null", path_);
}

ExploredSystem::~ExploredSystem() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
}

std::size_t ExploredSystem::timesReceived(VelmorindalMessageType type) const {
    return static_cast<std::size_t>(std::ranges::count_if(received_, [type](const ByteBuffer& frame) {
        return frame[typeOffset] == static_cast<std::uint8_t>(type) &&
               (frame[lengthOffset] > 0 || type == VelmorindalMessageType::writeSettings);
    }));
}

System::Clock::time_point ExploredSystem::now() {
    return Clock::time_point{scheduler_.now()};
}

void ExploredSystem::sleepFor(Clock::duration duration) {
    scheduler_.letTimePass(duration);
    scheduler_.rest("sleep");
}

int ExploredSystem::openExclusively(const std::string& path, int /*accessMode*/,
                                    const std::function<void()>& /*whenSlow*/) {
    if (path != path_ || !plugged_) {
        errno = ENOENT;
        return -1;
    }
    if (!open_.empty()) {
        errno = EBUSY;
        return -1;
    }
    open_.insert(nextDescriptor_);
    return nextDescriptor_++;
}

void ExploredSystem::endExclusiveUse(int /*descriptor*/) {
    // Ends with the descriptor.
}

void ExploredSystem::close(int descriptor) {
    open_.erase(descriptor);
}

std::ptrdiff_t ExploredSystem::write(int /*descriptor*/, std::span<const std::uint8_t> bytes) {
    scheduler_.point("write");
    usedBy(scheduler_.currentThread());
    if (!plugged_) {
        errno = EIO;
        return -1;
    }
    reader_.add(bytes);
    while (const auto frame = reader_.next()) {
        receive(*frame);
    }
    return std::ssize(bytes);
}

void ExploredSystem::receive(const ByteBuffer& frame) {
    received_.push_back(frame);
    switch (troublesLeft_ > 0 ? scheduler_.choose(3) : 0) {
        case 1:
            --troublesLeft_;
            hadTrouble_ = true;
            return;
        case 2:
            unplug();
            return;
        default:
            answers_.push_back(device_.answerTo(frame));
            device_.apply(frame);
    }
}

bool ExploredSystem::wait(int /*descriptor*/, Readiness readiness,
                          std::optional<Clock::time_point> /*until*/) {
    if (readiness == Readiness::toWrite) {
        return true;
    }
    if (!answerIsThere_) {
        scheduler_.rest("read");
        if (plugged_ && troublesLeft_ > 0 && scheduler_.choose(2) == 1) {
            unplug();
        }
    }
    if (plugged_ && answers_.empty() && device_.streams()) {
        answers_.push_back(device_.nextReport());
    }
    answerIsThere_ = !answers_.empty();
    if (plugged_ && !answerIsThere_) {
        scheduler_.letTimePass(patience);
    }
    return !plugged_ || answerIsThere_;
}

std::ptrdiff_t ExploredSystem::read(int /*descriptor*/, std::span<std::uint8_t> buffer) {
    usedBy(scheduler_.currentThread());
    if (!plugged_) {
        return 0;
    }
    if (!answerIsThere_) {
        errno = EAGAIN;
        return -1;
    }
    ByteBuffer& answer = answers_.front();
    const std::size_t count = std::min(buffer.size(), answer.size());
    std::copy_n(answer.begin(), count, buffer.begin());
    answer.erase(answer.begin(), answer.begin() + static_cast<std::ptrdiff_t>(count));
    answerIsThere_ = !answer.empty();
    if (!answerIsThere_) {
        answers_.pop_front();
    }
    return static_cast<std::ptrdiff_t>(count);
}

std::optional<std::size_t> ExploredSystem::linkCount(int /*descriptor*/) {
    return plugged_ ? 1U : 0U;
}

bool ExploredSystem::lineAttributes(int /*descriptor*/, termios& attributes) {
    attributes = {};
    return true;
}

bool ExploredSystem::setLineAttributes(int /*descriptor*/, const termios& /*attributes*/) {
    return true;
}

void ExploredSystem::unplug() {
    --troublesLeft_;
    hadTrouble_ = true;
    plugged_ = false;
    answers_.clear();
    answerIsThere_ = false;
    std::filesystem::remove(path_);
}

void ExploredSystem::usedBy(std::size_t thread) {
    if (thread != user_) {
        done_.insert(user_);
        user_ = thread;
    }
    if (done_.contains(thread)) {
        scheduler_.fail("two operations used the device at once");
    }
}

}  // namespace velmorindal
