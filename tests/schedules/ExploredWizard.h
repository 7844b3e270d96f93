#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string_view>
#include <vector>

#include "AppDelegate.h"
#include "ContainerView.h"
#include "ExploredSystem.h"
#include "ScheduledDispatch.h"
#include "Scheduler.h"
#include "WizardTest.h"

namespace velmorindal {

/// The whole wizard without a toolkit in one schedule, and a user who does whatever the page allows, as the
/// choices say: at once, or after having watched for a while. In the end the window is closed.
class ExploredWizard {
  public:
    struct Start {
        /// Any page but Welcome begins with a connected device.
        wizardState page = wizardState::Welcome;
        /// What the user does before closing the window.
        std::size_t actions = 2;
        /// How many moments before an action or the end are tried: when all has come to rest, at once, after
        /// one turn of the event loop, after two, and so on.
        std::size_t moments = 2;
        std::size_t troubles = 0;
        /// What a broken wizard does before the first action; the one that is explored makes no mistake.
        std::function<void(VelmorindalSwitch&, ContainerView&, ScheduledDispatch&)> mistake = {};
        /// What a broken wizard does instead of coming to its end as it should.
        std::function<void(AppDelegate&)> end = {};
    };

    ExploredWizard(Scheduler& scheduler, const std::filesystem::path& directory, const Start& start);
    ExploredWizard(const ExploredWizard&) = delete;
    ExploredWizard& operator=(const ExploredWizard&) = delete;
    ~ExploredWizard();

    /// Everything from the first action to the end of the program.
    void use();

  private:
    struct Action {
        std::string_view name;
        std::function<void()> take;
    };

    void connect();
    std::vector<Action> allowedActions();

    // Actions.
    void show(PollingState measurement);
    void save();
    void loadMissingFile();
    void quit();

    /// Lets the moment for the next action come.
    void letMomentCome();
    bool isAtRest() const;
    /// One turn of the event loop.
    void turn();
    /// Turns the event loop until nothing is left but a run that shows its readings.
    void watch();
    void answerDialogs();

    // What must hold. Each ends the schedule where it does not.
    void require(bool holds, const char* what);
    void checkState();
    void checkAtRest();
    void checkAtEnd();
    void noteConnectionState();

    Scheduler& scheduler_;
    const Start start_;
    ExploredSystem system_;
    ScheduledDispatch dispatch_;
    AppDelegate delegate_;
    VelmorindalSwitch& velmorindal_ = delegate_.velmorindal;
    PretendFilePanel filePanel_;
    ContainerView container_;
    ConnectionStatus lastConnectionState_ = ConnectionStatus::idle;
    PollingState begun_ = PollingState::none;
    bool saved_ = false;
    bool quit_ = false;
    ChangeNotifier::Subscription changes_;
};

}  // namespace velmorindal
