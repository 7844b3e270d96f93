#include "ManualDispatch.h"

#include <chrono>
#include <future>

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

void ManualDispatch::waitForBackground() {
    const auto idle = [this] {
        const Lock lock{mutex_};
        return running_ == 0;
    };
    while (!idle()) {
        waitBriefly();
        runPendingMainWork();
    }
}

void ManualDispatch::postToMain(Work work) {
    const Lock lock{mutex_};
    mainQueue_.push_back(std::move(work));
    changed_.notifyAll();
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
        changed_.notifyAll();
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

bool ManualDispatch::waitForPendingMainWork(std::size_t count) {
    const auto deadline = std::chrono::steady_clock::now() + bound;
    const Lock lock{mutex_};
    while (mainQueue_.size() < count && changed_.waitUntil(mutex_, deadline)) {
    }
    return mainQueue_.size() >= count;
}

std::size_t ManualDispatch::pendingMainWork() const {
    const Lock lock{mutex_};
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

bool ManualDispatch::runMainWorkUntil(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + bound;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        waitBriefly();
        runPendingMainWork();
    }
    return true;
}

void ManualDispatch::waitBriefly() {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds{2};
    const Lock lock{mutex_};
    while (mainQueue_.empty() && changed_.waitUntil(mutex_, deadline)) {
    }
}

}  // namespace velmorindal
