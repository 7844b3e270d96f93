#include "SimulatedDongle.h"

#include <algorithm>
#include <utility>

namespace velmorindal {
namespace {

/// In bytes. Reports are left out while more than this waits for the host.
constexpr std::size_t longestBacklog = 4096;

}  // namespace

SimulatedDongle::SimulatedDongle(std::filesystem::path path, Options options, Clock::time_point start)
    : line_{options.paced},
      path_{std::move(path)},
      options_{std::move(options)},
      start_{start},
      device_{options_.device, options_.hums ? std::optional{HumSeries{options_.seed}} : std::nullopt} {}

bool SimulatedDongle::isPlugged() const {
    const Lock lock{mutex_};
    return plugged_;
}

DeviceState SimulatedDongle::state() const {
    const Lock lock{mutex_};
    return device_.state();
}

void SimulatedDongle::prepare(const std::function<void(DeviceState&)>& change) {
    const Lock lock{mutex_};
    change(device_.state());
    wake();
}

void SimulatedDongle::humOnce(std::uint16_t ticks) {
    prepare([ticks](DeviceState& state) { state.lastHumTicks = ticks; });
}

void SimulatedDongle::reportClarity(float maximum, float minimum) {
    const Lock lock{mutex_};
    device_.setSteadyClarity(maximum, minimum);
}

void SimulatedDongle::reportClarities(const std::vector<float>& maxima) {
    const Lock lock{mutex_};
    device_.queueClarities(maxima);
}

void SimulatedDongle::sendReport(float maximum, float minimum) {
    const Lock lock{mutex_};
    deliverReport(SimulatedDevice::report(maximum, minimum), now());
    wake();
}

void SimulatedDongle::send(std::span<const std::uint8_t> bytes) {
    const Lock lock{mutex_};
    line_.put(bytes, now());
    wake();
}

void SimulatedDongle::onOccurrence(std::size_t occurrence, VelmorindalMessageType type, Fault fault) {
    const Lock lock{mutex_};
    script(type).onOccurrence(occurrence, std::move(fault));
}

void SimulatedDongle::onFirst(VelmorindalMessageType type, Fault fault) {
    onOccurrence(1, type, std::move(fault));
}

void SimulatedDongle::onNext(VelmorindalMessageType type, Fault fault) {
    const Lock lock{mutex_};
    script(type).onOccurrence(script(type).occurrences() + 1, std::move(fault));
}

void SimulatedDongle::onEvery(VelmorindalMessageType type, Fault fault) {
    const Lock lock{mutex_};
    script(type).onEvery(std::move(fault));
}

void SimulatedDongle::onReport(std::size_t number, Fault fault) {
    const Lock lock{mutex_};
    reportScript_.onOccurrence(number, std::move(fault));
}

std::vector<ByteBuffer> SimulatedDongle::receivedFrames() const {
    const Lock lock{mutex_};
    return received_;
}

std::size_t SimulatedDongle::timesReceived(VelmorindalMessageType type) const {
    const Lock lock{mutex_};
    return script(type).occurrences();
}

std::size_t SimulatedDongle::skippedBytes() const {
    const Lock lock{mutex_};
    return reader_.skippedBytes();
}

void SimulatedDongle::whenReceived(std::function<void(std::span<const std::uint8_t>)> hook) {
    const Lock lock{mutex_};
    hook_ = std::move(hook);
}

void SimulatedDongle::receive(std::span<const std::uint8_t> bytes) {
    reader_.add(bytes);
    while (!unplugAsked_ && !unplugBy_) {
        const auto frame = reader_.next();
        if (!frame) {
            return;
        }
        handle(*frame);
    }
}

void SimulatedDongle::advanceTo(Clock::time_point now) {
    device_.advanceTo(std::chrono::duration_cast<HumSeries::Time>(now - start_));
    sendReports(now);
}

void SimulatedDongle::unplugOnceTaken(bool hostHasTakenAll, Clock::time_point now) {
    unplugAsked_ = unplugAsked_ || (unplugBy_ && (hostHasTakenAll || now >= *unplugBy_));
}

std::optional<SimulatedDongle::Clock::time_point> SimulatedDongle::due(bool lineIsBlocked) const {
    std::optional<Clock::time_point> earliest = lineIsBlocked ? std::nullopt : line_.due();
    for (const auto& other : {nextReport_, unplugBy_}) {
        if (other) {
            earliest = std::min(earliest.value_or(*other), *other);
        }
    }
    return earliest;
}

void SimulatedDongle::sendReports(Clock::time_point now) {
    if (!device_.streams() || options_.reportInterval.count() == 0) {
        nextReport_.reset();
        return;
    }
    if (!nextReport_) {
        nextReport_ = now + options_.reportInterval;
    }
    for (; *nextReport_ <= now && !unplugBy_; *nextReport_ += options_.reportInterval) {
        if (line_.waiting() <= longestBacklog) {
            deliverReport(device_.nextReport(), now);
        }
    }
}

void SimulatedDongle::handle(const ByteBuffer& frame) {
    FaultScript& faults = scripts_[frame[typeOffset]];
    faults.count();
    ++receivedCount_;
    if (options_.keepsReceivedFrames) {
        received_.push_back(frame);
    }
    frameArrived();
    if (const auto hook = hook_) {
        {
            const Unlock unlock{mutex_};
            hook(frame);
        }
        if (unplugAsked_) {
            return;
        }
    }
    const Clock::time_point moment = now();
    device_.advanceTo(std::chrono::duration_cast<HumSeries::Time>(moment - start_));
    AnswerPlan plan{.request = frame, .answer = device_.answerTo(frame)};
    faults.bend(plan);
    if (plan.applies) {
        device_.apply(frame);
    }
    line_.put(std::exchange(heldBack_, {}), moment);
    deliver(plan, moment);
}

void SimulatedDongle::deliverReport(ByteBuffer report, Clock::time_point now) {
    reportScript_.count();
    AnswerPlan plan{.answer = std::move(report)};
    reportScript_.bend(plan);
    deliver(plan, now);
}

void SimulatedDongle::deliver(const AnswerPlan& plan, Clock::time_point now) {
    if (plan.unplugging == AnswerPlan::Unplugging::before) {
        unplugAsked_ = true;
        return;
    }
    line_.put(plan.bytesBefore, now);
    switch (plan.delivery) {
        case AnswerPlan::Delivery::now:
            line_.put(plan.answer, now);
            break;
        case AnswerPlan::Delivery::afterDelay:
            line_.putLater(plan.answer, now + plan.delay);
            break;
        case AnswerPlan::Delivery::beforeNextAnswer:
            heldBack_.insert(heldBack_.end(), plan.answer.begin(), plan.answer.end());
            break;
        case AnswerPlan::Delivery::never:
            break;
    }
    if (plan.unplugging == AnswerPlan::Unplugging::after) {
        unplugBy_ = now + options_.waitForTheHost;
    }
}

}  // namespace velmorindal
