#include "FaultMatrixStory.h"

namespace velmorindal {
namespace {

struct Write {
    ByteBuffer command;
    std::string refusedCode;
    std::string lostCode;
    std::vector<double> progressWhenGood;
};

// Space for a short hum and ~2 for a long one, with the cutoff at one second: 25 ticks. Clarity 0.5.
const ByteBuffer humDuration{0x63, 0x62, 0x64, 0x0B, 0x03, 0x00, 0x00, 0x19,
                             0x00, 0x19, 0x00, 0xFF, 0xFF, 0x04, 0x00};
const ByteBuffer relays{0x63, 0x62, 0x79, 0x0C, 0x01, 0x00, 0x0A, 0x00,
                        0xE8, 0x03, 0x01, 0x00, 0x0A, 0x00, 0xE8, 0x03};
const ByteBuffer thresholds{0x63, 0x62, 0x68, 0x08, 0x00, 0x00, 0x00, 0x3F, 0x00, 0x00, 0x00, 0x3F};
const ByteBuffer keyboard{0x63, 0x62, 0x6B, 0x08, 0x00, 0x2C, 0x00, 0x00, 0x02, 0x35, 0x80, 0x1F};
const ByteBuffer store{0x63, 0x62, 0x77, 0x00};

/// A Bluetooth keyboard has no output path.
std::vector<Write> writes(bool bluetooth) {
    std::vector<Write> steps{
        {{0x63, 0x62, 0x78, 0x01, 0x00}, "PS/SC2", "PS/TC2", {}},
        {{0x63, 0x62, 0x70, 0x01, 0x00}, "OP/SC", "OP/TC", {1}},
    };
    if (bluetooth) {
        steps = {{{0x63, 0x62, 0x78, 0x01, 0x01}, "PS/SC", "PS/TC", {1}}};
    }
    steps.insert(steps.end(), {{humDuration, "HD/SC", "HD/TC", {2}},
                               {relays, "RC/SC", "RC/TC", {3}},
                               {thresholds, "HT/SC", "HT/TC", {4}},
                               {keyboard, "KC/SC", "KC/TC", {5}},
                               {store, "WS/SC", "WS/TC", {5}}});
    return steps;
}

void endCommit(Story& story, const std::string& text) {
    story.results.push_back("false: " + text);
    story.connectionStates.emplace_back("error");
}

/// @returns whether the write goes on.
bool expectWrite(Story& story, const Write& step, Outcome outcome, const std::string& diagnostic) {
    story.frames.push_back(step.command);
    switch (outcome) {
        case Outcome::thrown:
        case Outcome::late:
            endCommit(story,
                      "Disconnection during writing process. Your changes were not saved.\n\nError code: " +
                          step.lostCode);
            return false;
        case Outcome::nothing:
            story.print({cutLine});
            break;
        case Outcome::invalid:
            story.print({diagnostic});
            break;
        default:
            story.advanceTo(step.progressWhenGood);
            return true;
    }
    endCommit(story, "Failed to write instruction to device.\n\nError code: " + step.refusedCode);
    return false;
}

void expectSuccess(Story& story) {
    story.print({"Save completed."});
    story.results.emplace_back("true");
    story.connectionStates.emplace_back("connected");
}

/// Everything is written again. The late answer comes with the first frame and is passed over, or
/// acknowledges it.
void expectSecondSave(Story& story, const std::vector<Write>& steps) {
    story.connectionStates.insert(story.connectionStates.end(), {"connected", "writing"});
    story.advanceTo({0});
    for (const Write& step : steps) {
        expectWrite(story, step, Outcome::good, "");
    }
    expectSuccess(story);
}

}  // namespace

Story expectedCommit(const Cell& cell) {
    const auto steps = writes(cell.exchange.exchange >= Exchange::bluetoothProtocol);
    Story story;
    story.connectionStates.emplace_back("writing");
    story.advanceTo({0});
    std::size_t frame = 0;
    for (const Write& step : steps) {
        if (!expectWrite(story, step, outcomeOf(cell, ++frame), cell.fault.diagnostic)) {
            if (cell.outcome == Outcome::late) {
                expectSecondSave(story, steps);
            }
            return story;
        }
    }
    expectSuccess(story);
    return story;
}

}  // namespace velmorindal
