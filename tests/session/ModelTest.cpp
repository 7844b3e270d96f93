#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ManualDispatch.h"
#include "PosixSystem.h"
#include "VelmorindalSwitch.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ModelTest : public testing::Test {
  protected:
    ManualDispatch dispatch;
    PosixSystem system;
    VelmorindalSwitch velmorindal{dispatch, system};
};

TEST_F(ModelTest, ANewModelShowsItsInitialValues) {
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::idle);
    EXPECT_EQ(velmorindal.serialPort.get(), nullptr);
    EXPECT_FALSE(velmorindal.isValid);
    EXPECT_EQ(velmorindal.lastError.get(), std::nullopt);
    EXPECT_EQ(velmorindal.outputPath.get(), OutputPath::Switch);
    EXPECT_EQ(velmorindal.outputMode.get(), OutputMode::Direct);
    EXPECT_EQ(velmorindal.outputKeys.get().directKey, OutputKey::F1);
    EXPECT_EQ(velmorindal.outputKeys.get().shortKey, OutputKey::Space);
    EXPECT_EQ(velmorindal.outputKeys.get().longKey, OutputKey::Enter);
    EXPECT_EQ(velmorindal.clarity.get(), 0.5F);
    EXPECT_EQ(velmorindal.cutoff.get(), 1.5F);
    EXPECT_FALSE(velmorindal.shortEnabled.get());
    EXPECT_TRUE(velmorindal.longEnabled.get());
    EXPECT_FALSE(velmorindal.justSaved.get());
    EXPECT_EQ(velmorindal.readWriteProgress.get(), 0.0);
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
    EXPECT_FALSE(velmorindal.bgIsProcessing);
    EXPECT_EQ(velmorindal.detectedClarity.get(), 0.0);
    EXPECT_EQ(velmorindal.detectedDuration.get(), 0.0);
}

TEST_F(ModelTest, ChosenSettingsReplaceEachValue) {
    velmorindal.choose({.outputPath = OutputPath::BTKeyboard,
                        .outputMode = OutputMode::LongShort,
                        .longEnabled = false,
                        .shortEnabled = true,
                        .outputKeys = {OutputKey::F5, OutputKey::F6, OutputKey::F7},
                        .clarity = 0.25F,
                        .cutoff = 2.0F});
    EXPECT_EQ(velmorindal.outputPath.get(), OutputPath::BTKeyboard);
    EXPECT_EQ(velmorindal.outputMode.get(), OutputMode::LongShort);
    EXPECT_FALSE(velmorindal.longEnabled.get());
    EXPECT_TRUE(velmorindal.shortEnabled.get());
    EXPECT_EQ(velmorindal.outputKeys.get(), (keyList{OutputKey::F5, OutputKey::F6, OutputKey::F7}));
    EXPECT_EQ(velmorindal.clarity.get(), 0.25F);
    EXPECT_EQ(velmorindal.cutoff.get(), 2.0F);
}

TEST_F(ModelTest, AnObserverStillSeesTheOldValueBecauseTheAnnouncementComesFirst) {
    std::vector<float> seen;
    const auto subscription =
        velmorindal.objectWillChange.subscribe([&] { seen.push_back(velmorindal.clarity.get()); });
    velmorindal.clarity = 0.25F;
    velmorindal.clarity = 0.75F;
    EXPECT_THAT(seen, ElementsAre(0.5F, 0.25F));
}

TEST_F(ModelTest, EveryPublishedPropertyAnnouncesEveryAssignment) {
    int announcements = 0;
    const auto subscription = velmorindal.objectWillChange.subscribe([&] { ++announcements; });
    const std::vector<std::function<void()>> assignments{
        [&] { velmorindal.connectionState = ConnectionStatus::idle; },
        [&] { velmorindal.outputPath = OutputPath::BTKeyboard; },
        [&] { velmorindal.outputMode = OutputMode::LongShort; },
        [&] { velmorindal.outputKeys = keyList{}; },
        [&] { velmorindal.clarity = 0.1F; },
        [&] { velmorindal.cutoff = 0.1F; },
        [&] { velmorindal.shortEnabled = true; },
        [&] { velmorindal.longEnabled = true; },
        [&] { velmorindal.justSaved = true; },
        [&] { velmorindal.readWriteProgress = 1.0; },
        [&] { velmorindal.pollingState = PollingState::clarity; },
        [&] { velmorindal.detectedClarity = 0.1; },
        [&] { velmorindal.detectedDuration = 0.1; },
    };
    for (std::size_t index = 0; index < assignments.size(); ++index) {
        assignments[index]();
        EXPECT_EQ(announcements, static_cast<int>(index) + 1) << "assignment " << index;
    }
}

TEST_F(ModelTest, UnpublishedPropertiesChangeSilently) {
    int announcements = 0;
    const auto subscription = velmorindal.objectWillChange.subscribe([&] { ++announcements; });
    velmorindal.lastError = "A text";
    velmorindal.isValid = true;
    velmorindal.bgIsProcessing = true;
    velmorindal.serialPort = std::make_shared<SerialPort>("/dev/null", system);
    EXPECT_EQ(announcements, 0);
}

TEST_F(ModelTest, ADroppedSubscriptionHearsNothing) {
    int announcements = 0;
    auto subscription = velmorindal.objectWillChange.subscribe([&] { ++announcements; });
    subscription.reset();
    velmorindal.clarity = 0.2F;
    EXPECT_EQ(announcements, 0);
}

