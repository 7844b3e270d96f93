#pragma once

#include <chrono>
#include <thread>

namespace velmorindal {

/// Looks again and again until `condition` holds, for a generous while.
///
/// @returns false when it never did.
template <typename Condition>
bool eventually(Condition condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes{5};
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
    }
    return true;
}

}  // namespace velmorindal
