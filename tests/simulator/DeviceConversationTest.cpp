#include <gtest/gtest.h>

#include <map>

#include "VirtualHost.h"

namespace velmorindal {
namespace {

using DeviceConversation = VirtualDongleTest;

TEST_F(DeviceConversation, EveryQueryIsAnsweredWithTheDevicesPresentValue) {
    EXPECT_EQ(host_.ask(query('v'), 20), (ByteBuffer{'r', 'b', 'v', 16,  'V', 'e', 'l', 'm', 'o', 'r',
                                                     'i', 'n', 'd', 'a', 'l', ' ', '1', '.', '1', 'M'}));
    EXPECT_EQ(host_.ask(query('s'), 5), (ByteBuffer{'r', 'b', 's', 1, 1}));
    EXPECT_EQ(host_.ask(query('x'), 5), (ByteBuffer{'r', 'b', 'x', 1, 0}));
    EXPECT_EQ(host_.ask(query('p'), 5), (ByteBuffer{'r', 'b', 'p', 1, 1}));
    EXPECT_EQ(host_.ask(query('d'), 15),
              (ByteBuffer{'r', 'b', 'd', 11, 3, 0, 0, 25, 0, 25, 0, 0xFF, 0xFF, 4, 0}));
    EXPECT_EQ(host_.ask(query('h'), 12),
              (ByteBuffer{'r', 'b', 'h', 8, 0x00, 0x00, 0x00, 0x3F, 0x00, 0x00, 0x00, 0x3F}));
    EXPECT_EQ(host_.ask(query('k'), 12), (ByteBuffer{'r', 'b', 'k', 8, 0, 0x2C, 0, 0, 0, 0x28, 0, 0}));
    EXPECT_EQ(host_.ask(query('l'), 7), (ByteBuffer{'r', 'b', 'l', 3, 0, 0, 0}));
}

TEST_F(DeviceConversation, TheRelayAnswerIsOneByteShorterThanTheRelayCommand) {
    EXPECT_EQ(host_.ask(query('y'), 15),
              (ByteBuffer{'r', 'b', 'y', 11, 1, 0, 10, 0, 0xE8, 0x03, 1, 0, 10, 0, 0xE8}));
}

TEST_F(DeviceConversation, AnAutoTuneQueryIsAnsweredWithOneReport) {
    dongle_.reportClarity(0.75F, 0.25F);
    EXPECT_EQ(host_.ask(query('t'), 12),
              (ByteBuffer{'r', 'b', 't', 8, 0x00, 0x00, 0x80, 0x3E, 0x00, 0x00, 0x40, 0x3F}));
}

TEST_F(DeviceConversation, OfAVersionBeyond255BytesTheRestIsNotSent) {
    dongle_.prepare([](DeviceState& state) { state.version = std::string(300, 'V'); });
    EXPECT_EQ(host_.ask(query('v'), 259), frame('r', 'v', ByteBuffer(255, 'V')));
    EXPECT_EQ(host_.ask(query('s'), 5), frame('r', 's', {1}));
}

TEST_F(DeviceConversation, ACommandIsAcknowledgedByItsOwnBytesAndThenAnsweredToAQuery) {
    const std::map<char, ByteBuffer> commands{{'x', {1}},
                                              {'p', {0}},
                                              {'d', {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}},
                                              {'y', {2, 1, 3, 4, 5, 6, 1, 0, 7, 8, 9, 10}},
                                              {'h', {1, 2, 3, 4, 5, 6, 7, 8}},
                                              {'k', {8, 7, 6, 5, 4, 3, 2, 1}},
                                              {'l', {0x2C, 0x01, 0x01}}};
    for (const auto& [type, payload] : commands) {
        EXPECT_EQ(host_.ask(frame('c', type, payload), 4 + payload.size()), frame('r', type, payload));
        const ByteBuffer value =
            type == 'y' ? ByteBuffer{payload.begin(), payload.end() - 1} : payload;  // its answer is shorter
        EXPECT_EQ(host_.ask(query(type), 4 + value.size()), frame('r', type, value));
    }
}

TEST_F(DeviceConversation, StoringKeepsACopyOfTheSettingsAsTheyAre) {
    host_.ask(frame('c', 'p', {0}), 5);
    EXPECT_FALSE(dongle_.state().stored);

    EXPECT_EQ(host_.ask(query('w'), 4), frame('r', 'w'));
    host_.ask(frame('c', 'p', {1}), 5);

    const DeviceState state = dongle_.state();
    ASSERT_TRUE(state.stored);
    EXPECT_EQ(state.stored->outputPath, 0);
    EXPECT_EQ(state.settings.outputPath, 1);
    EXPECT_EQ(state.timesStored, 1U);
}

TEST_F(DeviceConversation, AResetGoesBackToWhatWasStored) {
    host_.ask(frame('c', 'p', {0}), 5);
    host_.ask(query('w'), 4);
    host_.ask(frame('c', 'p', {1}), 5);
    EXPECT_EQ(host_.ask(query('z'), 4), frame('r', 'z'));
    EXPECT_EQ(dongle_.state().settings.outputPath, 0);
}

TEST_F(DeviceConversation, AResetBeforeAnythingWasStoredGoesBackToTheInitialSettings) {
    host_.ask(frame('c', 'p', {0}), 5);
    host_.ask(query('z'), 4);
    EXPECT_EQ(dongle_.state().settings, DeviceSettings{});
}

TEST_F(DeviceConversation, AHumIsReportedOnce) {
    dongle_.humOnce(300);
    EXPECT_EQ(host_.ask(query('l'), 7), (ByteBuffer{'r', 'b', 'l', 3, 0x2C, 0x01, 0}));
    EXPECT_EQ(host_.ask(query('l'), 7), (ByteBuffer{'r', 'b', 'l', 3, 0, 0, 0}));
}

TEST_F(DeviceConversation, AnUnknownTypeIsAnsweredByAnErrorFrame) {
    EXPECT_EQ(host_.ask(query('A'), 4), (ByteBuffer{'e', 'b', 'A', 0}));
    EXPECT_EQ(host_.ask(frame('c', '\0', {1, 2}), 4), (ByteBuffer{'e', 'b', 0, 0}));
}

TEST_F(DeviceConversation, ACommandOfTheWrongLengthIsAnsweredByAnErrorFrameAndHasNoEffect) {
    const DeviceState before = dongle_.state();
    for (const char type : {'d', 'h', 'k', 'l', 'p', 's', 't', 'v', 'w', 'x', 'y', 'z'}) {
        EXPECT_EQ(host_.ask(frame('c', type, ByteBuffer(13, 2)), 4), frame('e', type)) << type;
    }
    EXPECT_EQ(dongle_.state(), before);
}

}  // namespace
}  // namespace velmorindal
