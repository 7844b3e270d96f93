#include "ScheduledDispatch.h"

namespace velmorindal {

void ScheduledDispatch::postToMain(Work work) {
    if (!losesPostedWork_) {
        queue_.push_back(std::move(work));
    }
    scheduler_.point("postToMain");
}

void ScheduledDispatch::runOnMainAndWait(Work work) {
    const auto done = std::make_shared<bool>(false);
    queue_.emplace_back([done, work = std::move(work)] {
        work();
        *done = true;
    });
    scheduler_.waitUntil([done] { return *done; }, "runOnMainAndWait");
}

void ScheduledDispatch::runInBackground(Work work) {
    scheduler_.start(std::move(work));
}

void ScheduledDispatch::runPendingMainWork() {
    for (std::size_t submitted = queue_.size(); submitted > 0 && !queue_.empty(); --submitted) {
        runNext();
    }
}

void ScheduledDispatch::runNext() {
    scheduler_.point("main-queue work");
    const Work next = std::move(queue_.front());
    queue_.pop_front();
    next();
    scheduler_.noteProgress();
}

bool ScheduledDispatch::runOneMainWork() {
    if (!waitForPendingMainWork(1)) {
        return false;
    }
    runNext();
    return true;
}

bool ScheduledDispatch::waitForPendingMainWork(std::size_t count) {
    return waitWithinBound([this, count] { return queue_.size() >= count; }, "main-queue work to come");
}

bool ScheduledDispatch::runMainWorkUntil(const std::function<bool()>& condition) {
    while (!condition()) {
        if (!waitWithinBound([&] { return !queue_.empty() || condition(); }, "what a test waits for")) {
            return false;
        }
        runPendingMainWork();
    }
    return true;
}

bool ScheduledDispatch::waitUntil(const std::function<bool()>& condition) {
    return waitWithinBound(condition, "what a test waits for");
}

void ScheduledDispatch::waitForBackground() {
    runMainWorkUntil([this] { return !scheduler_.hasOtherThreads(); });
}

bool ScheduledDispatch::waitWithinBound(std::function<bool()> condition, std::string_view where) {
    const Scheduler::Moment end = scheduler_.now() + bound;
    return scheduler_.waitUntil(
        std::move(condition), [end] { return std::optional{end}; }, where);
}

}  // namespace velmorindal
