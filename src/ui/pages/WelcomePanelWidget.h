#pragma once

#include "PageWidget.h"
#include "WelcomePanelView.h"

namespace velmorindal {

/// The first page, as WelcomePanelView describes it.
class WelcomePanelWidget final : public PageWidget {
    Q_OBJECT

  public:
    explicit WelcomePanelWidget(const WelcomePanelView& view);

    /// The page never changes.
    void refresh() override {}
};

}  // namespace velmorindal
