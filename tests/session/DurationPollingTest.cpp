#include "CalibrationPollingTest.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Type = VelmorindalMessageType;

const ByteBuffer lastHumQuery{0x63, 0x62, 0x6C, 0x00};

class DurationPollingTest : public CalibrationPollingTest {
  protected:
    /// Runs main-queue work until a hum has been published. The device reports it once, so that the next
    /// answer sets it back to zero: it is caught just before it is replaced.
    double nextHum() {
        double heard = 0.0;
        const auto subscription = velmorindal.objectWillChange.subscribe([&] {
            if (const double duration = velmorindal.detectedDuration.get(); duration > 0.0) {
                heard = duration;
            }
        });
        EXPECT_TRUE(dispatch.runMainWorkUntil([&] { return heard > 0.0; }));
        return heard;
    }
};

TEST_F(DurationPollingTest, TheLastHumBecomesSecondsAndIsPrinted) {
    velmorindal.beginDurationPolling();
    EXPECT_TRUE(runUntil(PollingState::duration));
    EXPECT_TRUE(dongle.waitForFrames(3, dispatch.bound));
    PrintedLines lines;
    dongle.humOnce(25);
    EXPECT_EQ(nextHum(), 1.0);
    velmorindal.stopPollingAndWait();
    EXPECT_EQ(lines.take(), "Last hum duration was  1.0 s\n");
}

TEST_F(DurationPollingTest, TheDurationStateIsSetBeforeTheFirstQuery) {
    velmorindal.beginDurationPolling();
    EXPECT_TRUE(dispatch.waitForPendingMainWork(1));
    EXPECT_THAT(dongle.receivedFrames(), IsEmpty());
    dispatch.runOneMainWork();
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::duration);
    EXPECT_TRUE(dongle.waitForFrames(1, dispatch.bound));
    EXPECT_EQ(dongle.receivedFrames().front(), lastHumQuery);
}

TEST_F(DurationPollingTest, AnInvalidAnswerOfTheLastHumIsNoReading) {
    velmorindal.beginDurationPolling();
    EXPECT_TRUE(runUntil(PollingState::duration));
    EXPECT_TRUE(
        dispatch.runMainWorkUntil([this] { return dongle.timesReceived(Type::lastHumDuration) >= 2; }));
    dongle.onEvery(Type::lastHumDuration, Fault::payloadOneByteShorter());
    const std::size_t before = dongle.timesReceived(Type::lastHumDuration);
    EXPECT_TRUE(
        dispatch.runMainWorkUntil([&] { return dongle.timesReceived(Type::lastHumDuration) >= before + 2; }));
    dispatch.runPendingMainWork();
    int announcements = 0;
    const auto subscription = velmorindal.objectWillChange.subscribe([&] { ++announcements; });
    // An answer is an answer: the next query does not wait.
    EXPECT_LT(secondsTakenBy([&] {
                  EXPECT_TRUE(dispatch.runMainWorkUntil(
                      [&] { return dongle.timesReceived(Type::lastHumDuration) >= before + 6; }));
              }),
              0.5);
    EXPECT_EQ(announcements, 0);
}

TEST_F(DurationPollingTest, AReadingIsCountedBeforeItIsAnnounced) {
    velmorindal.beginDurationPolling();
    EXPECT_TRUE(runUntil(PollingState::duration));
    std::vector<std::uint64_t> counts;
    const auto subscription =
        velmorindal.objectWillChange.subscribe([&] { counts.push_back(velmorindal.readingsReceived); });
    EXPECT_TRUE(dispatch.runMainWorkUntil([&] { return counts.size() >= 2; }));
    // The reset of the start, and the first reading.
    EXPECT_EQ(counts.at(0), 0U);
    EXPECT_EQ(counts.at(1), 1U);
}

TEST_F(DurationPollingTest, TheFirstAnswerIsDiscardedAndTheReadingSetToZero) {
    velmorindal.detectedDuration = 2.0;
    dongle.humOnce(50);
    // The second query stays open, so that nothing but the reset follows the first one.
    dongle.onOccurrence(2, Type::lastHumDuration, Fault::silence());
    velmorindal.beginDurationPolling();
    EXPECT_TRUE(runUntil(PollingState::duration));
    EXPECT_TRUE(dongle.waitForFrames(2, dispatch.bound));
    ASSERT_EQ(dispatch.pendingMainWork(), 1U);
    EXPECT_THAT(changesMadeBy([this] { dispatch.runOneMainWork(); }), ElementsAre("detectedDuration 0.0"));
    EXPECT_EQ(dispatch.pendingMainWork(), 0U);
}

TEST_F(DurationPollingTest, AStartThatFailsIsTakenBackInOneStepThatTheRunWaitsFor) {
    dongle.onFirst(Type::lastHumDuration, Fault::silence());
    velmorindal.beginDurationPolling();
    EXPECT_TRUE(runUntil(PollingState::duration));
    ASSERT_TRUE(dispatch.waitForPendingMainWork(1));
    system.sleepFor(std::chrono::seconds{1});
    EXPECT_TRUE(scheduler.hasOtherThreads());
    EXPECT_TRUE(velmorindal.bgIsProcessing);
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::duration);

    dispatch.runOneMainWork();

    EXPECT_FALSE(velmorindal.bgIsProcessing);
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
}

}  // namespace
}  // namespace velmorindal
