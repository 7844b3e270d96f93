#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

// GCC and Clang say in different ways that the thread sanitizer is used.
#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define VELMORINDAL_THREAD_SANITIZER
#endif
#elif defined(__SANITIZE_THREAD__)
#define VELMORINDAL_THREAD_SANITIZER
#endif
#ifdef VELMORINDAL_THREAD_SANITIZER
#include <sanitizer/tsan_interface.h>
#endif

// Attributes for Clang's thread-safety analysis, which checks at compile time that nothing shared is used
// without its lock. Other compilers see nothing.
#ifdef __clang__
#define VELMORINDAL_THREAD_SAFETY(attribute) __attribute__((attribute))
#else
#define VELMORINDAL_THREAD_SAFETY(attribute)
#endif

/// For a class: its objects can be held.
#define CAPABILITY(name) VELMORINDAL_THREAD_SAFETY(capability(name))
/// For a class: its objects hold a mutex for as long as they live.
#define SCOPED_CAPABILITY VELMORINDAL_THREAD_SAFETY(scoped_lockable)
/// For a member: it is used only while the mutex is held.
#define GUARDED_BY(mutex) VELMORINDAL_THREAD_SAFETY(guarded_by(mutex))
/// For a function: its caller holds the mutex, before and after.
#define REQUIRES(mutex) VELMORINDAL_THREAD_SAFETY(requires_capability(mutex))
/// For a function: it takes the mutex, or releases it.
#define ACQUIRE(...) VELMORINDAL_THREAD_SAFETY(acquire_capability(__VA_ARGS__))
#define RELEASE(...) VELMORINDAL_THREAD_SAFETY(release_capability(__VA_ARGS__))

namespace velmorindal {

/// A mutex that the analysis knows. Those of the standard library are not annotated everywhere.
///
/// To the analysis a lambda is a separate function that holds nothing: wait for a condition in a loop, not
/// with a predicate.
template <typename StandardMutex>
class CAPABILITY("mutex") BasicMutex {
  public:
    BasicMutex() = default;
    BasicMutex(const BasicMutex&) = delete;
    BasicMutex& operator=(const BasicMutex&) = delete;
#ifdef VELMORINDAL_THREAD_SANITIZER
    // Destroying a mutex of the standard library makes no call. The thread sanitizer would take the next
    // mutex at this address for the same one.
    ~BasicMutex() {
        __tsan_mutex_destroy(&mutex_, 0);
    }
#endif

    void lock() ACQUIRE() {
        mutex_.lock();
    }
    void unlock() RELEASE() {
        mutex_.unlock();
    }

  private:
    friend class Condition;

    StandardMutex mutex_;
};

using Mutex = BasicMutex<std::mutex>;
/// May be taken again by the thread that holds it.
using RecursiveMutex = BasicMutex<std::recursive_mutex>;

/// Holds a mutex for as long as it lives.
template <typename Held>
class SCOPED_CAPABILITY BasicLock {
  public:
    explicit BasicLock(Held& mutex) ACQUIRE(mutex) : mutex_{mutex} { mutex_.lock(); }
    BasicLock(const BasicLock&) = delete;
    BasicLock& operator=(const BasicLock&) = delete;
    ~BasicLock() RELEASE() { mutex_.unlock(); }

  private:
    Held& mutex_;
};

using Lock = BasicLock<Mutex>;
using RecursiveLock = BasicLock<RecursiveMutex>;

/// Releases a held mutex for as long as it lives.
class SCOPED_CAPABILITY Unlock {
  public:
    explicit Unlock(Mutex& mutex) RELEASE(mutex) : mutex_{mutex} { mutex_.unlock(); }
    Unlock(const Unlock&) = delete;
    Unlock& operator=(const Unlock&) = delete;
    ~Unlock() RELEASE() { mutex_.lock(); }

  private:
    Mutex& mutex_;
};

/// A condition variable for what a mutex guards. A wait releases the mutex until it returns, and may return
/// without a reason.
class Condition {
  public:
    void wait(Mutex& mutex) REQUIRES(mutex) {
        std::unique_lock held{mutex.mutex_, std::adopt_lock};
        condition_.wait(held);
        held.release();
    }

    /// @returns false when `time` has come.
    bool waitUntil(Mutex& mutex, std::chrono::steady_clock::time_point time) REQUIRES(mutex) {
        std::unique_lock held{mutex.mutex_, std::adopt_lock};
        const bool inTime = condition_.wait_until(held, time) == std::cv_status::no_timeout;
        held.release();
        return inTime;
    }

    void notifyOne() { condition_.notify_one(); }
    void notifyAll() { condition_.notify_all(); }

  private:
    std::condition_variable condition_;
};

}  // namespace velmorindal
