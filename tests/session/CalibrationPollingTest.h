#pragma once

#include <chrono>
#include <functional>
#include <thread>

#include "SessionTest.h"

namespace velmorindal {

inline const ByteBuffer startFrame{0x63, 0x62, 0x74, 0x01, 0x02};
inline const ByteBuffer stopFrame{0x63, 0x62, 0x74, 0x01, 0x00};

/// A model with an open port to the dongle, its runs in the hands of the test.
class CalibrationPollingTest : public SessionTest {
  protected:
    using SessionTest::SessionTest;

    void SetUp() override { openPort(); }

    bool runUntilIdle() {
        const bool idle = dispatch.runMainWorkUntil([this] { return !velmorindal.bgIsProcessing; });
        dispatch.waitForBackground();
        dispatch.runPendingMainWork();
        return idle;
    }

    bool runUntil(PollingState state) {
        return dispatch.runMainWorkUntil([this, state] { return velmorindal.pollingState.get() == state; });
    }

    /// A report that was on its way when the run stopped counts as the acknowledgement of the stop order, so
    /// the device may come to the order a moment after the run has ended.
    void expectOneRunOnTheWire() {
        EXPECT_TRUE(dongle.waitForFrames(2, dispatch.bound));
        EXPECT_THAT(dongle.receivedFrames(), testing::ElementsAre(startFrame, stopFrame));
    }

    bool deviceHasStoppedReporting() {
        return dispatch.runMainWorkUntil([this] { return dongle.state().autoTuneChannel == 0; });
    }
};

}  // namespace velmorindal
