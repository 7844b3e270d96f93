#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "Exploration.h"
#include "ExploredSystem.h"
#include "ExploredWizard.h"
#include "TemporaryDirectory.h"

namespace velmorindal {
namespace {

using Start = ExploredWizard::Start;

/// A wizard with one mistake, and what the explorer must report.
struct BrokenWizard {
    std::string_view name;
    std::string_view finding;
    Start start;
};

void PrintTo(const BrokenWizard& broken, std::ostream* stream) {
    *stream << broken.name;
}

/// The order to report clarity, and none to end the reports.
const ByteBuffer startOrder{0x63, 0x62, 0x74, 0x01, 0x02};

void writeAndMeasure(VelmorindalSwitch& model, ContainerView& /*container*/,
                     ScheduledDispatch& /*dispatch*/) {
    model.bgIsProcessing = true;
    model.connectionState = ConnectionStatus::writing;
}

/// Replaces a run that the user has begun by one of the other measurement.
void exchangeTheRun(VelmorindalSwitch& model, ContainerView& container, ScheduledDispatch& dispatch) {
    dispatch.postToMain([&model, &container] {
        if (model.bgIsProcessing) {
            model.stopPollingAndWait();
            container.calibrationPanel.showDurationPressed();
        }
    });
}

const std::vector<BrokenWizard> brokenWizards{
    {"TheConnectionIsMadeAnew",
     "the connection made a step that it does not have",
     {.page = wizardState::Summary,
      .mistake = [](auto& model, auto&, auto&) { model.connectionState = ConnectionStatus::connecting; }}},
    {"ARunIsLeftBehind",
     "a run went on after its page was left",
     {.page = wizardState::Summary,
      .mistake = [](auto& model, auto&, auto&) { model.bgIsProcessing = true; }}},
    {"AFinishedRunShows",
     "a run that is over showed readings",
     {.page = wizardState::Calibration,
      .mistake = [](auto& model, auto&, auto&) { model.pollingState = PollingState::clarity; }}},
    {"AWriteIsLeftBehind",
     "the page was left during a write",
     {.page = wizardState::Output,
      .mistake = [](auto& model, auto&, auto&) { model.connectionState = ConnectionStatus::writing; }}},
    {"AWriteAndARunGoOn",
     "a write and a run went on together",
     {.page = wizardState::Calibration, .mistake = writeAndMeasure}},
    {"APressThatStopsBeginsAnother",
     "a run went on after its button was pressed again",
     {.page = wizardState::Calibration, .actions = 2, .moments = 3, .mistake = exchangeTheRun}},
    {"AFinishedRunCounts",
     "a run that is over counts as processing",
     {.page = wizardState::Calibration,
      .mistake = [](auto& model, auto&, auto&) { model.bgIsProcessing = true; }}},
    {"AReadingStays",
     "a reading stayed after its run",
     {.page = wizardState::Calibration,
      .mistake = [](auto& model, auto&, auto&) { model.detectedDuration = 0.5; }}},
    {"AResultIsLost",
     "a connection attempt or a write never handed its result over",
     {.mistake = [](auto&, auto&, auto& dispatch) { dispatch.losePostedWork(); }}},
    {"AConnectionNeverEnds",
     "the connection stayed in a state that passes",
     {.mistake = [](auto& model, auto&, auto&) { model.connectionState = ConnectionStatus::connecting; }}},
    {"AConnectionFailsByItself",
     "the connection failed without cause",
     {.mistake = [](auto& model, auto&, auto&) { model.connectionState = ConnectionStatus::error; }}},
    {"TheReportsGoOn",
     "the device was left reporting",
     {.page = wizardState::Summary,
      .mistake = [](auto& model, auto&, auto&) { model.serialPort.get()->writeData(startOrder); }}},
    {"AWriteDoesNothing",
     "a write ended without the device storing it",
     {.page = wizardState::Summary,
      .actions = 1,
      .mistake = [](auto& model, auto&, auto&) { model.isValid = false; }}},
    {"ALoadHidesTheReason",
     "a failed load took the place of the text of another failure",
     {.page = wizardState::Summary,
      .mistake =
          [](auto&, auto& container, auto&) {
              container.alertMessage = "Could not load contents of XML file";
              container.showingGenericAlert = true;
          }}},
    {"TheEndComesDuringARun",
     "the program ended during a run",
     {.page = wizardState::Calibration,
      .end = [](AppDelegate& delegate) { delegate.velmorindal.disconnect(false); }}},
    {"TheEndLeavesARunShowing",
     "the program ended while a run showed",
     {.page = wizardState::Calibration,
      .end =
          [](AppDelegate& delegate) {
              delegate.velmorindal.bgIsProcessing = false;
              delegate.velmorindal.disconnect(false);
          }}},
    {"TheEndIsNone", "the program ended connected", {.page = wizardState::Summary, .end = [](auto&) {}}},
    {"TheEndComesWithinAWrite",
     "the program ended within a write",
     {.page = wizardState::Summary,
      .moments = 12,
      .end =
          [](AppDelegate& delegate) {
              delegate.velmorindal.stopPollingAndWait();
              delegate.velmorindal.disconnect(false);
          }}},
    {"TheEndLeavesThePortOpen",
     "the program ended with its port open",
     {.page = wizardState::Summary,
      .end =
          [](AppDelegate& delegate) {
              delegate.velmorindal.connectionState = ConnectionStatus::disconnected;
          }}},
};

class BrokenWizardTest : public testing::TestWithParam<BrokenWizard> {};

TEST_P(BrokenWizardTest, IsFoundByWhatItBreaks) {
    const TemporaryDirectory directory;
    constexpr Scheduler::Limits limits{.deviations = 1};

    const Exploration exploration = explore(limits, [&](Scheduler& scheduler) {
        ExploredWizard{scheduler, directory.path(), GetParam().start}.use();
    });

    ASSERT_TRUE(exploration.finding.has_value()) << exploration.text(limits.deviations);
    EXPECT_EQ(exploration.finding->what, GetParam().finding) << exploration.text(limits.deviations);
}

INSTANTIATE_TEST_SUITE_P(EveryMistake, BrokenWizardTest, testing::ValuesIn(brokenWizards),
                         [](const auto& test) { return std::string{test.param.name}; });

/// Asks the device for its status, as every operation of the wizard asks it for something.
void askOnce(ExploredSystem& device) {
    constexpr std::array<std::uint8_t, 4> query{0x63, 0x62, 0x73, 0x00};
    std::array<std::uint8_t, 5> answer{};
    device.write(0, query);
    device.wait(0, System::Readiness::toRead, std::nullopt);
    device.read(0, answer);
}

Exploration twoThreadsAsk(bool oneAfterTheOther) {
    const TemporaryDirectory directory;
    return explore({.deviations = 1}, [&](Scheduler& scheduler) {
        ExploredSystem device{scheduler, directory.path(), 0};
        const auto ask = [&] { askOnce(device); };
        const auto noOtherThreads = [&] { return !scheduler.hasOtherThreads(); };
        scheduler.start(ask);
        if (oneAfterTheOther) {
            scheduler.waitUntil(noOtherThreads, "the first one's end");
        }
        scheduler.start(ask);
        scheduler.waitUntil(noOtherThreads, "the end of both");
    });
}

TEST(BrokenModel, TwoThreadsThatTakeTurnsAtTheDeviceAreFound) {
    const Exploration exploration = twoThreadsAsk(false);

    ASSERT_TRUE(exploration.finding.has_value());
    EXPECT_EQ(exploration.finding->what, "two operations used the device at once");
}

TEST(BrokenModel, TwoThreadsThatUseTheDeviceOneAfterTheOtherAreNoFault) {
    const Exploration exploration = twoThreadsAsk(true);

    EXPECT_FALSE(exploration.finding.has_value()) << exploration.text(1);
    EXPECT_GT(exploration.schedules, 1U);
}

}  // namespace
}  // namespace velmorindal
