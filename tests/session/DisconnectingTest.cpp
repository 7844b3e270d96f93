#include <sys/ioctl.h>
#include <unistd.h>

#include "session/SessionTest.h"

namespace velmorindal {
namespace {

class DisconnectingTest : public SessionTest {
  protected:
    void TearDown() override {
        if (watch_ >= 0) {
            ::close(watch_);
        }
        SessionTest::TearDown();
    }

    /// Connects, and lets bytes that nobody asked for arrive in the port.
    void connectAndReceive(std::size_t count) {
        ASSERT_TRUE(connect());
        // Keeps what is unread when the port is closed.
        watch_ = ::dup(velmorindal.serialPort.get()->fileDescriptor().value_or(-1));
        dongle.send(ByteBuffer(count, 0x55));
        ASSERT_TRUE(dispatch.runMainWorkUntil([&] { return unread() == static_cast<int>(count); }));
    }

    int unread() const {
        int count = -1;
        EXPECT_EQ(::ioctl(watch_, FIONREAD, &count), 0);
        return count;
    }

  private:
    int watch_ = -1;
};

TEST_F(DisconnectingTest, ToleratesNoPortAndAClosedPort) {
    velmorindal.disconnect(false);
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::disconnected);
    EXPECT_TRUE(connect());
    velmorindal.disconnect(false);
    velmorindal.disconnect(false);
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::disconnected);
}

TEST_F(DisconnectingTest, WithAFlushDrainsThePort) {
    connectAndReceive(300);
    PrintedLines lines;
    velmorindal.disconnect(true);
    EXPECT_EQ(unread(), 0);
    velmorindal.disconnect(true);
    EXPECT_EQ(lines.take(), "flush attempted.\nBuffer flushed. mustBeOpen\n");
}

TEST_F(DisconnectingTest, WithAFlushDrainsAThousandBytesAtMost) {
    connectAndReceive(1500);
    velmorindal.disconnect(true);
    EXPECT_EQ(unread(), 500);
}

TEST_F(DisconnectingTest, WithoutAFlushReadsNothing) {
    connectAndReceive(300);
    velmorindal.disconnect(false);
    EXPECT_EQ(unread(), 300);
}

TEST_F(DisconnectingTest, WithAFlushAndNoPortAttemptsItAllTheSame) {
    PrintedLines lines;
    velmorindal.disconnect(true);
    EXPECT_EQ(lines.take(), "flush attempted.\n");
}

}  // namespace
}  // namespace velmorindal
