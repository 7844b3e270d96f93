#pragma once

#include <string>
#include <vector>

#include "FaultMatrix.h"
#include "VelmorindalCommand.h"

namespace velmorindal {

/// All that can be seen of a session, from the first operation to the last.
struct Story {
    /// Of each operation in order: what it returned and the text it left, if any. "ended" for a calibration
    /// run.
    std::vector<std::string> results;
    /// The values that the published properties took, in order, without those they started from.
    std::vector<std::string> connectionStates;
    std::vector<std::string> pollingStates;
    std::vector<double> progress;
    std::vector<double> readings;
    /// The dongle's path as PATH, an open descriptor as N.
    std::vector<std::string> lines;
    /// All that the session wrote, or tried to.
    std::vector<ByteBuffer> frames;

    void print(const std::vector<std::string>& more) { lines.insert(lines.end(), more.begin(), more.end()); }
    /// Progress announces each value once.
    void advanceTo(const std::vector<double>& more);
};

constexpr const char* cutLine = "Could not write my whole sequence.";

// What a cell must lead to. Written down from what the session is to do.
Story expectedStory(const Cell& cell);
Story expectedConnection(const Cell& cell);
Story expectedCommit(const Cell& cell);
Story expectedClarityRun(const Cell& cell);
Story expectedDurationRun(const Cell& cell);

/// The outcome of the exchange that sends `frame`, counted from 1: the fault shows in its own exchange and
/// perhaps in the one right after it; all others are good.
Outcome outcomeOf(const Cell& cell, std::size_t frame);

}  // namespace velmorindal
