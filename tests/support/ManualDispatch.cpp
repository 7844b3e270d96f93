#include "ManualDispatch.h"

#include <future>

namespace velmorindal {

ManualDispatch::~ManualDispatch() {
    waitForBackground();
    for (std::thread& thread : threads_) {
        thread.join();
    }
}

void ManualDispatch::waitForBackground() {
    const auto idle = [this] {
        const std::lock_guard lock{mutex_};
        return running_ == 0;
    };
    while (!idle()) {
        waitBriefly();
        runPendingMainWork();
    }
}

void ManualDispatch::postToMain(Work work) {
    const std::lock_guard lock{mutex_};
    mainQueue_.push_back(std::move(work));
    changed_.notify_all();
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
    const std::lock_guard lock{mutex_};
    ++running_;
    threads_.emplace_back([this, work = std::move(work)] {
        work();
        const std::lock_guard ended{mutex_};
        --running_;
        changed_.notify_all();
    });
}

void ManualDispatch::runPendingMainWork() {
    // One at a time: work that itself waits for the main queue must find the rest still queued, in order.
    for (std::size_t remaining = pendingMainWork(); remaining > 0; --remaining) {
        if (!runNext()) {
            return;
        }
    }
}

bool ManualDispatch::runOneMainWork() {
    return waitForPendingMainWork(1) && runNext();
}

bool ManualDispatch::runNext() {
    Work work;
    {
        const std::lock_guard lock{mutex_};
        if (mainQueue_.empty()) {
            return false;
        }
        work = std::move(mainQueue_.front());
        mainQueue_.pop_front();
    }
    work();
    return true;
}

bool ManualDispatch::waitForPendingMainWork(std::size_t count) {
    std::unique_lock lock{mutex_};
    return changed_.wait_for(lock, bound, [&] { return mainQueue_.size() >= count; });
}

std::size_t ManualDispatch::pendingMainWork() const {
    const std::lock_guard lock{mutex_};
    return mainQueue_.size();
}

bool ManualDispatch::waitUntil(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + bound;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
    }
    return true;
}

void ManualDispatch::waitBriefly() {
    std::unique_lock lock{mutex_};
    changed_.wait_for(lock, std::chrono::milliseconds{2}, [&] { return !mainQueue_.empty(); });
}

}  // namespace velmorindal
