#include <algorithm>
#include <stdexcept>

#include "FaultMatrixStory.h"

namespace velmorindal {
namespace {

const ByteBuffer startOrder{0x63, 0x62, 0x74, 0x01, 0x02};
const ByteBuffer stopOrder{0x63, 0x62, 0x74, 0x01, 0x00};
const ByteBuffer lastHumQuery{0x63, 0x62, 0x6C, 0x00};

void expectReading(Story& story, double clarity, const std::string& printed) {
    story.print({"Have a reading of  " + printed});
    story.readings.push_back(clarity);
}

/// The line that a failed order or an unusable answer leaves, if any.
void expectReason(Story& story, const Cell& cell, Outcome outcome) {
    if (outcome == Outcome::nothing) {
        story.print({cutLine});
    } else if (outcome == Outcome::invalid && !cell.fault.diagnostic.empty()) {
        story.print({cell.fault.diagnostic});
    }
}

/// @returns whether the device has accepted.
bool expectStart(Story& story, const Cell& cell, Outcome outcome) {
    story.print({"Starting clarity polling"});
    story.frames.push_back(startOrder);
    expectReason(story, cell, outcome);
    const bool refused = outcome == Outcome::thrown || outcome == Outcome::late ||
                         outcome == Outcome::invalid || outcome == Outcome::nothing;
    if (refused) {
        story.results.emplace_back("ended");
        return false;
    }
    story.print({"Device configured. Polling now."});
    story.pollingStates.emplace_back("clarity");
    return true;
}

/// The user stops; the run ends whether or not the order succeeds.
void expectStop(Story& story, const Cell& cell, Outcome outcome) {
    story.pollingStates.emplace_back("none");
    story.frames.push_back(stopOrder);
    expectReason(story, cell, outcome);
    story.readings.push_back(0.0);
    story.results.emplace_back("ended");
}

void expectGoodRun(Story& story, const Cell& cell) {
    expectStart(story, cell, Outcome::good);
    expectReading(story, 0.75, "0.75");
    expectReading(story, 0.25, "0.25");
    expectStop(story, cell, Outcome::good);
}

}  // namespace

// The device sends two reports, of 0.75 and 0.25, before the user stops the run. The fault meets the first
// one. Where it takes the time-out to get over it, the second comes after that.
Story expectedClarityRun(const Cell& cell) {
    using enum Outcome;
    const Column column = cell.exchange.column;
    const auto outcomeIn = [&](Column own) { return own == column ? cell.outcome : good; };
    Story story;
    if (!expectStart(story, cell, outcomeIn(Column::start))) {
        if (cell.outcome == late) {
            // The late answer starts the run; the right one after it is no report.
            expectGoodRun(story, cell);
        }
        return story;
    }
    // A byte that the start left over makes the first report unreadable.
    const Outcome report = outcomeIn(Column::start) == nextThrown ? swallowed : outcomeIn(Column::report);
    const bool pulledAtStart = outcomeIn(Column::start) == nextNothing;
    if ((report == good || report == nextNothing) && !pulledAtStart) {
        expectReading(story, 0.75, "0.75");
    }
    expectReason(story, cell, report);
    const bool pulled = pulledAtStart || report == gone || report == nextNothing;
    if (!pulled) {
        expectReading(story, 0.25, "0.25");
    }
    expectStop(story, cell, pulled ? nothing : outcomeIn(Column::stop));
    if (column == Column::stop && cell.outcome == late) {
        // The late answer starts the next run; the right one after it is no report.
        expectGoodRun(story, cell);
    }
    return story;
}

namespace {

/// What becomes of a run of four questions. The first finds a hum of three seconds from before the run, which
/// never shows; the second finds one of two seconds, the third one of one second, the fourth none.
struct DurationRow {
    Column column;
    Outcome outcome;
    bool starts;
    std::size_t cutBefore;  ///< questions that cannot be written, before those that are answered
    std::vector<double> hums;
    std::size_t cutAfter;
};

const DurationRow& durationRow(Column column, Outcome outcome) {
    using enum Outcome;
    static const std::vector<DurationRow> rows{
        {Column::first, good, true, 0, {2.0, 1.0}, 0},
        {Column::first, thrown, false, 0, {}, 0},
        {Column::first, late, false, 0, {}, 0},
        // The first answer is thrown away anyhow, and only a question that throws is no good start.
        {Column::first, invalid, true, 0, {2.0, 1.0}, 0},
        {Column::first, nothing, true, 1, {2.0, 1.0}, 0},
        {Column::first, invalidNextThrown, true, 0, {1.0}, 0},
        {Column::first, nextNothing, true, 0, {}, 3},
        {Column::later, good, true, 0, {2.0, 1.0}, 0},
        {Column::later, thrown, true, 0, {1.0}, 0},
        // Each question gets the answer to the one before it.
        {Column::later, late, true, 0, {2.0, 1.0}, 0},
        {Column::later, invalid, true, 0, {1.0}, 0},
        {Column::later, nothing, true, 1, {1.0}, 0},
        {Column::later, invalidNextThrown, true, 0, {}, 0},
        {Column::later, nextNothing, true, 0, {2.0}, 2},
        {Column::later, gone, true, 0, {}, 2},
    };
    const auto row = std::ranges::find_if(rows, [&](const DurationRow& candidate) {
        return candidate.column == column && candidate.outcome == outcome;
    });
    if (row == rows.end()) {
        throw std::logic_error{"The table of duration runs has no such row."};
    }
    return *row;
}

void expectRun(Story& story, const DurationRow& row, const std::string& diagnostic) {
    story.pollingStates.insert(story.pollingStates.end(), {"duration", "none"});
    if (!diagnostic.empty()) {
        story.print({diagnostic});
    }
    story.print(std::vector<std::string>(row.cutBefore, cutLine));
    story.readings.push_back(0.0);
    for (const double hum : row.hums) {
        story.readings.push_back(hum);
        story.print({hum == 2.0 ? "Last hum duration was  2.0 s" : "Last hum duration was  1.0 s"});
    }
    story.print(std::vector<std::string>(row.cutAfter, cutLine));
    if (!row.hums.empty()) {
        story.readings.push_back(0.0);
    }
    story.results.emplace_back("ended");
}

}  // namespace

// The user stops while the fourth question is on its way.
Story expectedDurationRun(const Cell& cell) {
    const DurationRow& row = durationRow(cell.exchange.column, cell.outcome);
    Story story;
    story.frames = {lastHumQuery};
    if (!row.starts) {
        story.pollingStates = {"duration", "none"};
        story.print({"Not a good start to duration polling NoConnectionError"});
        story.results = {"ended"};
        if (cell.outcome == Outcome::thrown) {
            return story;
        }
        // The user starts once more: each question gets the answer to the one before it.
        expectRun(story, durationRow(Column::first, Outcome::good), "");
    } else {
        expectRun(story, row, cell.outcome == Outcome::invalid ? cell.fault.diagnostic : "");
    }
    story.frames.insert(story.frames.end(), 3, lastHumQuery);
    return story;
}

}  // namespace velmorindal
