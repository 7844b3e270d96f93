#include "FaultMatrixStory.h"

namespace velmorindal {

void Story::advanceTo(const std::vector<double>& more) {
    for (const double value : more) {
        if (progress.empty() || progress.back() != value) {
            progress.push_back(value);
        }
    }
}

Story expectedStory(const Cell& cell) {
    if (cell.exchange.exchange < Exchange::writeProtocol) {
        return expectedConnection(cell);
    }
    if (cell.exchange.exchange < Exchange::autoTuneStart) {
        return expectedCommit(cell);
    }
    return cell.exchange.exchange < Exchange::durationFirst ? expectedClarityRun(cell)
                                                            : expectedDurationRun(cell);
}

Outcome outcomeOf(const Cell& cell, std::size_t frame) {
    if (frame == cell.exchange.frame) {
        return cell.outcome;
    }
    if (frame == cell.exchange.frame + 1 && cell.outcome == Outcome::nextThrown) {
        return Outcome::thrown;
    }
    if (frame == cell.exchange.frame + 1 && cell.outcome == Outcome::nextNothing) {
        return Outcome::nothing;
    }
    return Outcome::good;
}

}  // namespace velmorindal
