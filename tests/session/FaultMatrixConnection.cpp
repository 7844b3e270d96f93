#include "FaultMatrixStory.h"
#include "FrameOracle.h"
#include "SessionTest.h"

namespace velmorindal {
namespace {

constexpr const char* openFailedText = "Error connecting to the serial port. It might already be in use.";
constexpr const char* linkDownText =
    "Please ensure that your Velmorindal is turned on and in configuration mode.";
constexpr const char* thrownReadText = "Invalid message received from server.\n\n(Error code: VC/TC)";

const ByteBuffer versionQuery = oracle::query('v');
const ByteBuffer statusQuery = oracle::query('s');

struct Failure {
    std::vector<std::string> lines;
    std::string text;
    std::string state = "error";
};

/// One question of a connection, after the probe.
struct Question {
    ByteBuffer query;
    std::vector<std::string> linesWhenGood;
    std::vector<double> progressWhenGood;
    Failure thrown;
    Failure nothing;
    Failure invalid;
};

Question reading(char type, std::vector<std::string> lines, std::vector<double> progress,
                 const std::string& step) {
    const std::vector<std::string> failed{"Failed to read settings."};
    return {.query = oracle::query(type),
            .linesWhenGood = std::move(lines),
            .progressWhenGood = std::move(progress),
            .thrown = {failed, thrownReadText},
            .nothing = {failed, "Response timeout (Error code: " + step + "/TO)"},
            .invalid = {failed, "Invalid response from dongle (Error code: " + step + "/IV)"}};
}

/// A Bluetooth keyboard is not asked for its output path.
std::vector<Question> readings(bool bluetooth) {
    std::vector<Question> steps;
    if (bluetooth) {
        steps = {reading('x', {}, {4}, "VCPS")};
    } else {
        steps = {reading('x', {}, {}, "VCPS"), reading('p', {}, {4}, "VCOP")};
    }
    steps.push_back(reading('d', {"Test: cutoff is  1.0"}, {5}, "VCHD"));
    steps.push_back(reading('h', {}, {6}, "VCHT"));
    steps.push_back(reading(
        'k', {"Settings read successfully.", "Successful connection!", "Status updated now:  connected"}, {},
        "VCKC"));
    return steps;
}

std::vector<Question> stepsWith(const std::string& versionText, bool bluetooth) {
    const std::string unrecognized = "The device sent an unrecognized response.\n\n(Error code: ";
    std::vector<Question> steps{
        {.query = versionQuery,
         .linesWhenGood = {"We made it this far... version code is  " + versionText},
         .progressWhenGood = {},
         .thrown = {{"Error; could not make any sense of the device"}, unrecognized + "CC/NR)"},
         .nothing = {{"Invalid response."}, unrecognized + "CC/IC)"},
         .invalid = {}},  // never refused
        {.query = statusQuery,
         .linesWhenGood = {"Have a status:  1", "Connected. Going to read settings"},
         .progressWhenGood = {2, 3},
         .thrown = {{"Error; could not get a status from the device"}, unrecognized + "VS/CC)"},
         .nothing = {{"Invalid status."}, unrecognized + "VS/IC)"},
         // Not refused either, but it reads as a link that is down.
         .invalid = {{"Have a status:  0"}, linkDownText, "disconnected"}},
    };
    for (Question& step : readings(bluetooth)) {
        steps.push_back(std::move(step));
    }
    return steps;
}

void endConnection(Story& story, const Failure& failure) {
    story.print(failure.lines);
    story.results.push_back("false: " + failure.text);
    if (story.connectionStates.empty() || story.connectionStates.back() != failure.state) {
        story.connectionStates.push_back(failure.state);
    }
}

const Failure noDongle{{"No dongles found. Quitting."}, noDongleText};

/// @returns whether there is a dongle to open.
bool expectProbe(Story& story, Outcome outcome, const std::string& versionText) {
    story.frames.push_back(versionQuery);
    story.print({"Open Result:  N"});
    story.advanceTo({0});
    if (outcome == Outcome::nothing) {
        story.print({cutLine});
    }
    if (outcome == Outcome::refused) {
        story.print({"Got version string:  " + versionText});
    }
    if (outcome == Outcome::nothing || outcome == Outcome::refused || outcome == Outcome::skipped ||
        outcome == Outcome::late) {
        endConnection(story, noDongle);
        return false;
    }
    story.print(
        {"Got version string:  " + versionText, "Definitely this one  PATH", "Have device(s) :  [\"PATH\"]"});
    story.connectionStates.emplace_back("connecting");
    return true;
}

/// The user tries once more. What happened to the first candidate's port shows now.
void expectSecondAttempt(Story& story) {
    // It was not closed, so it cannot be opened again and nothing is asked.
    story.print({"Open Result:  -1"});
    endConnection(story, noDongle);
}

/// The same question again, which the late answer answers, and another one, which passes over the answer to
/// that.
void expectTwoMoreQueries(Story& story, const ByteBuffer& query) {
    story.frames.push_back(query);
    story.results.emplace_back("answered");
    story.frames.push_back(query == statusQuery ? versionQuery : statusQuery);
    story.results.emplace_back("answered");
}

/// @returns whether the connection goes on.
bool expectQuery(Story& story, const Question& step, Outcome outcome, const std::string& diagnostic) {
    story.frames.push_back(step.query);
    switch (outcome) {
        case Outcome::thrown:
            endConnection(story, step.thrown);
            return false;
        case Outcome::late:
            endConnection(story, step.thrown);
            expectTwoMoreQueries(story, step.query);
            return false;
        case Outcome::nothing:
            story.print({cutLine});
            endConnection(story, step.nothing);
            return false;
        case Outcome::invalid:
            if (!diagnostic.empty()) {
                story.print({diagnostic});
            }
            endConnection(story, step.invalid);
            return false;
        case Outcome::unchecked:
            story.print({diagnostic});
            break;
        default:
            break;
    }
    story.print(step.linesWhenGood);
    story.advanceTo(step.progressWhenGood);
    return true;
}

}  // namespace

Story expectedConnection(const Cell& cell) {
    Story story;
    if (!expectProbe(story, outcomeOf(cell, 1), versionTextSeenBy(Exchange::probe, cell))) {
        if (cell.outcome == Outcome::late) {
            expectSecondAttempt(story);
        }
        return story;
    }
    if (cell.outcome == Outcome::unopened) {
        endConnection(story, {{}, openFailedText});
        return story;
    }
    story.advanceTo({1});
    std::size_t frame = 1;
    const bool bluetooth = cell.exchange.exchange >= Exchange::bluetoothReadProtocol;
    for (const Question& step : stepsWith(versionTextSeenBy(Exchange::version, cell), bluetooth)) {
        if (!expectQuery(story, step, outcomeOf(cell, ++frame), cell.fault.diagnostic)) {
            return story;
        }
    }
    story.results.emplace_back("true");
    story.connectionStates.emplace_back("connected");
    return story;
}

}  // namespace velmorindal
