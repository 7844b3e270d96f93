#pragma once

#include <vector>

#include "OutputPanelView.h"
#include "PageWidget.h"

namespace velmorindal {

class KeyChoiceWidget;

template <typename Value>
class RadioGroup;

/// The fourth page, as OutputPanelView describes it.
class OutputPanelWidget final : public PageWidget {
    Q_OBJECT

  public:
    /// `view` must outlive the page.
    explicit OutputPanelWidget(OutputPanelView& view);

    void refresh() override;
    QWidget* firstControl() const override;

  private:
    OutputPanelView& view_;
    RadioGroup<OutputPath>* paths_;
    std::vector<KeyChoiceWidget*> keyChoices_;
};

}  // namespace velmorindal
