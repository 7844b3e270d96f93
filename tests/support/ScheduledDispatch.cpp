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

bool ScheduledDispatch::runNext() {
    if (queue_.empty()) {
        return false;
    }
    scheduler_.point("main-queue work");
    const Work next = std::move(queue_.front());
    queue_.pop_front();
    next();
    scheduler_.noteProgress();
    return true;
}

bool ScheduledDispatch::waitUntil(const std::function<bool()>& condition) {
    const Scheduler::Moment end = scheduler_.now() + bound;
    return scheduler_.waitUntil(
        condition, [end] { return std::optional{end}; }, "what a test waits for");
}

}  // namespace velmorindal
