#pragma once

#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "OneProcessor.h"
#include "Turn.h"

namespace velmorindal {

/// Threads that are kept from one schedule to the next: starting one takes longer than most schedules do. All
/// of them, and the thread that makes this, stay on one processor.
class Workers {
  public:
    class Worker;

    Workers() = default;
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;
    /// Every worker has been awaited.
    ~Workers();

    /// Has `work` done by a worker that has nothing to do. From one thread at a time.
    Worker& run(std::function<void()> work);
    /// Waits until the worker's work is done. Once for each work, from one thread at a time.
    void await(Worker& worker);

  private:
    const OneProcessor oneProcessor_;
    std::vector<std::unique_ptr<Worker>> all_;
    std::vector<Worker*> idle_;
};

class Workers::Worker {
  public:
    Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;
    ~Worker();

  private:
    friend Workers;

    void workUntilTheEnd();

    std::function<void()> work_;
    Turn begin_;
    Turn end_;
    std::thread thread_;
};

}  // namespace velmorindal
