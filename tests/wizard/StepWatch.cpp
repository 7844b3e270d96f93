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
        const Lock lock{mutex_};
        stopping_ = true;
    }
    changed_.notifyAll();
    thread_.join();
}

void StepWatch::begin(VirtualDongle& dongle) {
    {
        const Lock lock{mutex_};
        dongle_ = &dongle;
        deadline_ = Clock::now() + longestStep;
    }
    changed_.notifyAll();
}

void StepWatch::end() {
    const Lock lock{mutex_};
    dongle_ = nullptr;
}

std::size_t StepWatch::pulledOut() const {
    const Lock lock{mutex_};
    return pulledOut_;
}

void StepWatch::watch() {
    const Lock lock{mutex_};
    while (!stopping_) {
        if (dongle_ == nullptr) {
            changed_.wait(mutex_);
        } else if (Clock::now() < deadline_) {
            changed_.waitUntil(mutex_, deadline_);
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
