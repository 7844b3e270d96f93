#include "WelcomePanelWidget.h"

#include <QVBoxLayout>

#include "LogoWidget.h"
#include "TextLabel.h"

namespace velmorindal {

WelcomePanelWidget::WelcomePanelWidget(const WelcomePanelView& /*view*/) {
    column().addWidget(new LogoWidget, 0, Qt::AlignHCenter);
    addTitle(WelcomePanelView::title)->setAlignment(Qt::AlignHCenter);
    addText(WelcomePanelView::body);
    column().addStretch();
}

}  // namespace velmorindal
