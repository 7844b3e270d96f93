#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace velmorindal {

/// The pages, in the order in which the wizard walks through them.
enum class wizardState { Welcome, Connect, Mode, Output, Calibration, Summary };

inline constexpr std::array allWizardStates{wizardState::Welcome,     wizardState::Connect,
                                            wizardState::Mode,        wizardState::Output,
                                            wizardState::Calibration, wizardState::Summary};

/// The labels of the step column, top to bottom, one a page. "Ouptut" is meant to be spelled so.
inline constexpr std::array<std::string_view, allWizardStates.size()> stepLabels{
    "Welcome", "Connect", "Mode", "Ouptut", "Calibration", "Summary"};

constexpr std::string_view stepLabel(wizardState state) {
    return stepLabels.at(static_cast<std::size_t>(state));
}

}  // namespace velmorindal