TEST_F(ModelTest, AnObserverMaySubscribeAndUnsubscribeWhileItIsCalled) {
    int late = 0;
    ChangeNotifier::Subscription inner;
    ChangeNotifier::Subscription outer;
    outer = velmorindal.objectWillChange.subscribe([&] {
        inner = velmorindal.objectWillChange.subscribe([&] { ++late; });
        outer.reset();
    });
    velmorindal.clarity = 0.2F;
    EXPECT_EQ(late, 0);
    velmorindal.clarity = 0.3F;
    EXPECT_EQ(late, 1);
}

struct KeyExpectation {
    OutputKey key;
    const char* name;
    const char* display;
    std::uint32_t code;
};

constexpr std::array expectedKeys{
    KeyExpectation{OutputKey::Space, "Space", "Space", 0x002C0000},
    KeyExpectation{OutputKey::Enter, "Enter", "Enter", 0x00280000},
    KeyExpectation{OutputKey::Tab, "Tab", "Tab", 0x002B0000},
    KeyExpectation{OutputKey::ShiftTab, "ShiftTab", "Shift+Tab", 0x022B0000},
    KeyExpectation{OutputKey::Num0, "Num0", "0", 0x00270000},
    KeyExpectation{OutputKey::Num1, "Num1", "1", 0x001E0000},
    KeyExpectation{OutputKey::Num2, "Num2", "2", 0x001F0000},
    KeyExpectation{OutputKey::Num3, "Num3", "3", 0x00200000},
    KeyExpectation{OutputKey::Num4, "Num4", "4", 0x00210000},
    KeyExpectation{OutputKey::Tilde1, "Tilde1", "~1", 0x0235801E},
    KeyExpectation{OutputKey::Tilde2, "Tilde2", "~2", 0x0235801F},
    KeyExpectation{OutputKey::Tilde3, "Tilde3", "~3", 0x02358020},
    KeyExpectation{OutputKey::Tilde4, "Tilde4", "~4", 0x02358021},
    KeyExpectation{OutputKey::UpArrow, "UpArrow", "[Up Arrow]", 0x00520000},
    KeyExpectation{OutputKey::DownArrow, "DownArrow", "[Down Arrow]", 0x00510000},
    KeyExpectation{OutputKey::LeftArrow, "LeftArrow", "[Left Arrow]", 0x00500000},
    KeyExpectation{OutputKey::RightArrow, "RightArrow", "[Right Arrow]", 0x004F0000},
    KeyExpectation{OutputKey::F1, "F1", "F1", 0x003A0000},
    KeyExpectation{OutputKey::F2, "F2", "F2", 0x003B0000},
    KeyExpectation{OutputKey::F3, "F3", "F3", 0x003C0000},
    KeyExpectation{OutputKey::F4, "F4", "F4", 0x003D0000},
    KeyExpectation{OutputKey::F5, "F5", "F5", 0x003E0000},
    KeyExpectation{OutputKey::F6, "F6", "F6", 0x003F0000},
    KeyExpectation{OutputKey::F7, "F7", "F7", 0x00400000},
    KeyExpectation{OutputKey::F8, "F8", "F8", 0x00410000},
    KeyExpectation{OutputKey::F9, "F9", "F9", 0x00420000},
    KeyExpectation{OutputKey::F10, "F10", "F10", 0x00430000},
    KeyExpectation{OutputKey::F11, "F11", "F11", 0x00440000},
    KeyExpectation{OutputKey::F12, "F12", "F12", 0x00450000},
};

TEST(KeyTables, HoldEveryKeyOnceInTheOrderOfThePickers) {
    ASSERT_EQ(VelmorindalSwitch::keyDisplayOrder().size(), 29U);
    ASSERT_EQ(VelmorindalSwitch::keyDisplayStrings().size(), 29U);
    ASSERT_EQ(VelmorindalSwitch::keyCodes().size(), 29U);
    for (std::size_t index = 0; index < expectedKeys.size(); ++index) {
        const KeyExpectation& expected = expectedKeys[index];
        EXPECT_EQ(static_cast<std::size_t>(expected.key), index);
        EXPECT_EQ(VelmorindalSwitch::keyDisplayOrder()[index], expected.key);
        EXPECT_EQ(caseName(expected.key), expected.name);
        EXPECT_EQ(VelmorindalSwitch::keyDisplayStrings().at(expected.key), expected.display);
        EXPECT_EQ(VelmorindalSwitch::keyCodes().at(expected.key), expected.code);
    }
}

TEST(KeyTables, FindTheKeysOfACode) {
    EXPECT_THAT(VelmorindalSwitch::keysWithCode(0x022B0000), ElementsAre(OutputKey::ShiftTab));
    EXPECT_THAT(VelmorindalSwitch::keysWithCode(0x2B), IsEmpty());
}

TEST(CaseNames, AreEmptyForAValueOutsideTheCases) {
    EXPECT_EQ(caseName(static_cast<OutputPath>(3)), "");
    EXPECT_EQ(caseName(OutputPath::BTKeyboard), "BTKeyboard");
    EXPECT_EQ(caseName(OutputMode::LongShort), "LongShort");
    EXPECT_EQ(caseName(ConnectionStatus::error), "error");
    EXPECT_EQ(caseName(PollingState::duration), "duration");
}

}  // namespace
}  // namespace velmorindal
