#include "simulator/VirtualDongle.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <utility>

namespace velmorindal {
namespace {

/// Reports are left out while a host that does not read has more than this waiting.
constexpr std::size_t longestBacklog = 4096;
constexpr std::chrono::seconds longestWaitForTheHost{1};
constexpr std::chrono::milliseconds hostCheckInterval{1};
constexpr std::chrono::hours idle{1};

timespec timespecOf(std::chrono::nanoseconds time) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    return {.tv_sec = seconds.count(), .tv_nsec = (time - seconds).count()};
}

bool canBeRead(int descriptor) {
    pollfd entry{.fd = descriptor, .events = POLLIN, .revents = 0};
    return ::poll(&entry, 1, 0) > 0;
}

}  // namespace

VirtualDongle::VirtualDongle(const std::filesystem::path& directory, Options options)
    : options_{std::move(options)},
      path_{directory / options_.name},
      terminal_{path_},
      hosts_{terminal_.hostEnd()},
      line_{options_.paced},
      device_{options_.device, options_.hums ? std::optional{HumSeries{options_.seed}} : std::nullopt},
      server_{[this] { serve(); }} {}

VirtualDongle::~VirtualDongle() {
    unplug();
    server_.join();
}

void VirtualDongle::unplug() {
    Lock lock{mutex_};
    unplugAsked_ = true;
    wakeUp_.raise();
    if (std::this_thread::get_id() != serverId_) {
        changed_.wait(lock, [this] { return !plugged_; });
    }
}

bool VirtualDongle::isPlugged() const {
    const Lock lock{mutex_};
    return plugged_;
}

DeviceState VirtualDongle::state() const {
    const Lock lock{mutex_};
    return device_.state();
}

void VirtualDongle::prepare(const std::function<void(DeviceState&)>& change) {
    const Lock lock{mutex_};
    change(device_.state());
    wakeUp_.raise();
}

void VirtualDongle::humOnce(std::uint16_t ticks) {
    prepare([ticks](DeviceState& state) { state.lastHumTicks = ticks; });
}

void VirtualDongle::reportClarity(float maximum, float minimum) {
    const Lock lock{mutex_};
    device_.setSteadyClarity(maximum, minimum);
}

void VirtualDongle::reportClarities(const std::vector<float>& maxima) {
    const Lock lock{mutex_};
    device_.queueClarities(maxima);
}

void VirtualDongle::sendReport(float maximum, float minimum) {
    const Lock lock{mutex_};
    deliverReport(SimulatedDevice::report(maximum, minimum), Clock::now());
    wakeUp_.raise();
}

void VirtualDongle::send(std::span<const std::uint8_t> bytes) {
    const Lock lock{mutex_};
    line_.put(bytes, Clock::now());
    wakeUp_.raise();
}

void VirtualDongle::onOccurrence(std::size_t occurrence, VelmorindalMessageType type, Fault fault) {
    const Lock lock{mutex_};
    script(type).onOccurrence(occurrence, std::move(fault));
}

void VirtualDongle::onFirst(VelmorindalMessageType type, Fault fault) {
    onOccurrence(1, type, std::move(fault));
}

void VirtualDongle::onNext(VelmorindalMessageType type, Fault fault) {
    const Lock lock{mutex_};
    script(type).onOccurrence(script(type).occurrences() + 1, std::move(fault));
}

void VirtualDongle::onEvery(VelmorindalMessageType type, Fault fault) {
    const Lock lock{mutex_};
    script(type).onEvery(std::move(fault));
}

void VirtualDongle::onReport(std::size_t number, Fault fault) {
    const Lock lock{mutex_};
    reportScript_.onOccurrence(number, std::move(fault));
}

void VirtualDongle::forgetFaults() {
    const Lock lock{mutex_};
    std::for_each(scripts_.begin(), scripts_.end(), [](FaultScript& script) { script.forget(); });
    reportScript_.forget();
}

std::vector<ByteBuffer> VirtualDongle::receivedFrames() const {
    const Lock lock{mutex_};
    return received_;
}

std::size_t VirtualDongle::timesReceived(VelmorindalMessageType type) const {
    const Lock lock{mutex_};
    return script(type).occurrences();
}

std::size_t VirtualDongle::skippedBytes() const {
    const Lock lock{mutex_};
    return reader_.skippedBytes();
}

bool VirtualDongle::waitForFrames(std::size_t count, std::chrono::milliseconds timeout) const {
    Lock lock{mutex_};
    changed_.wait_for(lock, timeout, [&] { return receivedCount_ >= count || !plugged_; });
    return receivedCount_ >= count;
}

