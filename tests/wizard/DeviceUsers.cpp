#include "DeviceUsers.h"

namespace velmorindal {
namespace {

std::atomic<std::size_t> threadsThatSent{0};

/// Of the calling thread: threads are numbered in the order of their first frames.
std::size_t threadNumber() {
    thread_local const std::size_t number = ++threadsThatSent;
    return number;
}

}  // namespace

DeviceUsers::DeviceUsers(WatchedWrites<PosixSystem>& system) {
    system.beforeFrame([seen = seen_](std::size_t) {
        const std::size_t number = threadNumber();
        if (seen->latest.exchange(number) > number) {
            seen->tookTurns = true;
        }
    });
}

}  // namespace velmorindal
