// What an operation does in which order: a dispatch that runs main-queue work at the moment it is handed over
// shows what was in place by then, whichever of two threads goes first.

#include <algorithm>
#include <thread>

#include "ConnectionTest.h"

namespace velmorindal {
namespace {

using testing::ElementsAre;
using Type = VelmorindalMessageType;
using Story = std::vector<std::string>;

/// Runs main-queue work at once and notes how it was handed over.
class ToldDispatch final : public Dispatch {
  public:
    explicit ToldDispatch(std::function<void(std::string_view how, const Work& work)> tell)
        : tell_{std::move(tell)} {}

    void postToMain(Work work) override { tell_("posted", work); }
    void runOnMainAndWait(Work work) override { tell_("waited for", work); }
    void runInBackground(Work work) override { work(); }
    void runPendingMainWork() override {}

  private:
    const std::function<void(std::string_view how, const Work& work)> tell_;
};

class StoryTest : public SessionTest {
  protected:
    /// The lines printed, each change of the model with how it was handed over, and each new text of
    /// `lastError`, from which on it was there.
    Story storyOf(const std::function<void()>& operation) {
        story_.clear();
        text_ = currentText();
        const PrintDiversion printing{[this](std::string_view line) {
            noteText();
            line.remove_suffix(1);
            story_.push_back((onMain_ ? "main prints: " : "prints: ") + std::string{line});
        }};
        operation();
        noteText();
        return story_;
    }

    /// The last `count` parts of it.
    Story endOfStoryOf(const std::function<void()>& operation, std::size_t count) {
        const Story story = storyOf(operation);
        return {story.end() - static_cast<std::ptrdiff_t>(std::min(count, story.size())), story.end()};
    }

    Story endOfTheConnection(std::size_t count) {
        return endOfStoryOf([this] { model.connect(); }, count);
    }

    /// As openPort(), for this model, which was told that it is in `state`.
    void openPortIn(ConnectionStatus state) {
        openPort();
        model.serialPort = velmorindal.serialPort.get();
        model.connectionState = state;
        model.isValid = true;
        model.lastError = "An earlier text";
    }

    ToldDispatch atOnce_{[this](std::string_view how, const Work& work) { run(how, work); }};
    VelmorindalSwitch model{atOnce_, system, {.directory = directory.path().string() + "/"}};

  private:
    std::string currentText() const { return model.lastError.get().value_or("none"); }

    void run(std::string_view how, const Work& work) {
        noteText();
        onMain_ = true;
        const auto before = publishedBy(model);
        work();
        const auto after = publishedBy(model);
        onMain_ = false;
        std::string changes;
        for (std::size_t index = 0; index < before.size(); ++index) {
            if (before[index] != after[index]) {
                changes += (changes.empty() ? " " : ", ") + after[index];
            }
        }
        story_.push_back(std::string{how} + (changes.empty() ? " no change" : changes));
    }

    void noteText() {
        if (const auto text = currentText(); text != text_) {
            text_ = text;
            story_.push_back("lastError: " + text);
        }
    }

