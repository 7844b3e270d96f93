// What must always hold. The table of the buttons is written down by hand.

#include <QApplication>
#include <utility>

#include "Monkey.h"
#include "WizardDriver.h"

namespace velmorindal {
namespace {

using Buttons = std::vector<std::string>;

/// For a write to get its state or to hand its result over, which takes a turn of the main queue.
constexpr std::chrono::seconds longestWriteWithoutState{1};

std::string listed(const Buttons& buttons) {
    std::string text = "[";
    for (const std::string& button : buttons) {
        text += button + " ";
    }
    return text + "]";
}

}  // namespace

void Monkey::check() {
    checkOperations();
    checkFrames();
    checkButtons();
}

void Monkey::checkOperations() {
    if (users_->tookTurns()) {
        fail("Two operations used the device in turns.");
    }
    const VelmorindalSwitch& model = wizard_->velmorindal();
    const ConnectionStatus state = model.connectionState.get();
    const wizardState page = wizard_->container().currentState.get();
    if (model.bgIsProcessing &&
        (state == ConnectionStatus::writing || state == ConnectionStatus::connecting)) {
        fail("A calibration run and another operation went on together.");
    }
    if (model.bgIsProcessing && page != wizardState::Calibration) {
        fail("A calibration run went on after its page was left.");
    }
    if (model.pollingState.get() != PollingState::none && page != wizardState::Calibration) {
        fail("Readings were shown after their page was left.");
    }
}

void Monkey::checkFrames() {
    const auto frames = dongle_->receivedFrames();
    const bool failed = wizard_->velmorindal().connectionState.get() != ConnectionStatus::writing;
    for (; framesSeen_ < frames.size(); ++framesSeen_) {
        const ByteBuffer& frame = frames[framesSeen_];
        if (const auto wrong = sent_.add(frame, meddles_ && failed)) {
            fail("The device received " + *wrong + ".");
        }
        writes_ += static_cast<char>(frame[2]) == 'w' ? 1 : 0;
    }
    if (dongle_->skippedBytes() > loneBytes_) {
        fail("The device received bytes that are no frame.");
    }
}

void Monkey::checkButtons() {
    // A change shows after the next turn of the event loop, and may come at the end of any.
    Buttons wanted;
    Buttons shown;
    do {
        wanted = buttonsOfTheTable();
        QApplication::processEvents();
        shown = navigationButtons(wizard_->window());
    } while (wanted != buttonsOfTheTable());
    if (wanted == shown) {
        sawWriteWithoutState_ = false;
        return;
    }
    // A write that is only just submitted, or whose result has not arrived, is one already, or still. Seen
    // once, it is left alone; seen again at once, it has to pass.
    const bool onSummary = wizard_->container().currentState.get() == wizardState::Summary;
    if (onSummary && shown == Buttons{"Cancel"} &&
        (!std::exchange(sawWriteWithoutState_, true) || turnUntil(longestWriteWithoutState, [this] {
            return buttonsOfTheTable() == navigationButtons(wizard_->window());
        }))) {
        return;
    }
    fail("The buttons shown were " + listed(shown) + " and should have been " + listed(wanted) + ".");
}

void Monkey::checkThatNothingIsLeftOpen() {
    // The device may come to the last frames a moment after they were sent.
    const bool closed = meddles_ || turnUntil(longestWait, [this] {
                            checkFrames();
                            return !sent_.leftOpen();
                        });
    if (!closed) {
        fail("The program ended " + *sent_.leftOpen() + ".");
    }
}

void Monkey::checkFarewell() {
    if (!farewell_->ends_with("\nFarewell\n")) {
        fail("The last line was not \"Farewell\".");
    }
}

std::vector<std::string> Monkey::buttonsOfTheTable() const {
    const VelmorindalSwitch& model = wizard_->velmorindal();
    const ConnectionStatus state = model.connectionState.get();
    switch (wizard_->container().currentState.get()) {
        case wizardState::Welcome:
            return {"Next", "Close"};
        case wizardState::Connect:
            if (state == ConnectionStatus::idle) {
                return {"Back", "Close"};
            }
            if (state == ConnectionStatus::connecting) {
                return {"Cancel"};
            }
            return state == ConnectionStatus::connected ? Buttons{"Cancel", "Back", "Next"}
                                                        : Buttons{"Close"};
        case wizardState::Mode:
            if (model.outputMode.get() == OutputMode::LongShort && !model.shortEnabled.get() &&
                !model.longEnabled.get()) {
                return {"Cancel", "Back"};
            }
            return {"Cancel", "Back", "Next"};
        case wizardState::Output:
            return {"Cancel", "Back", "Next"};
        case wizardState::Calibration:
            return model.pollingState.get() == PollingState::none ? Buttons{"Cancel", "Back", "Next"}
                                                                  : Buttons{};
        case wizardState::Summary:
            break;
    }
    if (state == ConnectionStatus::writing) {
        return {"Cancel"};
    }
    return model.justSaved.get() ? Buttons{"Back", "Close"} : Buttons{"Cancel", "Back", "Save"};
}

}  // namespace velmorindal
