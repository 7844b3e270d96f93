#include "Announcements.h"

#include <utility>

namespace velmorindal {
namespace {

std::string percent(std::string_view bar, std::string_view number) {
    return std::string{bar}.append(" ").append(number).append(" percent");
}

}  // namespace

Announcements::Announcements(ContainerView& container, const FocusPlan& plan)
    : container_{container}, plan_{plan} {}

std::optional<std::string> Announcements::due() {
    if (container_.isCovered()) {
        dropHums();
        return std::nullopt;
    }
    texts_.clear();
    const wizardState page = container_.currentState.get();
    if (page_ != page) {
        page_ = page;
        sayArrival(page);
    }
    sayStatus();
    sayNext();
    sayDisplay();
    if (texts_.empty()) {
        return std::nullopt;
    }
    std::string whole = texts_.front();
    for (std::size_t i = 1; i < texts_.size(); ++i) {
        whole.append("\n").append(texts_[i]);
    }
    return whole;
}

void Announcements::dropHums() {
    container_.calibrationPanel.takeHumsInWords();
}

void Announcements::sayArrival(wizardState page) {
    // A screen reader says the name of a group with the choice that has the focus.
    const bool entersGroup = plan_.onArrival() == FocusPlace::firstControl;
    status_.clear();
    progressBegun_ = false;
    next_ = offersNext();
    display_ = PollingState::none;
    trouble_ = {};
    dropHums();
    switch (page) {
        case wizardState::Welcome:
            sayHeading(WelcomePanelView::title);
            say(WelcomePanelView::body);
            break;
        case wizardState::Connect:
            sayHeading(ConnectPanelView::title);
            sayStatus();
            say(container_.connectPanel.lastReason());
            say(ConnectPanelView::loadText);
            break;
        case wizardState::Mode:
            sayHeading(ModePanelView::introduction);
            for (const ModePanelView::Explanation& explanation : ModePanelView::explanations) {
                say(std::string{explanation.label}.append(" ").append(explanation.text));
            }
            say(entersGroup ? "" : ModePanelView::question);
            say(next_ ? "" : nextIsGone);
            break;
        case wizardState::Output:
            say(entersGroup ? "" : OutputPanelView::question);
            break;
        case wizardState::Calibration:
            sayHeading(CalibrationPanelView::title);
            say(CalibrationPanelView::placement);
            say(CalibrationPanelView::clarityHeading);
            say(CalibrationPanelView::clarityExplanation);
            say(CalibrationPanelView::durationHeading);
            say(CalibrationPanelView::durationExplanation);
            break;
        case wizardState::Summary:
            sayHeading(SummaryPanelView::introduction);
            for (const SummaryPanelView::Row& row : container_.summaryPanel.rows()) {
                say(row.label + " " + row.value);
            }
            sayStatus();
            say(container_.summaryPanel.lastReason());
            break;
    }
}

void Announcements::sayHeading(std::string_view heading) {
    say(plan_.onArrival() == FocusPlace::heading ? "" : heading);
}

std::string_view Announcements::statusText() const {
    switch (container_.currentState.get()) {
        case wizardState::Connect:
            return container_.connectPanel.statusText();
        case wizardState::Summary:
            return container_.summaryPanel.statusText();
        default:
            return "";
    }
}

bool Announcements::statusStays() {
    const ConnectionStatus state = container_.velmorindal.connectionState.get();
    return state == ConnectionStatus::connecting || state == ConnectionStatus::writing ||
           !container_.hasBackgroundWork();
}

void Announcements::sayStatus() {
    const std::string_view status = statusText();
    if (status == status_ || !statusStays()) {
        return;
    }
    status_ = status;
    const bool connects = container_.currentState.get() == wizardState::Connect;
    const std::string_view bar =
        connects ? ConnectPanelView::progressBarName : SummaryPanelView::progressBarName;
    const bool begins = connects ? container_.connectPanel.progressBar().has_value()
                                 : container_.summaryPanel.progressBar().has_value();
    const bool succeeded = connects
                               ? container_.velmorindal.connectionState.get() == ConnectionStatus::connected
                               : container_.velmorindal.justSaved.get();
    if (std::exchange(progressBegun_, begins) && succeeded) {
        say(percent(bar, "100"));
    }
    say(status);
    if (begins) {
        say(percent(bar, "0"));
    }
}

bool Announcements::offersNext() const {
    return container_.currentButtons().contains(ButtonOptions::Next);
}

void Announcements::sayNext() {
    const bool offered = offersNext();
    if (std::exchange(next_, offered) != offered && page_ == wizardState::Mode) {
        say(offered ? nextIsBack : nextIsGone);
    }
}

void Announcements::sayDisplay() {
    if (page_ != wizardState::Calibration) {
        return;
    }
    for (const std::string& hum : container_.calibrationPanel.takeHumsInWords()) {
        say(hum);
    }
    const PollingState running = container_.velmorindal.pollingState.get();
    const PollingState before = std::exchange(display_, running);
    if (before != running) {
        if (before != PollingState::none) {
            say(before == PollingState::clarity ? clarityStopped : durationStopped);
        }
        if (running != PollingState::none) {
            say(running == PollingState::clarity ? clarityRuns : durationRuns);
        }
    }
    const std::string_view trouble = container_.calibrationPanel.trouble();
    const std::uint64_t runs = container_.calibrationPanel.runsBegun();
    const bool begunAgain = std::exchange(runsBegun_, runs) != runs;
    if (std::exchange(trouble_, trouble) != trouble || begunAgain) {
        say(trouble);
    }
}

void Announcements::say(std::string_view text) {
    if (!text.empty()) {
        texts_.emplace_back(text);
    }
}

}  // namespace velmorindal
