#include "StepWatch.h"

#include <utility>

namespace velmorindal {
namespace {

/// Quitting waits for an exchange with the device, two seconds at most each, and there may be a few.
constexpr std::chrono::seconds longestStep{20};

}  // namespace

StepWatch::StepWatch(std::function<void()> onHang)
    : onHang_{std::move(onHang)}, thread_{[this] { watch(); }} {}

StepWatch::~StepWatch() {
    {
        const std::lock_guard lock{mutex_};
        stopping_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

void StepWatch::begin(VirtualDongle& dongle) {
    {
        const std::lock_guard lock{mutex_};
        dongle_ = &dongle;
        deadline_ = Clock::now() + longestStep;
    }
    changed_.notify_all();
}

void StepWatch::end() {
    const std::lock_guard lock{mutex_};
    dongle_ = nullptr;
}

std::size_t StepWatch::pulledOut() const {
    const std::lock_guard lock{mutex_};
    return pulledOut_;
}

void StepWatch::watch() {
    std::unique_lock lock{mutex_};
    while (!stopping_) {
        if (dongle_ == nullptr) {
            changed_.wait(lock);
        } else if (Clock::now() < deadline_) {
            changed_.wait_until(lock, deadline_);
        } else if (dongle_->isPlugged() && dongle_->state().autoTuneChannel != 0) {
            dongle_->unplug();
            ++pulledOut_;
            deadline_ = Clock::now() + longestStep;
        } else {
            onHang_();
        }
    }
}

}  // namespace velmorindal
