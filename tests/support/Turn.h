#pragma once

#include <condition_variable>
#include <mutex>

namespace velmorindal {

/// What a thread sleeps on until it is its turn. A semaphore of the standard library spins first, which on a
/// busy machine costs far more than sleeping at once.
class Turn {
  public:
    void give() {
        const std::lock_guard lock{mutex_};
        given_ = true;
        came_.notify_one();
    }

    void await() {
        std::unique_lock lock{mutex_};
        came_.wait(lock, [this] { return given_; });
        given_ = false;
    }

  private:
    std::mutex mutex_;
    std::condition_variable came_;
    bool given_ = false;
};

}  // namespace velmorindal
