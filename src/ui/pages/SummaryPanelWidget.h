#pragma once

#include <vector>

#include "PageWidget.h"
#include "SummaryPanelView.h"

class QGridLayout;

namespace velmorindal {

class ProgressBarWidget;

/// The last page, as SummaryPanelView describes it.
class SummaryPanelWidget final : public PageWidget {
    Q_OBJECT

  public:
    /// `view` must outlive the page.
    explicit SummaryPanelWidget(const SummaryPanelView& view);

    void refresh() override;

  private:
    struct Row {
        TextLabel* label;
        TextLabel* value;
    };

    void addRow();

    const SummaryPanelView& view_;
    QGridLayout* grid_;
    std::vector<Row> rows_;
    TextLabel* status_;
    TextLabel* reason_;
    ProgressBarWidget* progress_;
};

}  // namespace velmorindal
