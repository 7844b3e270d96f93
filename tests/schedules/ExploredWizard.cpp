#include "ExploredWizard.h"
#include "DongleProbe.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <utility>

namespace velmorindal {
namespace {

/// Turns for which a run that shows its readings is watched.
constexpr int watchedTurns = 3;

using enum ConnectionStatus;

/// Every step that the connection may make by itself; closing the program may follow on each.
constexpr std::array<std::pair<ConnectionStatus, ConnectionStatus>, 8> steps{{
    {idle, connecting},
    {idle, error},
    {connecting, connected},
    {connecting, disconnected},
    {connecting, error},
    {connected, writing},
    {writing, connected},
    {writing, error},
}};

}  // namespace

ExploredWizard::ExploredWizard(Scheduler& scheduler, const std::filesystem::path& directory,
                               const Start& start)
    : scheduler_{scheduler},
      start_{start},
      system_{scheduler, directory, start.troubles},
      dispatch_{scheduler},
      delegate_{dispatch_, system_, {.directory = directory.string()}},
      container_{velmorindal_, dispatch_, filePanel_, [this] { quit(); }} {
    if (start.page != wizardState::Welcome) {
        connect();
    }
    container_.currentState = start.page;
    changes_ = velmorindal_.objectWillChange.subscribe([this] {
        noteConnectionState();
        scheduler_.point("change");
    });
}

ExploredWizard::~ExploredWizard() {
    scheduler_.endOtherThreads();
}

void ExploredWizard::connect() {
    auto port = std::make_shared<SerialPort>(system_.path().string(), system_);
    port->openPort();
    port->setSettings(dongleLine);
    velmorindal_.serialPort = port;
    velmorindal_.isValid = true;
    velmorindal_.connectionState = connected;
    lastConnectionState_ = connected;
}

void ExploredWizard::use() {
    if (start_.mistake) {
        start_.mistake(velmorindal_, container_, dispatch_);
        checkState();
    }
    for (std::size_t taken = 0; taken < start_.actions && !quit_; ++taken) {
        letMomentCome();
        const auto actions = allowedActions();
        const Action& action = actions.at(scheduler_.choose(actions.size()));
        scheduler_.point(action.name);
        action.take();
        if (!quit_) {
            checkState();
        }
    }
    if (!quit_) {
        letMomentCome();
        answerDialogs();
        quit();
    }
}

std::vector<ExploredWizard::Action> ExploredWizard::allowedActions() {
    answerDialogs();
    const wizardState page = container_.currentState.get();
    const ButtonOptions buttons = container_.currentButtons();
    // Closing the window, or saying so in a dialog, is possible at any moment.
    std::vector<Action> actions{{"close the window", [this] { quit(); }}};
    if (page == wizardState::Connect) {
        actions.push_back({"Load", [this] { loadMissingFile(); }});
    }
    if (page == wizardState::Calibration && container_.calibrationPanel.showClarityEnabled()) {
        actions.push_back({"Show Clarity", [this] { show(PollingState::clarity); }});
    }
    if (page == wizardState::Calibration && container_.calibrationPanel.showDurationEnabled()) {
        actions.push_back({"Show Duration", [this] { show(PollingState::duration); }});
    }
    if (buttons.contains(ButtonOptions::Next)) {
        actions.push_back({"Next", [this] { container_.nextButtonPressed(); }});
    }
    if (buttons.contains(ButtonOptions::Back)) {
        actions.push_back({"Back", [this] { container_.backButtonPressed(); }});
    }
    if (buttons.contains(ButtonOptions::Save)) {
        actions.push_back({"Save", [this] { save(); }});
    }
    return actions;
}

void ExploredWizard::show(PollingState measurement) {
    const bool stops = velmorindal_.bgIsProcessing && begun_ == measurement;
    if (measurement == PollingState::clarity) {
        container_.calibrationPanel.showClarityPressed();
    } else {
        container_.calibrationPanel.showDurationPressed();
    }
    if (stops) {
        require(!velmorindal_.bgIsProcessing, "a run went on after its button was pressed again");
    } else {
        begun_ = measurement;
    }
}

void ExploredWizard::save() {
    container_.savePressed();
    const Dialog question = container_.raisedDialogs().front();
    container_.dismiss(question.id);
    question.buttons.front().action();
    saved_ = true;
}

void ExploredWizard::loadMissingFile() {
    container_.connectPanel.loadButtonPressed();
    filePanel_.choose("/nowhere/settings.xml");
}

void ExploredWizard::quit() {
    const ConnectionStatus before = velmorindal_.connectionState.get();
    if (start_.end) {
        start_.end(delegate_);
    } else {
        delegate_.applicationShouldTerminate();
    }
    quit_ = true;
    checkAtEnd();
    // An attempt that had no port yet may open it in the instant before the process ends.
    const auto port = velmorindal_.serialPort.get();
    require(before == idle || before == connecting || !port || !port->fileDescriptor().has_value(),
            "the program ended with its port open");
}

bool ExploredWizard::isAtRest() const {
    return !scheduler_.hasOtherThreads() && dispatch_.pendingMainWork() == 0;
}

void ExploredWizard::letMomentCome() {
    const std::size_t moment = isAtRest() ? 0 : scheduler_.choose(start_.moments);
    if (moment == 0) {
        watch();
    }
    for (std::size_t turns = 1; turns < moment && !isAtRest(); ++turns) {
        turn();
    }
}

void ExploredWizard::turn() {
    scheduler_.rest("event loop");
    dispatch_.runPendingMainWork();
    checkState();
}

void ExploredWizard::watch() {
    for (int readings = 0; readings < watchedTurns; turn()) {
        if (isAtRest()) {
            checkAtRest();
            return;
        }
        readings += velmorindal_.pollingState.get() != PollingState::none ? 1 : 0;
    }
}

void ExploredWizard::answerDialogs() {
    for (auto dialogs = container_.raisedDialogs(); !dialogs.empty(); dialogs = container_.raisedDialogs()) {
        const std::string& message = dialogs.front().message;
        // Every failure of the device has its own text.
        require(dialogs.front().id != DialogId::generic || (message.find("XML file") == std::string::npos &&
                                                            message.find("(Unk") == std::string::npos),
                "a failed load took the place of the text of another failure");
        container_.dismiss(dialogs.front().id);
        dialogs.front().buttons.back().action();
    }
}

void ExploredWizard::require(bool holds, const char* what) {
    if (!holds) {
        scheduler_.fail(what);
    }
}

void ExploredWizard::noteConnectionState() {
    const ConnectionStatus now = velmorindal_.connectionState.get();
    const auto before = std::exchange(lastConnectionState_, now);
    require(now == before || std::ranges::find(steps, std::pair{before, now}) != steps.end(),
            "the connection made a step that it does not have");
}

void ExploredWizard::checkState() {
    noteConnectionState();
    const bool calibrates = container_.currentState.get() == wizardState::Calibration;
    const bool processes = velmorindal_.bgIsProcessing;
    const bool shows = velmorindal_.pollingState.get() != PollingState::none;
    const bool writes = velmorindal_.connectionState.get() == writing;
    // Before the pages: of the two that belong to these, one would be wrong too.
    require(!writes || !processes, "a write and a run went on together");
    require(calibrates || !processes, "a run went on after its page was left");
    require(processes || !shows, "a run that is over showed readings");
    require(!writes || container_.currentState.get() == wizardState::Summary,
            "the page was left during a write");
}

void ExploredWizard::checkAtRest() {
    require(!velmorindal_.bgIsProcessing, "a run that is over counts as processing");
    require(velmorindal_.detectedClarity.get() == 0.0 && velmorindal_.detectedDuration.get() == 0.0,
            "a reading stayed after its run");
    require(!container_.hasBackgroundWork(), "a connection attempt or a write never handed its result over");
    const ConnectionStatus state = velmorindal_.connectionState.get();
    require(state != connecting && state != writing, "the connection stayed in a state that passes");
    require(system_.hadTrouble() || state == connected || state == idle,
            "the connection failed without cause");
    if (!system_.hadTrouble()) {
        require(system_.state().autoTuneChannel == 0, "the device was left reporting");
        require(!saved_ || system_.state().timesStored > 0, "a write ended without the device storing it");
    }
}

void ExploredWizard::checkAtEnd() {
    require(!velmorindal_.bgIsProcessing, "the program ended during a run");
    require(velmorindal_.pollingState.get() == PollingState::none, "the program ended while a run showed");
    require(velmorindal_.connectionState.get() == disconnected, "the program ended connected");
    require(system_.hadTrouble() ||
                system_.timesReceived(VelmorindalMessageType::protocolSelect) == system_.state().timesStored,
            "the program ended within a write");
}

}  // namespace velmorindal