    std::string text_;
    Story story_;
    bool onMain_ = false;
};

constexpr const char* unansweredText =
    "lastError: Invalid message received from server.\n\n(Error code: VC/TC)";

TEST_F(StoryTest, OfASuccessfulConnection) {
    dongle.prepare([](DeviceState& device) {
        device.settings.outputPath = 0;
        device.settings.humDuration.detectMode = 1;
        device.settings.humDuration.maxShort = 40;
        device.settings.thresholds.ap = 0.25F;
    });
    model.readWriteProgress = 5.0;
    model.lastError = "An earlier text";
    const std::string path = dongle.path().string();

    EXPECT_THAT(
        storyOf([this] { EXPECT_TRUE(model.connect()); }),
        ElementsAre("lastError: none", testing::StartsWith("prints: Open Result:  1"),
                    "prints: Got version string:  Velmorindal 1.1M", "prints: Definitely this one  " + path,
                    "posted readWriteProgress 0.0", "prints: Have device(s) :  [\"" + path + "\"]",
                    "waited for connectionState connecting", "posted readWriteProgress 1.0",
                    "prints: We made it this far... version code is  Velmorindal 1.1M",
                    "prints: Have a status:  1", "posted readWriteProgress 2.0",
                    "prints: Connected. Going to read settings", "posted readWriteProgress 3.0",
                    "posted outputPath USBKeyboard", "posted readWriteProgress 4.0",
                    "posted outputMode LongShort", "posted shortEnabled true", "posted longEnabled false",
                    "posted cutoff 1.6", "prints: Test: cutoff is  1.6", "posted readWriteProgress 5.0",
                    "posted clarity 0.25, readWriteProgress 6.0", "posted no change", "posted no change",
                    "posted directKey Enter", "prints: Settings read successfully.",
                    "main prints: Successful connection!", "waited for connectionState connected",
                    "prints: Status updated now:  connected"));
}

TEST_F(StoryTest, OfARefusedSecondConnectionWhichStillLooksForDongles) {
    storyOf([this] { EXPECT_TRUE(model.connect()); });
    model.lastError = "An earlier text";
    PrintedLines errors{PrintStream::standardError};

    EXPECT_THAT(storyOf([this] { EXPECT_FALSE(model.connect()); }),
                ElementsAre("lastError: none", "prints: Open Result:  -1", "posted readWriteProgress 0.0",
                            "prints: Attempting re-connection",
                            "lastError: Already connected to the Velmorindal Device."));
}

TEST_F(StoryTest, OfALinkThatIsDownHasTheTextAfterTheState) {
    dongle.prepare([](DeviceState& device) { device.linkState = 0; });

    EXPECT_THAT(endOfTheConnection(3),
                ElementsAre("prints: Have a status:  0", "waited for connectionState disconnected",
                            "lastError: Please ensure that your Velmorindal is turned on and in "
                            "configuration mode."));
}

TEST_F(StoryTest, OfAFailedCheckHasTheTextBeforeTheState) {
    dongle.staySilentOn(Type::status);

    EXPECT_THAT(endOfTheConnection(3),
                ElementsAre("prints: Error; could not get a status from the device",
                            "lastError: The device sent an unrecognized response.\n\n(Error code: VS/CC)",
                            "posted connectionState error"));
}

TEST_F(StoryTest, OfASearchWithoutADongleHasTheTextBeforeTheState) {
    dongle.unplug();

    EXPECT_THAT(storyOf([this] { model.connect(); }),
                ElementsAre("posted no change", "prints: No dongles found. Quitting.",
                            std::string{"lastError: "} + noDongleText, "posted connectionState error"));
}

TEST_F(StoryTest, OfAnInvalidSettingHasTheTextBeforeTheState) {
    dongle.onFirst(Type::protocolSelect, Fault::payloadOneByteLonger());

    EXPECT_THAT(endOfTheConnection(4),
                ElementsAre("posted readWriteProgress 3.0",
                            "lastError: Invalid response from dongle (Error code: VCPS/IV)",
                            "prints: Failed to read settings.", "waited for connectionState error"));
}

TEST_F(StoryTest, OfASettingThatIsNotAnsweredHasTheTextAfterTheState) {
    dongle.staySilentOn(Type::protocolSelect);

    EXPECT_THAT(endOfTheConnection(5),
                ElementsAre("posted readWriteProgress 3.0", "waited for connectionState error",
                            unansweredText, "prints: Failed to read settings.", "waited for no change"));
}

TEST_F(StoryTest, OfAReadingBeginsWithoutAnEarlierText) {
    openPortIn(ConnectionStatus::connecting);

    const Story story = storyOf([this] { EXPECT_TRUE(model.readSettingsFromDevice()); });

    ASSERT_GE(story.size(), 2U);
    EXPECT_EQ(story[0], "lastError: none");
    EXPECT_EQ(story[1], "posted readWriteProgress 3.0");
}

TEST_F(StoryTest, OfAWriteBeginsWithoutAnEarlierText) {
    openPortIn(ConnectionStatus::connected);
    model.readWriteProgress = 6.0;

    EXPECT_THAT(storyOf([this] { EXPECT_TRUE(model.commitSettingsToDevice()); }),
                ElementsAre("lastError: none", "waited for connectionState writing, readWriteProgress 0.0",
                            "posted readWriteProgress 1.0", "posted readWriteProgress 2.0",
                            "posted readWriteProgress 3.0", "posted readWriteProgress 4.0",
                            "posted readWriteProgress 5.0", "posted connectionState connected",
                            "prints: Save completed."));
}

TEST_F(StoryTest, OfAFailedWriteHasTheTextBeforeTheState) {
    openPortIn(ConnectionStatus::connected);
    dongle.onFirst(Type::outputPath, Fault::wrongKind());

    EXPECT_THAT(endOfStoryOf([this] { EXPECT_FALSE(model.commitSettingsToDevice()); }, 2),
                ElementsAre("lastError: Failed to write instruction to device.\n\nError code: OP/SC",
                            "posted connectionState error"));
}

class AnnouncementsTest : public ConnectionTest {
  protected:
    void TearDown() override {
        EXPECT_GT(announcements_, 0U);
        EXPECT_EQ(elsewhere_, 0U) << "of " << announcements_;
        ConnectionTest::TearDown();
    }

  private:
    const std::thread::id main_ = std::this_thread::get_id();
    std::size_t announcements_ = 0;
    std::size_t elsewhere_ = 0;
    ChangeNotifier::Subscription subscription_ = velmorindal.objectWillChange.subscribe([this] {
        ++announcements_;
        elsewhere_ += std::this_thread::get_id() != main_ ? 1 : 0;
    });
};

TEST_F(AnnouncementsTest, ComeOnTheMainThreadWhenAllGoesWell) {
    EXPECT_TRUE(connect());
    EXPECT_TRUE(dispatch.finish([this] { return velmorindal.commitSettingsToDevice(); }));
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(dispatch.runMainWorkUntil([this] { return velmorindal.detectedClarity.get() > 0.0; }));
    velmorindal.stopPollingAndWait();
    dispatch.runPendingMainWork();
}

TEST_F(AnnouncementsTest, ComeOnTheMainThreadWhenASettingIsNotAnswered) {
    dongle.staySilentOn(Type::protocolSelect);
    EXPECT_FALSE(connect());
}

TEST_F(AnnouncementsTest, ComeOnTheMainThreadWhenADisplayCannotStart) {
    EXPECT_TRUE(connect());
    dongle.staySilentOn(Type::lastHumDuration);
    velmorindal.beginDurationPolling();
    dispatch.waitForBackground();
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
}

}  // namespace
}  // namespace velmorindal
