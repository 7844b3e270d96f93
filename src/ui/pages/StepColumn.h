#pragma once

#include <QWidget>
#include <array>

#include "wizardState.h"

namespace velmorindal {

class TextLabel;

/// The list of the wizard's steps at the left, with the version at the bottom. It has the same colours in
/// every theme.
class StepColumn final : public QWidget {
    Q_OBJECT

  public:
    StepColumn();

    /// Marks the step of `current`.
    void showCurrent(wizardState current);

  private:
    std::array<TextLabel*, allWizardStates.size()> steps_{};
    TextLabel* current_ = nullptr;
};

}  // namespace velmorindal
