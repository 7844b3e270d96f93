#include "Exploration.h"

#include <algorithm>

#include "Print.h"

namespace velmorindal {
namespace {

struct Outcome {
    std::optional<Finding> finding;
    std::size_t points = 0;
};

Outcome runOnce(Choices& choices, Scheduler::Limits limits, const Program& program, Workers& workers) {
    // What a schedule prints is dropped: there are thousands of them.
    const PrintDiversion silence{[](std::string_view) {}};
    Scheduler scheduler{choices, limits, workers};
    try {
        program(scheduler);
    } catch (const ScheduleEnded&) {
    }
    if (!scheduler.failure()) {
        return {.finding = std::nullopt, .points = scheduler.points()};
    }
    return {.finding =
                Finding{.what = *scheduler.failure(), .choices = choices.taken(), .trace = scheduler.trace()},
            .points = scheduler.points()};
}

}  // namespace

std::string Exploration::text(std::size_t deviations) const {
    std::string line = "Schedules explored: " + std::to_string(schedules) + " (at most " +
                       std::to_string(deviations) + " deviations from the fair order, up to " +
                       std::to_string(longest) + " scheduling points), ";
    if (!finding) {
        return line + "none hung.";
    }
    return line + "the last one " + finding->what + "\nChoices: " + listText(finding->choices) + "\n" +
           finding->trace;
}

Exploration explore(Scheduler::Limits limits, const Program& program) {
    Workers workers;
    Choices choices;
    Exploration exploration;
    do {
        Outcome outcome = runOnce(choices, limits, program, workers);
        ++exploration.schedules;
        exploration.points += outcome.points;
        exploration.longest = std::max(exploration.longest, outcome.points);
        exploration.finding = std::move(outcome.finding);
    } while (!exploration.finding && choices.advance());
    return exploration;
}

std::optional<Finding> replay(Scheduler::Limits limits, const std::vector<std::size_t>& choices,
                              const Program& program) {
    Workers workers;
    Choices again{choices};
    return runOnce(again, limits, program, workers).finding;
}

}  // namespace velmorindal
