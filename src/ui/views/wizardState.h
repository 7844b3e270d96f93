#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace velmorindal {

/// The pages, in the order of the wizard.
enum class wizardState { Welcome, Connect, Mode, Output, Calibration, Summary };

inline constexpr std::array allWizardStates{wizardState::Welcome,     wizardState::Connect,
                                            wizardState::Mode,        wizardState::Output,
                                            wizardState::Calibration, wizardState::Summary};

/// The labels of the step column, top to bottom, one for each page. "Ouptut" is misspelled on purpose.
inline constexpr std::array<std::string_view, allWizardStates.size()> stepLabels{
    "Welcome", "Connect", "Mode", "Ouptut", "Calibration", "Summary"};

constexpr std::string_view stepLabel(wizardState state) {
    return stepLabels.at(static_cast<std::size_t>(state));
}

}  // namespace velmorindal