void VirtualDongle::whenReceived(std::function<void(std::span<const std::uint8_t>)> hook) {
    const Lock lock{mutex_};
    hook_ = std::move(hook);
}

void VirtualDongle::serve() {
    Lock lock{mutex_};
    serverId_ = std::this_thread::get_id();
    while (!unplugAsked_) {
        sendWhatIsDue(Clock::now());
        if (!unplugAsked_) {
            waitForWork(lock);
        }
        if (!unplugAsked_ && !unplugBy_) {
            receive(lock);
        }
    }
    terminal_.close();
    plugged_ = false;
    changed_.notify_all();
}

void VirtualDongle::sendWhatIsDue(Clock::time_point now) {
    if (hosts_.portWasLeft(now)) {
        terminal_.forgetHost();
    }
    device_.advanceTo(std::chrono::duration_cast<HumSeries::Time>(now - start_));
    sendReports(now);
    line_.write(terminal_.descriptor(), now);
    unplugOnceTaken(now);
}

void VirtualDongle::sendReports(Clock::time_point now) {
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

void VirtualDongle::unplugOnceTaken(Clock::time_point now) {
    if (unplugBy_) {
        // A host that goes on to its next frame has what it waited for.
        const bool taken =
            line_.waiting() == 0 && (terminal_.hostHasTakenAll() || canBeRead(terminal_.descriptor()));
        unplugAsked_ = unplugAsked_ || taken || now >= *unplugBy_;
    }
}

void VirtualDongle::waitForWork(Lock& lock) {
    const Clock::time_point now = Clock::now();
    const timespec timeout = timespecOf(std::max(nextDeadline(now) - now, Clock::duration::zero()));
    const short events = line_.isBlocked() ? POLLIN | POLLOUT : POLLIN;
    std::array<pollfd, 3> entries{{{.fd = terminal_.descriptor(), .events = events, .revents = 0},
                                   {.fd = hosts_.descriptor(), .events = POLLIN, .revents = 0},
                                   {.fd = wakeUp_.descriptor(), .events = POLLIN, .revents = 0}}};
    lock.unlock();
    ::ppoll(entries.data(), entries.size(), &timeout, nullptr);
    wakeUp_.clear();
    lock.lock();
}

VirtualDongle::Clock::time_point VirtualDongle::nextDeadline(Clock::time_point now) const {
    Clock::time_point deadline = now + idle;
    if (!line_.isBlocked()) {
        deadline = std::min(deadline, line_.due().value_or(deadline));
    }
    deadline = std::min(deadline, hosts_.due().value_or(deadline));
    deadline = std::min(deadline, nextReport_.value_or(deadline));
    return unplugBy_ ? std::min(deadline, now + hostCheckInterval) : deadline;
}

void VirtualDongle::receive(Lock& lock) {
    std::array<std::uint8_t, 4096> bytes{};
    const ssize_t count = ::read(terminal_.descriptor(), bytes.data(), bytes.size());
    if (count > 0) {
        reader_.add(std::span{bytes}.first(static_cast<std::size_t>(count)));
    }
    while (!unplugAsked_ && !unplugBy_) {
        const auto frame = reader_.next();
        if (!frame) {
            return;
        }
        handle(*frame, lock);
    }
}

void VirtualDongle::handle(const ByteBuffer& frame, Lock& lock) {
    FaultScript& faults = scripts_[frame[typeOffset]];
    faults.count();
    ++receivedCount_;
    if (options_.keepsReceivedFrames) {
        received_.push_back(frame);
    }
    changed_.notify_all();
    if (const auto hook = hook_) {
        lock.unlock();
        hook(frame);
        lock.lock();
        if (unplugAsked_) {
            return;
        }
    }
    const Clock::time_point now = Clock::now();
    device_.advanceTo(std::chrono::duration_cast<HumSeries::Time>(now - start_));
    AnswerPlan plan{.request = frame, .answer = device_.answerTo(frame)};
    faults.bend(plan);
    if (plan.applies) {
        device_.apply(frame);
    }
    line_.put(std::exchange(heldBack_, {}), now);
    deliver(plan, now);
}

void VirtualDongle::deliverReport(ByteBuffer report, Clock::time_point now) {
    reportScript_.count();
    AnswerPlan plan{.answer = std::move(report)};
    reportScript_.bend(plan);
    deliver(plan, now);
}

void VirtualDongle::deliver(const AnswerPlan& plan, Clock::time_point now) {
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
        unplugBy_ = now + longestWaitForTheHost;
    }
}

}  // namespace velmorindal
