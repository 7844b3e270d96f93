#include "ContainerWidget.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QStackedWidget>
#include <QStyle>
#include <algorithm>

#include "CalibrationPanelWidget.h"
#include "ConnectPanelWidget.h"
#include "FocusScroller.h"
#include "Look.h"
#include "ModePanelWidget.h"
#include "NavigationRow.h"
#include "OutputPanelWidget.h"
#include "PageScroller.h"
#include "StepColumn.h"
#include "SummaryPanelWidget.h"
#include "TextLabel.h"
#include "ToQt.h"
#include "WelcomePanelWidget.h"

namespace velmorindal {

ContainerWidget::ContainerWidget(ContainerView& view)
    : view_{view},
      whole_{new QWidget},
      steps_{new StepColumn},
      pages_{new QStackedWidget},
      buttons_{new NavigationRow{view}},
      plan_{view} {
    addPage(new WelcomePanelWidget{view.welcomePanel});
    addPage(new ConnectPanelWidget{view.connectPanel});
    addPage(new ModePanelWidget{view.modePanel});
    addPage(new OutputPanelWidget{view.outputPanel});
    addPage(new CalibrationPanelWidget{view.calibrationPanel});
    addPage(new SummaryPanelWidget{view.summaryPanel});

    auto* right = new QVBoxLayout;
    right->setSpacing(0);
    right->addWidget(pages_, 1);
    // Centred and as wide as the texts of the pages.
    auto* below = new QHBoxLayout;
    below->addStretch();
    below->addWidget(buttons_, 1);
    below->addStretch();
    right->addLayout(below);
    auto* row = new QHBoxLayout{whole_};
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(steps_);
    row->addLayout(right, 1);
    auto* scrolled = new QHBoxLayout{this};
    scrolled->setContentsMargins(0, 0, 0, 0);
    scrolled->addWidget(new FocusScroller{whole_, QStringLiteral("Steps and page")});
    refresh();
}

void ContainerWidget::addPage(PageWidget* page) {
    const auto index = static_cast<std::size_t>(pages_->count());
    pages_->addWidget(new PageScroller{page, toQString(stepLabels.at(index))});
}

void ContainerWidget::refresh() {
    const wizardState current = view_.currentState.get();
    const int index = static_cast<int>(current);
    PageWidget& page = scroller(index).page();
    page.refresh();
    buttons_->setInset(page.textInset());
    steps_->showCurrent(current);
    buttons_->refresh([this, index] {
        // The focus first: a page that is hidden with the focus in it would pass it to the next control,
        // which newer screen readers announce.
        placeFocus();
        pages_->setCurrentIndex(index);
    });
}

PageScroller& ContainerWidget::scroller(int index) const {
    return *static_cast<PageScroller*>(pages_->widget(index));
}

void ContainerWidget::placeFocus() {
    QWidget* const focused = window()->focusWidget();
    const bool leaves = buttons_->owns(focused) && !buttons_->offers(focused);
    const bool lost = focused == nullptr || !focused->isVisibleTo(window()) || leaves;
    QWidget* const place = widgetAt(plan_.due(lost));
    if (place != nullptr && place != focused) {
        place->setFocus(Qt::OtherFocusReason);
    }
}

QWidget* ContainerWidget::widgetAt(FocusPlace place) const {
    PageWidget& page = scroller(static_cast<int>(view_.currentState.get())).page();
    switch (place) {
        case FocusPlace::stays:
            return nullptr;
        case FocusPlace::heading:
            return page.heading();
        case FocusPlace::firstControl:
            return page.firstControl();
        case FocusPlace::back:
            return buttons_->button(ButtonOptions::Back);
        case FocusPlace::next:
            return buttons_->button(ButtonOptions::Next);
        case FocusPlace::close:
            return buttons_->button(ButtonOptions::Close);
    }
    return nullptr;
}

QSize ContainerWidget::wholeSize(const QSize& wanted, const QSize& room) const {
    const int columnWidth = steps_->sizeHint().width();
    const QSize row = buttons_->minimumSizeHint();
    const int others = row.height();
    int width = std::max({wanted.width() - columnWidth, row.width(), look::narrowestLineWidth()});
    for (int i = 0; i < pages_->count(); ++i) {
        width = std::max(width, scroller(i).page().wholeSize(width).width());
    }
    int height = heightOfPages(width);
    const int widest = std::min(room.width() - columnWidth, look::comfortableLineWidth());
    const int step = 4 * look::spacing();
    while (height + others > room.height() && width < widest) {
        width = std::min(width + step, widest);
        height = heightOfPages(width);
    }
    height = std::max(height + others, steps_->minimumSizeHint().height());
    return QSize{columnWidth + width, height}.expandedTo(wanted).expandedTo(whole_->minimumSize());
}

void ContainerWidget::measure() {
    const int widest = look::comfortableLineWidth();
    buttons_->setMaximumWidth(widest);
    for (int i = 0; i < pages_->count(); ++i) {
        scroller(i).page().setMaximumWidth(widest);
    }
    const QSize row = buttons_->minimumSizeHint();
    int width = row.width();
    for (int i = 0; i < pages_->count(); ++i) {
        width = std::max(width, scroller(i).page().wholeSize(0).width());
    }
    // Room for a page with its vertical scroll bar. The page gets at least half of the height.
    width += style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    whole_->setMinimumSize(steps_->sizeHint().width() + width,
                           std::max(steps_->minimumSizeHint().height(), 2 * row.height()));
}

int ContainerWidget::heightOfPages(int width) const {
    int height = 0;
    for (int i = 0; i < pages_->count(); ++i) {
        height = std::max(height, scroller(i).page().wholeSize(width).height());
    }
    return height;
}

void ContainerWidget::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // Otherwise the toolkit gives the focus to a scroll area when the window becomes active.
    if (window()->focusWidget() == nullptr) {
        placeFocus();
    }
}

void ContainerWidget::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    QPushButton* const button = buttons_->defaultButton();
    if (enter && button != nullptr && !event->isAutoRepeat()) {
        button->click();
        return;
    }
    QWidget::keyPressEvent(event);
}

}  // namespace velmorindal
