#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "RawHost.h"
#include "TemporaryDirectory.h"
#include "VirtualDongle.h"

namespace velmorindal {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class Recording : public testing::Test {
  protected:
    TemporaryDirectory directory_;
    VirtualDongle dongle_{directory_.path()};
    RawHost host_{dongle_.path()};
};

TEST_F(Recording, EveryFrameIsKeptWholeAndInOrder) {
    host_.ask(query('v') + frame('c', 'p', {0}), 25);
    EXPECT_THAT(dongle_.receivedFrames(), ElementsAre(query('v'), frame('c', 'p', {0})));
    EXPECT_EQ(dongle_.timesReceived(VelmorindalMessageType::version), 1U);
    EXPECT_EQ(dongle_.timesReceived(VelmorindalMessageType::status), 0U);
}

TEST_F(Recording, BytesOfNoFrameAreCountedAndNotKept) {
    host_.ask(ByteBuffer{0xFF, 'c', 'x'} + query('s'), 5);
    EXPECT_THAT(dongle_.receivedFrames(), ElementsAre(query('s')));
    EXPECT_EQ(dongle_.skippedBytes(), 3U);
}

TEST_F(Recording, WaitingForAFrameThatNeverComesEndsAtItsBound) {
    host_.ask(query('v'), 20);
    EXPECT_FALSE(dongle_.waitForFrames(2, 20ms));
}

TEST_F(Recording, TheHookSeesAFrameBeforeItIsAnsweredAndMayScriptTheDongle) {
    dongle_.whenReceived([this](std::span<const std::uint8_t> received) {
        if (received[2] == 's') {
            dongle_.prepare([](DeviceState& state) { state.linkState = 7; });
        }
    });
    EXPECT_EQ(host_.ask(query('s'), 5), frame('r', 's', {7}));
}

TEST(RecordingOff, FramesAreCountedButNotKept) {
    const TemporaryDirectory directory;
    VirtualDongle dongle{directory.path(), {.keepsReceivedFrames = false}};
    RawHost{dongle.path()}.ask(query('s'), 5);
    EXPECT_TRUE(dongle.receivedFrames().empty());
    EXPECT_EQ(dongle.timesReceived(VelmorindalMessageType::status), 1U);
    EXPECT_TRUE(dongle.waitForFrames(1, 0ms));
}

}  // namespace
}  // namespace velmorindal
