#include "SessionTest.h"

namespace velmorindal {
namespace {

class DisconnectingTest : public SessionTest {
  protected:
    /// Connects, and lets unsolicited bytes arrive in the port.
    void connectAndReceive(std::size_t count) {
        ASSERT_TRUE(connect());
        dongle.send(ByteBuffer(count, 0x55));
        system.sleepFor(std::chrono::seconds{1});
        readBefore_ = dongle.bytesRead();
    }

    /// How many bytes were read since they arrived.
    std::size_t drained() const { return dongle.bytesRead() - readBefore_; }

  private:
    std::size_t readBefore_ = 0;
};

TEST_F(DisconnectingTest, ToleratesNoPortAndAClosedPort) {
    velmorindal.disconnect(false);
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::disconnected);
    EXPECT_TRUE(connect());
    velmorindal.disconnect(false);
    velmorindal.disconnect(false);
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::disconnected);
}

TEST_F(DisconnectingTest, ThePortIsClosedBeforeTheStateSaysSo) {
    ASSERT_TRUE(connect());
    std::optional<int> descriptor;
    const auto subscription = velmorindal.objectWillChange.subscribe(
        [&] { descriptor = velmorindal.serialPort.get()->fileDescriptor(); });
    descriptor = -1;
    velmorindal.disconnect(false);
    EXPECT_EQ(descriptor, std::nullopt);
}

TEST_F(DisconnectingTest, WithAFlushDrainsThePort) {
    connectAndReceive(300);
    PrintedLines lines;
    EXPECT_EQ(secondsTakenBy([this] { velmorindal.disconnect(true); }), 0.0) << "one read";
    EXPECT_EQ(drained(), 300U);
    velmorindal.disconnect(true);
    EXPECT_EQ(lines.take(), "flush attempted.\nBuffer flushed. mustBeOpen\n");
}

TEST_F(DisconnectingTest, WithAFlushDrainsAThousandBytesAtMost) {
    connectAndReceive(1500);
    velmorindal.disconnect(true);
    EXPECT_EQ(drained(), 1000U);
}

TEST_F(DisconnectingTest, WithoutAFlushReadsNothing) {
    connectAndReceive(300);
    velmorindal.disconnect(false);
    EXPECT_EQ(drained(), 0U);
}

TEST_F(DisconnectingTest, WithAFlushAndNoPortAttemptsItAllTheSame) {
    PrintedLines lines;
    velmorindal.disconnect(true);
    EXPECT_EQ(lines.take(), "flush attempted.\n");
}

}  // namespace
}  // namespace velmorindal
