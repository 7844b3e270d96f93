#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>

#include "VirtualDongle.h"
#include "VirtualHost.h"

namespace velmorindal {
namespace {

using enum VelmorindalMessageType;

struct Bent {
    Fault fault;
    ByteBuffer arrives;
    bool takesEffect;
};

/// After each fault a status query follows. What arrives before its answer is what the fault let through.
class FaultyAnswer : public VirtualDongleTest, public testing::WithParamInterface<Bent> {};

TEST_P(FaultyAnswer, ArrivesBentAndTheNextAnswerIsWhole) {
    const ByteBuffer& arrives = GetParam().arrives;
    const ByteBuffer command = frame('c', 'd', {1, 0, 0, 9, 0, 9, 0, 0xFF, 0xFF, 2, 0});
    const ByteBuffer sound = frame('r', 'd', {1, 0, 0, 9, 0, 9, 0, 0xFF, 0xFF, 2, 0});
    dongle_.onFirst(humDuration, GetParam().fault);

    EXPECT_EQ(host_.ask(command + query('s'), arrives.size() + 5), arrives + frame('r', 's', {1}));
    EXPECT_EQ(dongle_.state().settings.humDuration.detectMode, GetParam().takesEffect ? 1 : 3);
    EXPECT_EQ(host_.ask(command, sound.size()), sound);
    EXPECT_EQ(dongle_.state().settings.humDuration.detectMode, 1);
}

const ByteBuffer soundPayload{1, 0, 0, 9, 0, 9, 0, 0xFF, 0xFF, 2, 0};
const ByteBuffer soundAnswer = ByteBuffer{'r', 'b', 'd', 11} + soundPayload;

INSTANTIATE_TEST_SUITE_P(
    Each, FaultyAnswer,
    testing::Values(
        Bent{Fault::silence(), {}, false}, Bent{Fault::silence().stillApplied(), {}, true},
        Bent{Fault::halfAHeader(), {'r', 'b'}, false},
        Bent{Fault::halfAPayload(), {'r', 'b', 'd', 11, 1, 0, 0, 9, 0}, false},
        Bent{Fault::anotherFrameFirst(), ByteBuffer{'r', 'b', 's', 1, 1} + soundAnswer, true},
        Bent{Fault::anotherFrameFirst({'r', 'b', 'A', 0}), ByteBuffer{'r', 'b', 'A', 0} + soundAnswer, true},
        Bent{Fault::errorFrame(), ByteBuffer{'e', 'b', 'd', 11} + soundPayload, false},
        Bent{Fault::wrongKind(), ByteBuffer{'x', 'b', 'd', 11} + soundPayload, true},
        Bent{Fault::wrongMarker(), ByteBuffer{'r', 'a', 'd', 11} + soundPayload, true},
        Bent{Fault::wrongType(), ByteBuffer{'r', 'b', 'A', 11} + soundPayload, true},
        Bent{Fault::lengthTooLong(), ByteBuffer{'r', 'b', 'd', 12} + soundPayload, true},
        Bent{Fault::lengthTooShort(), ByteBuffer{'r', 'b', 'd', 10} + soundPayload, true},
        Bent{Fault::payloadOneByteLonger(), ByteBuffer{'r', 'b', 'd', 12} + soundPayload + ByteBuffer{0},
             true},
        Bent{Fault::payloadOneByteShorter(), {'r', 'b', 'd', 10, 1, 0, 0, 9, 0, 9, 0, 0xFF, 0xFF, 2}, true},
        Bent{Fault::late(), soundAnswer, true},
        Bent{Fault::noiseFirst(), ByteBuffer{0x00, 0xFF, 0x55} + soundAnswer, true},
        Bent{Fault::answerWith({1, 2, 3}), {1, 2, 3}, true}),
    [](const auto& bent) {
        std::string name = std::to_string(bent.index) + "_" + bent.param.fault.name();
        std::replace_if(
            name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
        return name;
    });

using Faults = VirtualDongleTest;

TEST_F(Faults, TenThousandOtherFramesComeFirstAndThenTheAnswer) {
    dongle_.onFirst(status, Fault::floodFirst());
    host_.write(query('s'));
    for (int other = 0; other < 10'000; ++other) {
        ASSERT_EQ(host_.read(5), (ByteBuffer{'r', 'b', 'x', 1, 0})) << other;
    }
    EXPECT_EQ(host_.read(5), (ByteBuffer{'r', 'b', 's', 1, 1}));
}

TEST_F(Faults, AnAnswerWithoutPayloadLosesItsLastByteInsteadOfHalfItsPayload) {
    dongle_.onFirst(writeSettings, Fault::halfAPayload());
    EXPECT_EQ(host_.ask(query('w') + query('s'), 8), (ByteBuffer{'r', 'b', 'w', 'r', 'b', 's', 1, 1}));
}

TEST_F(Faults, AnAnswerWithoutPayloadCanStillBeLongerThanItSays) {
    dongle_.onFirst(writeSettings, Fault::lengthTooShort());
    EXPECT_EQ(host_.ask(query('w') + query('s'), 10), (ByteBuffer{'r', 'b', 'w', 0, 0, 'r', 'b', 's', 1, 1}));
}

TEST_F(Faults, ALateAnswerOvertakenByTheNextComesAfterIt) {
    dongle_.onFirst(status, Fault::lateBy(std::chrono::milliseconds{50}));
    EXPECT_EQ(host_.ask(query('s') + query('x'), 10), (ByteBuffer{'r', 'b', 'x', 1, 0, 'r', 'b', 's', 1, 1}));
}

TEST_F(Faults, AFaultForOneOccurrenceOverridesSilenceOnEveryOne) {
    dongle_.staySilentOn(status);
    dongle_.onOccurrence(3, status, Fault::wrongKind('r'));
    EXPECT_EQ(host_.ask(query('s') + query('s') + query('s') + query('s') + query('x'), 10),
              (ByteBuffer{'r', 'b', 's', 1, 1, 'r', 'b', 'x', 1, 0}));
}

TEST_F(Faults, TheNextOccurrenceCountsFromNow) {
    host_.ask(query('s'), 5);
    dongle_.onNext(status, Fault::answerWith({7}));
    EXPECT_EQ(host_.ask(query('s'), 1), ByteBuffer{7});
    EXPECT_EQ(host_.ask(query('s'), 5), (ByteBuffer{'r', 'b', 's', 1, 1}));
}

TEST_F(Faults, AHumWhoseReportWasLostIsReportedAgain) {
    dongle_.humOnce(25);
    dongle_.onFirst(lastHumDuration, Fault::silence());
    EXPECT_EQ(host_.ask(query('l') + query('l'), 7), (ByteBuffer{'r', 'b', 'l', 3, 25, 0, 0}));
}

TEST_F(Faults, ACustomFaultSeesTheRequestAndTheAnswer) {
    dongle_.onFirst(status, Fault{"doubled", [](AnswerPlan& plan) {
                                      plan.bytesBefore = plan.request;
                                      plan.answer = plan.answer + plan.answer;
                                  }});
    EXPECT_EQ(host_.ask(query('s'), 14), query('s') + frame('r', 's', {1}) + frame('r', 's', {1}));
}

/// Where the end of the port is the subject.
class FaultsOnATerminal : public testing::Test {
  protected:
    TemporaryDirectory directory_;
    VirtualDongle dongle_{directory_.path(), {.waitForTheHost = std::chrono::hours{1}}};
    RawHost host_{dongle_.path()};
};

TEST_F(FaultsOnATerminal, UnpluggingBeforeTheAnswerLetsNothingThrough) {
    dongle_.onFirst(outputPath, Fault::unplugBeforeAnswer());
    EXPECT_EQ(host_.ask(frame('c', 'p', {0}), 5), ByteBuffer{});
    EXPECT_TRUE(host_.sawTheNodeVanish());
    EXPECT_EQ(dongle_.state().settings.outputPath, 1);
}

TEST_F(FaultsOnATerminal, UnpluggingDuringTheAnswerLetsHalfOfItThrough) {
    dongle_.onFirst(humThresholds, Fault::unplugDuringAnswer());
    EXPECT_EQ(host_.ask(query('h'), 12), (ByteBuffer{'r', 'b', 'h', 8, 0x00, 0x00, 0x00, 0x3F}));
    EXPECT_TRUE(host_.sawTheNodeVanish());
}

TEST_F(FaultsOnATerminal, UnpluggingAfterTheAnswerLetsAllOfItThrough) {
    dongle_.onFirst(outputPath, Fault::unplugAfterAnswer());
    EXPECT_EQ(host_.ask(frame('c', 'p', {0}), 5), frame('r', 'p', {0}));
    EXPECT_TRUE(host_.sawTheEnd());
    EXPECT_TRUE(host_.sawTheNodeVanish());
    EXPECT_EQ(dongle_.state().settings.outputPath, 0);
}

TEST(FaultWithoutAHost, UnpluggingAfterAnAnswerThatNobodyReadsDoesNotWaitForever) {
    const TemporaryDirectory directory;
    VirtualDongle dongle{directory.path(), {.waitForTheHost = std::chrono::milliseconds{1}}};
    const RawHost host{dongle.path()};
    dongle.onFirst(status, Fault::unplugAfterAnswer());
    host.write(query('s'));
    EXPECT_FALSE(dongle.waitForFrames(2, RawHost::patience));
    EXPECT_FALSE(dongle.isPlugged());
}

}  // namespace
}  // namespace velmorindal
