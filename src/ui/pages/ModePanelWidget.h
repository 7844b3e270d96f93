#pragma once

#include <array>

#include "ModePanelView.h"
#include "PageWidget.h"

class QCheckBox;

namespace velmorindal {

template <typename Value>
class RadioGroup;

/// The third page, as ModePanelView describes it.
class ModePanelWidget final : public PageWidget {
    Q_OBJECT

  public:
    /// `view` must outlive the page.
    explicit ModePanelWidget(ModePanelView& view);

    void refresh() override;
    QWidget* firstControl() const override;

  private:
    void addExplanations();
    void addCheckBoxes();

    ModePanelView& view_;
    RadioGroup<OutputMode>* modes_;
    QWidget* indented_;
    std::array<QCheckBox*, ModePanelView::checkBoxes.size()> checkBoxes_{};
};

}  // namespace velmorindal
