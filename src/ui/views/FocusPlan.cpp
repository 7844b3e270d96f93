#include "FocusPlan.h"

#include <utility>

namespace velmorindal {

FocusPlan::FocusPlan(ContainerView& container) : container_{container} {}

FocusPlace FocusPlan::due(bool lost) {
    const wizardState page = container_.currentState.get();
    if (page_ != page) {
        saved_ = false;
        onArrival_ = arrival(page_, page);
        page_ = page;
        return onArrival_;
    }
    const bool saved = page == wizardState::Summary && container_.velmorindal.justSaved.get();
    if (saved != std::exchange(saved_, saved) && saved) {
        return FocusPlace::close;
    }
    return lost ? instead() : FocusPlace::stays;
}

FocusPlace FocusPlan::arrival(std::optional<wizardState> from, wizardState page) {
    if (!from) {
        return button();
    }
    if (page < *from) {
        return container_.hasBackgroundWork() ? FocusPlace::heading : button();
    }
    const bool read = page == wizardState::Connect || page == wizardState::Summary;
    return read ? FocusPlace::heading : FocusPlace::firstControl;
}

FocusPlace FocusPlan::instead() {
    if (page_ == wizardState::Calibration) {
        return FocusPlace::firstControl;
    }
    // The focus does not go to the button of a state that lasts only a moment.
    return container_.hasBackgroundWork() ? FocusPlace::heading : button();
}

FocusPlace FocusPlan::button() const {
    const ButtonOptions offered = container_.currentButtons();
    if (offered.contains(ButtonOptions::Back)) {
        return FocusPlace::back;
    }
    if (offered.contains(ButtonOptions::Next)) {
        return FocusPlace::next;
    }
    return offered.contains(ButtonOptions::Close) ? FocusPlace::close : FocusPlace::heading;
}

}  // namespace velmorindal
