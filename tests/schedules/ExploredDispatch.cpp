#include "schedules/ExploredDispatch.h"

#include <memory>
#include <utility>

namespace velmorindal {

void ExploredDispatch::postToMain(Work work) {
    if (!losesPostedWork_) {
        queue_.push_back(std::move(work));
    }
    scheduler_.point("postToMain");
}

void ExploredDispatch::runOnMainAndWait(Work work) {
    const auto done = std::make_shared<bool>(false);
    queue_.emplace_back([done, work = std::move(work)] {
        work();
        *done = true;
    });
    scheduler_.waitUntil([done] { return *done; }, "runOnMainAndWait");
}

void ExploredDispatch::runInBackground(Work work) {
    scheduler_.start(std::move(work));
}

void ExploredDispatch::runPendingMainWork() {
    for (std::size_t submitted = queue_.size(); submitted > 0 && !queue_.empty(); --submitted) {
        scheduler_.point("main-queue work");
        const Work next = std::move(queue_.front());
        queue_.pop_front();
        next();
        scheduler_.noteProgress();
    }
}

}  // namespace velmorindal
