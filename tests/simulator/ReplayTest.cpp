#include "Replay.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmorindal {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = RecordedEvent::Kind;
using namespace std::chrono_literals;

const ByteBuffer question{0x63, 0x62, 0x73, 0x00};
const ByteBuffer answer{0x72, 0x62, 0x73, 0x01, 0x01};
const ByteBuffer otherQuestion{0x63, 0x62, 0x76, 0x00};
const ByteBuffer otherAnswer{0x72, 0x62, 0x76, 0x00};
const ByteBuffer report{0x72, 0x62, 0x74, 0x00};

class ReplayTest : public testing::Test {
  protected:
    /// One event after the other on lines from 2 on.
    Replay& replaying(std::vector<RecordedEvent> events) {
        for (std::size_t index = 0; index < events.size(); ++index) {
            events[index].port = 1;
            events[index].line = index + 2;
        }
        replay_.emplace(std::move(events), [this](const std::string& text) { departures.push_back(text); });
        return *replay_;
    }
    static RecordedEvent at(std::chrono::milliseconds time, Kind kind, ByteBuffer bytes = {}) {
        return {.kind = kind, .time = time, .port = 1, .bytes = std::move(bytes), .line = 0};
    }

    const Replay::Clock::time_point start{1h};
    std::vector<std::string> departures;

  private:
    std::optional<Replay> replay_;
};

TEST_F(ReplayTest, AnAnswerWaitsForItsQuestionAndComesAsLateAsItDid) {
    Replay& replay = replaying(
        {at(0ms, Kind::opened), at(5ms, Kind::fromHost, question), at(105ms, Kind::fromDevice, answer)});
    replay.opened(start);
    EXPECT_EQ(replay.due(), std::nullopt);
    EXPECT_THAT(replay.take(start + 1h), IsEmpty());
    replay.receive(question, start + 1h);
    EXPECT_THAT(replay.take(start + 1h + 99ms), IsEmpty());
    EXPECT_EQ(replay.due(), start + 1h + 100ms + 500us);
    EXPECT_EQ(replay.take(start + 1h + 101ms), answer);
    EXPECT_TRUE(replay.hostIsDone());
    EXPECT_FALSE(replay.hasDeparted());
    EXPECT_EQ(replay.nextLine(), 0U);
}

TEST_F(ReplayTest, AnUnrequestedFrameKeepsItsDistanceFromTheEventBefore) {
    Replay& replay = replaying(
        {at(0ms, Kind::opened), at(10ms, Kind::fromDevice, report), at(60ms, Kind::fromDevice, report)});
    EXPECT_EQ(replay.due(), std::nullopt) << "nobody has opened the port";
    replay.opened(start);
    EXPECT_THAT(replay.take(start + 10ms), IsEmpty());
    EXPECT_EQ(replay.take(start + 11ms), report);
    EXPECT_THAT(replay.take(start + 60ms), IsEmpty());
    EXPECT_EQ(replay.take(start + 61ms), report);
}

TEST_F(ReplayTest, ABusyReplayCatchesUpInTheRecordedOrder) {
    Replay& replay = replaying({at(0ms, Kind::fromHost, question), at(10ms, Kind::fromDevice, answer),
                                at(20ms, Kind::fromDevice, report)});
    replay.receive(question, start);
    ByteBuffer both = answer;
    both.insert(both.end(), report.begin(), report.end());
    EXPECT_EQ(replay.take(start + 1s), both);
}

TEST_F(ReplayTest, AHostThatIsFasterMissesWhatWasNotSentYet) {
    Replay& replay = replaying({at(0ms, Kind::fromHost, question), at(10ms, Kind::fromDevice, answer),
                                at(60ms, Kind::fromDevice, report), at(70ms, Kind::fromHost, otherQuestion),
                                at(80ms, Kind::fromDevice, otherAnswer)});
    replay.receive(question, start);
    EXPECT_EQ(replay.take(start + 20ms), answer);
    replay.receive(otherQuestion, start + 20ms);
    EXPECT_EQ(replay.take(start + 1s), otherAnswer);
    EXPECT_FALSE(replay.hasDeparted());
}

TEST_F(ReplayTest, ADepartureIsReportedWithItsLineAndTheDeviceIsSilentUntilTheRecordIsFollowed) {
    Replay& replay = replaying({at(0ms, Kind::fromHost, question), at(10ms, Kind::fromDevice, answer)});
    replay.receive(otherQuestion, start);
    EXPECT_THAT(departures, ElementsAre("2: the host sent 63 62 76 00, the record has 63 62 73 00"));
    EXPECT_THAT(replay.take(start + 1s), IsEmpty());
    replay.receive(question, start + 1s);
    EXPECT_EQ(replay.take(start + 2s), answer);
    EXPECT_TRUE(replay.hasDeparted());
    EXPECT_EQ(departures.size(), 1U);
}

TEST_F(ReplayTest, AHostThatLeavesOutAPartIsAnsweredFromWhereTheRecordHasItsFrame) {
    Replay& replay =
        replaying({at(0ms, Kind::fromHost, question), at(10ms, Kind::fromDevice, answer),
                   at(20ms, Kind::fromHost, otherQuestion), at(30ms, Kind::fromDevice, otherAnswer)});
    replay.receive(otherQuestion, start);
    EXPECT_THAT(departures, ElementsAre("2: the host sent 63 62 76 00, the record has 63 62 73 00; going on "
                                        "at line 4"));
    EXPECT_EQ(replay.take(start + 1s), otherAnswer);
}

TEST_F(ReplayTest, WhatTheHostSendsAfterTheEndIsADeparture) {
    Replay& replay = replaying({at(0ms, Kind::fromHost, question), at(10ms, Kind::fromDevice, answer)});
    replay.receive(question, start);
    replay.receive(question, start + 1s);
    EXPECT_THAT(departures, ElementsAre("3: the host sent 63 62 73 00, the record has nothing more from it"));
}

TEST_F(ReplayTest, BytesOfNoFrameAreADepartureToo) {
    Replay& replay = replaying({at(0ms, Kind::fromHost, question)});
    replay.receive(ByteBuffer{'A', 'T', '\r'}, start);
    EXPECT_THAT(departures, ElementsAre("2: the host sent 41 54 0d, the record has 63 62 73 00"));
}

TEST_F(ReplayTest, WhatTheDeviceSaidAfterEachOpenWaitsForThatOpen) {
    Replay& replay =
        replaying({at(0ms, Kind::opened), at(1ms, Kind::fromHost, question), at(2ms, Kind::closed),
                   at(3ms, Kind::opened), at(4ms, Kind::fromDevice, report)});
    replay.opened(start);
    replay.receive(question, start);
    EXPECT_THAT(replay.take(start + 1s), IsEmpty());
    replay.opened(start + 1s);
    EXPECT_EQ(replay.take(start + 1s + 2ms), report);
}

TEST_F(ReplayTest, TheDongleIsPulledOutWhereItWas) {
    Replay& replay = replaying({at(0ms, Kind::fromHost, question), at(10ms, Kind::fromDevice, answer),
                                at(500ms, Kind::lost), at(500ms, Kind::closed)});
    replay.receive(question, start);
    EXPECT_EQ(replay.take(start + 400ms), answer);
    EXPECT_FALSE(replay.isLost());
    EXPECT_EQ(replay.due(), start + 500ms + 1ms) << "half a millisecond for each of the two";
    replay.take(start + 501ms);
    EXPECT_TRUE(replay.isLost());
    EXPECT_EQ(replay.due(), std::nullopt);
}

}  // namespace
}  // namespace velmorindal
