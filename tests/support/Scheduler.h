#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Choices.h"
#include "Turn.h"
#include "Workers.h"

namespace velmorindal {

/// Thrown through a thread whose schedule is over. Not an std::exception, so that what is explored does not
/// take it for one of its own.
struct ScheduleEnded {};

/// Runs the threads of one schedule, one at a time: real threads that hand a token on at their scheduling
/// points, where the choices say who goes next.
///
/// The order without choices is fair: a thread goes on until it rests or waits, then the next one that can
/// run has its turn; time passes when none can. Every choice of another thread is a deviation from it, and a
/// schedule has a limited number of them. A schedule has hung when every thread waits for something that none
/// will provide, or when it goes on without an end.
class Scheduler {
  public:
    struct Limits {
        /// From the fair order.
        std::size_t deviations = 2;
        /// Scheduling points after which a schedule counts as one without an end.
        std::size_t points = 3000;
    };

    /// In virtual time, counted from the start of the schedule.
    using Moment = std::chrono::nanoseconds;

    /// The calling thread is the main thread and has the token.
    Scheduler(Choices& choices, Limits limits);
    /// With the threads of `workers`, which another schedule may have used.
    Scheduler(Choices& choices, Limits limits, Workers& workers);
    Scheduler(const Scheduler&) = delete;
    Scheduler& operator=(const Scheduler&) = delete;
    ~Scheduler();

    /// Ends every thread but the main one where it stands, before what they use goes. Main thread.
    void endOtherThreads();

    /// The scheduler of the calling thread; none for a thread that is no part of a schedule.
    static Scheduler* current();

    // From a thread with the token.

    /// A new thread, which gets the token when the choices say so.
    void start(std::function<void()> work);
    /// Another thread may go first.
    void point(std::string_view where);
    /// The caller lets time pass: all other threads go first unless the choices say otherwise.
    void rest(std::string_view where);
    /// The caller cannot go on before `condition` holds.
    void waitUntil(std::function<bool()> condition, std::string_view where);
    /// The caller goes on when `condition` holds or the virtual time is at least what `until` says, which is
    /// asked again and again. Once no other thread can go on, time passes up to the earliest such moment.
    /// @returns whether the condition holds.
    bool waitUntil(std::function<bool()> condition, std::function<std::optional<Moment>()> until,
                   std::string_view where);
    /// One of `count` ways in which the world around the threads may go on.
    std::size_t choose(std::size_t count);
    /// Something was done that another turn of a waiting loop may have waited for.
    void noteProgress() { ++progress_; }
    /// Ends the schedule with a failure: throws ScheduleEnded here and, in the end, in the main thread.
    [[noreturn]] void fail(const std::string& what);
    /// The virtual time of this schedule, which passes only by letting it pass.
    void letTimePass(std::chrono::nanoseconds time) { now_ += time; }
    Moment now() const { return now_; }

    /// 0 for the main thread, then in the order started.
    std::size_t currentThread() const { return running_; }
    /// Whether a thread but the main one is left.
    bool hasOtherThreads() const;

    const std::optional<std::string>& failure() const { return failure_; }
    std::size_t points() const { return points_; }
    /// The last scheduling points, each with the thread that came to it.
    std::string trace() const;

  private:
    struct Thread {
        Turn turn;
        std::function<bool()> waitsFor;
        std::function<std::optional<Moment>()> waitsUntil;
        bool finished = false;
        std::size_t progressAtLoneRest = 0;
        /// None for the main thread, and for one that was ended.
        Workers::Worker* worker = nullptr;
    };
    struct Point {
        std::size_t thread;
        std::string_view where;
    };

    Scheduler(Choices& choices, Limits limits, std::unique_ptr<Workers> own);

    void pass(std::string_view where, bool resting);
    bool canRun(const Thread& thread) const;
    std::vector<std::size_t> candidates(bool resting) const;
    /// As candidates(), after as much time has passed as it takes for one to be there.
    std::vector<std::size_t> candidatesInTime(bool resting);
    std::optional<Moment> nextMoment() const;
    void noticeLoneRest();
    void handTo(std::size_t next);
    /// `self` is given rather than looked up: before its first turn another thread may be starting one.
    void body(Thread& self, const std::function<void()>& work);
    void endThread(Thread& thread);

    std::unique_ptr<Workers> ownWorkers_;
    Workers& workers_;
    Choices& choices_;
    const Limits limits_;
    std::size_t deviationsLeft_;
    std::vector<std::unique_ptr<Thread>> threads_;
    std::size_t running_ = 0;
    std::size_t progress_ = 1;
    Moment now_{0};
    std::optional<std::string> failure_;
    bool ending_ = false;
    std::size_t points_ = 0;
    std::deque<Point> trace_;
};

}  // namespace velmorindal
