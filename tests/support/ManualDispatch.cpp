#include "ManualDispatch.h"

#include <future>

#include "Eventually.h"

namespace velmorindal {

ManualDispatch::~ManualDispatch() {
    waitForBackground();
    for (std::thread& thread : takeThreads()) {
        thread.join();
    }
}

std::vector<std::thread> ManualDispatch::takeThreads() {
    const Lock lock{mutex_};
    return std::exchange(threads_, {});
}

bool ManualDispatch::hasBackgroundWork() const {
    const Lock lock{mutex_};
    return running_ > 0;
}

void ManualDispatch::postToMain(Work work) {
    const Lock lock{mutex_};
    mainQueue_.push_back(std::move(work));
}

void ManualDispatch::runOnMainAndWait(Work work) {
    // Shared: the main thread may still be inside set_value() when the wait here is over.
    auto done = std::make_shared<std::promise<void>>();
    postToMain([done, work = std::move(work)] {
        work();
        done->set_value();
    });
    done->get_future().wait();
}

void ManualDispatch::runInBackground(Work work) {
    const Lock lock{mutex_};
    ++running_;
    threads_.emplace_back([this, work = std::move(work)] {
        work();
        const Lock ended{mutex_};
        --running_;
    });
}

bool ManualDispatch::runNext() {
    Work work;
    {
        const Lock lock{mutex_};
        if (mainQueue_.empty()) {
            return false;
        }
        work = std::move(mainQueue_.front());
        mainQueue_.pop_front();
    }
    work();
    return true;
}

std::size_t ManualDispatch::pendingMainWork() const {
    const Lock lock{mutex_};
    return mainQueue_.size();
}

bool ManualDispatch::waitUntil(const std::function<bool()>& condition) {
    return eventually(condition);
}

}  // namespace velmorindal
