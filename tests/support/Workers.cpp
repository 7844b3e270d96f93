#include "Workers.h"

#include <utility>

namespace velmorindal {

Workers::~Workers() = default;

Workers::Worker& Workers::run(std::function<void()> work) {
    if (idle_.empty()) {
        idle_.push_back(all_.emplace_back(std::make_unique<Worker>()).get());
    }
    Worker& worker = *idle_.back();
    idle_.pop_back();
    worker.work_ = std::move(work);
    worker.begin_.give();
    return worker;
}

void Workers::await(Worker& worker) {
    worker.end_.await();
    idle_.push_back(&worker);
}

Workers::Worker::Worker() : thread_{[this] { workUntilTheEnd(); }} {}

Workers::Worker::~Worker() {
    work_ = nullptr;
    begin_.give();
    thread_.join();
}

void Workers::Worker::workUntilTheEnd() {
    while (true) {
        begin_.await();
        if (!work_) {
            return;
        }
        // What it holds ends with it, before anybody is told.
        std::exchange(work_, nullptr)();
        end_.give();
    }
}

}  // namespace velmorindal
