#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DeviceState.h"

namespace velmorindal {
namespace {

using testing::Contains;
using testing::ElementsAre;

TEST(StoredSettings, SayThatNothingWasStored) {
    EXPECT_THAT(storedSettingsInWords({}), ElementsAre("Nothing was stored."));
}

TEST(StoredSettings, ArePrintedInWordsOneALine) {
    DeviceState state;
    state.stored = state.settings;
    state.stored->protocol = 1;
    state.stored->humDuration.maxShort = 37;
    state.stored->thresholds.ap = 0.37F;
    state.timesStored = 1;
    EXPECT_THAT(storedSettingsInWords(state),
                ElementsAre("Protocol: Bluetooth", "Output path: relay", "Hums detected: short and long",
                            "Short hums: 0 ticks (0.0 s) to 37 ticks (1.48 s)",
                            "Long hums: 25 ticks (1.0 s) to 65535 ticks (2621.4 s)",
                            "Hold counts: on 4, off 0", "Clarity thresholds: 0.37 and 0.5",
                            "Short hum keys: 00 2c 00 00", "Long hum keys: 00 28 00 00",
                            "Short hum relay: fixed, normally open, pulses of 10 to 1000",
                            "Long hum relay: fixed, normally open, pulses of 10 to 1000", "Times stored: 1"));
}

TEST(StoredSettings, AByteWithoutAWordIsPrintedAsANumber) {
    DeviceState state;
    state.stored = state.settings;
    state.stored->protocol = 2;
    state.stored->humDuration.detectMode = 0xFF;
    const auto lines = storedSettingsInWords(state);
    EXPECT_THAT(lines, Contains("Protocol: 2"));
    EXPECT_THAT(lines, Contains("Hums detected: 255"));
}

}  // namespace
}  // namespace velmorindal
