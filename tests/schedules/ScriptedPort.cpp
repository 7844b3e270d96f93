#include "schedules/ScriptedPort.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace velmorindal {
namespace {

ScriptedPort* portHere = nullptr;

/// What a read without an answer waits, in the end: the deadline of the wizard's port.
constexpr std::chrono::seconds patience{2};
constexpr int highestDescriptor = 64;

}  // namespace

ScriptedPort::ScriptedPort(Scheduler& scheduler, const std::filesystem::path& directory, std::size_t troubles)
    : scheduler_{scheduler}, terminal_{directory / "cu.usbmodem-scripted"}, troublesLeft_{troubles} {
    struct stat status {};
    ::stat(path().c_str(), &status);
    node_ = status.st_rdev;
    portHere = this;
}

ScriptedPort::~ScriptedPort() {
    for (int descriptor = 0; descriptor < highestDescriptor; ++descriptor) {
        if (isOpenAs(descriptor)) {
            ::close(descriptor);
        }
    }
    portHere = nullptr;
}

bool ScriptedPort::isOpenAs(int descriptor) const {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISCHR(status.st_mode) && status.st_rdev == node_ &&
           descriptor != terminal_.ownHostEnd();
}

ScriptedPort* ScriptedPort::of(int descriptor) {
    return portHere != nullptr && portHere->isOpenAs(descriptor) ? portHere : nullptr;
}

std::size_t ScriptedPort::timesReceived(VelmorindalMessageType type) const {
    return static_cast<std::size_t>(std::ranges::count_if(received_, [type](const ByteBuffer& frame) {
        return frame[typeOffset] == static_cast<std::uint8_t>(type) &&
               (frame[lengthOffset] > 0 || type == VelmorindalMessageType::writeSettings);
    }));
}

ssize_t ScriptedPort::write(std::span<const std::uint8_t> bytes) {
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

void ScriptedPort::receive(const ByteBuffer& frame) {
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

ssize_t ScriptedPort::read(std::span<std::uint8_t> buffer) {
    if (!withinAnswer_) {
        scheduler_.rest("read");
        if (plugged_ && troublesLeft_ > 0 && scheduler_.choose(2) == 1) {
            unplug();
        }
    }
    usedBy(scheduler_.currentThread());
    if (!plugged_) {
        return 0;
    }
    if (answers_.empty() && device_.streams()) {
        answers_.push_back(device_.nextReport());
    }
    if (answers_.empty()) {
        scheduler_.letTimePass(patience);
        return 0;
    }
    ByteBuffer& answer = answers_.front();
    const std::size_t count = std::min(buffer.size(), answer.size());
    std::copy_n(answer.begin(), count, buffer.begin());
    answer.erase(answer.begin(), answer.begin() + static_cast<std::ptrdiff_t>(count));
    withinAnswer_ = !answer.empty();
    if (!withinAnswer_) {
        answers_.pop_front();
    }
    return static_cast<ssize_t>(count);
}

void ScriptedPort::unplug() {
    --troublesLeft_;
    hadTrouble_ = true;
    plugged_ = false;
    answers_.clear();
    withinAnswer_ = false;
    terminal_.close();
}

void ScriptedPort::usedBy(std::size_t thread) {
    if (thread != user_) {
        done_.insert(user_);
        user_ = thread;
    }
    if (done_.contains(thread)) {
        scheduler_.fail("two operations used the device at once");
    }
}

}  // namespace velmorindal
