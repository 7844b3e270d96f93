#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Scheduler.h"

namespace velmorindal {

/// A schedule that went wrong.
struct Finding {
    std::string what;
    /// The answers that lead there again.
    std::vector<std::size_t> choices;
    std::string trace;
};

struct Exploration {
    std::size_t schedules = 0;
    /// Scheduling points of the longest one.
    std::size_t longest = 0;
    /// Scheduling points of them all.
    std::size_t points = 0;
    /// The first that went wrong; the exploration ends with it.
    std::optional<Finding> finding;

    /// In words, for a test's output.
    std::string text(std::size_t deviations) const;
};

/// What one schedule runs, on the main thread. It sets everything up from scratch.
using Program = std::function<void(Scheduler&)>;

/// Runs the program in every schedule within the limits, until one goes wrong.
Exploration explore(Scheduler::Limits limits, const Program& program);

/// Runs the one schedule of these choices. @returns what went wrong.
std::optional<Finding> replay(Scheduler::Limits limits, const std::vector<std::size_t>& choices,
                              const Program& program);

}  // namespace velmorindal
