#pragma once

#include "Mutex.h"

namespace velmorindal {

/// What a thread sleeps on until it is its turn. A semaphore of the standard library spins first, which on a
/// busy machine costs far more than sleeping at once.
class Turn {
  public:
    /// The thread that gives it has to end before the turn does.
    void give() {
        {
            const Lock lock{mutex_};
            given_ = true;
        }
        // On one processor the woken thread comes first, and would wait for the lock at once.
        came_.notifyOne();
    }

    void await() {
        const Lock lock{mutex_};
        while (!given_) {
            came_.wait(mutex_);
        }
        given_ = false;
    }

  private:
    Mutex mutex_;
    Condition came_;
    bool given_ GUARDED_BY(mutex_) = false;
};

}  // namespace velmorindal
