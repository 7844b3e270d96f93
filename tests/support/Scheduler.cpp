#include "Scheduler.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace velmorindal {
namespace {

thread_local Scheduler* schedulerHere = nullptr;

constexpr std::size_t tracedPoints = 60;

}  // namespace

Scheduler::Scheduler(Choices& choices, Limits limits)
    : Scheduler{choices, limits, std::make_unique<Workers>()} {}

Scheduler::Scheduler(Choices& choices, Limits limits, std::unique_ptr<Workers> own)
    : Scheduler{choices, limits, *own} {
    ownWorkers_ = std::move(own);
}

Scheduler::Scheduler(Choices& choices, Limits limits, Workers& workers)
    : workers_{workers}, choices_{choices}, limits_{limits}, deviationsLeft_{limits.deviations} {
    threads_.push_back(std::make_unique<Thread>());
    schedulerHere = this;
}

Scheduler::~Scheduler() {
    endOtherThreads();
    schedulerHere = nullptr;
}

void Scheduler::endOtherThreads() {
    ending_ = true;
    for (const auto& thread : threads_) {
        endThread(*thread);
    }
}

void Scheduler::endThread(Thread& thread) {
    if (thread.worker == nullptr) {
        return;
    }
    if (!thread.finished) {
        // It stands in handTo() or before its first turn, and leaves from there without touching the others.
        thread.turn.give();
    }
    workers_.await(*std::exchange(thread.worker, nullptr));
}

Scheduler* Scheduler::current() {
    return schedulerHere;
}

void Scheduler::start(std::function<void()> work) {
    Thread& self = *threads_.emplace_back(std::make_unique<Thread>());
    self.worker = &workers_.run([this, &self, work = std::move(work)] { body(self, work); });
    noteProgress();
    point("start");
}

void Scheduler::body(Thread& self, const std::function<void()>& work) {
    schedulerHere = this;
    self.turn.await();
    try {
        if (!ending_) {
            work();
        }
    } catch (const ScheduleEnded&) {
    } catch (const std::exception& exception) {
        failure_ = std::string{"a thread ended by an exception: "} + exception.what();
    }
    if (ending_) {
        return;
    }
    self.finished = true;
    noteProgress();
    // Failed schedules go on in the main thread, which ends them.
    const auto next = candidatesInTime(true);
    if (next.empty() && !failure_) {
        failure_ = "hung: everybody waits";
    }
    running_ = failure_ ? 0 : next.front();
    threads_[running_]->turn.give();
}

void Scheduler::point(std::string_view where) {
    pass(where, false);
}

void Scheduler::rest(std::string_view where) {
    pass(where, true);
}

void Scheduler::waitUntil(std::function<bool()> condition, std::string_view where) {
    threads_[running_]->waitsFor = std::move(condition);
    pass(where, false);
    threads_[running_]->waitsFor = nullptr;
}

bool Scheduler::waitUntil(std::function<bool()> condition, std::function<std::optional<Moment>()> until,
                          std::string_view where) {
    Thread& self = *threads_[running_];
    self.waitsFor = std::move(condition);
    self.waitsUntil = std::move(until);
    pass(where, false);
    self.waitsUntil = nullptr;
    return std::exchange(self.waitsFor, nullptr)();
}

std::size_t Scheduler::choose(std::size_t count) {
    return choices_.pick(count);
}

void Scheduler::fail(const std::string& what) {
    if (!failure_) {
        failure_ = what;
    }
    if (running_ != 0) {
        handTo(0);
    }
    throw ScheduleEnded{};
}

void Scheduler::pass(std::string_view where, bool resting) {
    if (ending_ || failure_) {
        // On the way out, in the destructor of something.
        return;
    }
    trace_.push_back({running_, where});
    if (trace_.size() > tracedPoints) {
        trace_.pop_front();
    }
    if (++points_ > limits_.points) {
        fail("hung: it goes on without an end");
    }
    const auto next = candidatesInTime(resting);
    if (next.empty()) {
        fail("hung: everybody waits");
    }
    if (resting && next.front() == running_) {
        noticeLoneRest();
    }
    const std::size_t index = deviationsLeft_ > 0 ? choices_.pick(next.size()) : 0;
    deviationsLeft_ -= index > 0 ? 1 : 0;
    if (next[index] != running_) {
        noteProgress();
        handTo(next[index]);
    }
}

bool Scheduler::canRun(const Thread& thread) const {
    if (thread.finished) {
        return false;
    }
    if (!thread.waitsFor || thread.waitsFor()) {
        return true;
    }
    const auto until = thread.waitsUntil ? thread.waitsUntil() : std::nullopt;
    return until && *until <= now_;
}

std::optional<Scheduler::Moment> Scheduler::nextMoment() const {
    std::optional<Moment> next;
    for (const auto& thread : threads_) {
        const auto until = !thread->finished && thread->waitsUntil ? thread->waitsUntil() : std::nullopt;
        if (until) {
            next = std::min(next.value_or(*until), *until);
        }
    }
    return next;
}

std::vector<std::size_t> Scheduler::candidatesInTime(bool resting) {
    auto found = candidates(resting);
    while (found.empty()) {
        const auto next = nextMoment();
        if (!next) {
            return found;
        }
        now_ = std::max(now_, *next);
        found = candidates(resting);
    }
    return found;
}

std::vector<std::size_t> Scheduler::candidates(bool resting) const {
    std::vector<std::size_t> found;
    found.reserve(threads_.size());
    const auto consider = [&](std::size_t index) {
        if (canRun(*threads_[index])) {
            found.push_back(index);
        }
    };
    if (!resting) {
        consider(running_);
    }
    for (std::size_t step = 1; step < threads_.size(); ++step) {
        consider((running_ + step) % threads_.size());
    }
    if (resting) {
        consider(running_);
    }
    return found;
}

void Scheduler::noticeLoneRest() {
    Thread& self = *threads_[running_];
    if (std::exchange(self.progressAtLoneRest, progress_) == progress_) {
        fail("hung: it waits for what nobody will provide");
    }
}

void Scheduler::handTo(std::size_t next) {
    Thread& self = *threads_[running_];
    running_ = next;
    threads_[next]->turn.give();
    self.turn.await();
    if (ending_ || failure_) {
        throw ScheduleEnded{};
    }
}

bool Scheduler::hasOtherThreads() const {
    return std::any_of(threads_.begin() + 1, threads_.end(),
                       [](const auto& thread) { return !thread->finished; });
}

std::string Scheduler::trace() const {
    std::string text;
    for (const Point& point : trace_) {
        text += "  " + (point.thread == 0 ? "main" : "run " + std::to_string(point.thread)) + ": " +
                std::string{point.where} + "\n";
    }
    return text;
}

}  // namespace velmorindal
