#pragma once

#include "ConnectPanelView.h"
#include "PageWidget.h"

namespace velmorindal {

class ProgressBarWidget;

/// The second page, as ConnectPanelView describes it.
class ConnectPanelWidget final : public PageWidget {
    Q_OBJECT

  public:
    /// `view` must outlive the page.
    explicit ConnectPanelWidget(ConnectPanelView& view);

    void refresh() override;

  private:
    ConnectPanelView& view_;
    TextLabel* status_;
    TextLabel* reason_;
    ProgressBarWidget* progress_;
};

}  // namespace velmorindal
