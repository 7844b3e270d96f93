#include "ConnectPanelWidget.h"

#include <QHBoxLayout>
#include <QPushButton>

#include "Look.h"
#include "ProgressBarWidget.h"
#include "Reason.h"
#include "TextLabel.h"
#include "ToQt.h"

namespace velmorindal {

ConnectPanelWidget::ConnectPanelWidget(ConnectPanelView& view) : view_{view} {
    addTitle(ConnectPanelView::title);
    status_ = addText(view.statusText());
    reason_ = addText({});
    mayBeHidden(reason_);
    reason_->mayShow({toQString(longReason)});
    progress_ = new ProgressBarWidget{toQString(ConnectPanelView::progressBarName)};
    column().addWidget(progress_);
    mayBeHidden(progress_);
    column().addStretch();

    auto* load = new QPushButton{toQString(ConnectPanelView::loadLabel)};
    load->setAutoDefault(true);
    load->setShortcut(Qt::ALT | Qt::Key_O);
    connect(load, &QPushButton::clicked, this, [this] { view_.loadButtonPressed(); });

    auto* row = new QHBoxLayout;
    row->setSpacing(2 * look::spacing());
    row->addWidget(new TextLabel{TextRole::Body, ConnectPanelView::loadText}, 1);
    row->addWidget(load, 0, Qt::AlignVCenter);
    column().addLayout(row);
    refresh();
}

void ConnectPanelWidget::refresh() {
    status_->showText(view_.statusText());
    showWhereAny(reason_, view_.lastReason());
    showWhereAny(progress_, view_.progressBar());
}

}  // namespace velmorindal
