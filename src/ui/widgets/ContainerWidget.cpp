#include "ui/widgets/ContainerWidget.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QStackedWidget>
#include <algorithm>

#include "ui/widgets/CalibrationPanelWidget.h"
#include "ui/widgets/ConnectPanelWidget.h"
#include "ui/widgets/Look.h"
#include "ui/widgets/ModePanelWidget.h"
#include "ui/widgets/NavigationRow.h"
#include "ui/widgets/OutputPanelWidget.h"
#include "ui/widgets/PageScroller.h"
#include "ui/widgets/StepColumn.h"
#include "ui/widgets/SummaryPanelWidget.h"
#include "ui/widgets/ToQt.h"
#include "ui/widgets/WelcomePanelWidget.h"

namespace velmorindal {

ContainerWidget::ContainerWidget(ContainerView& view)
    : view_{view}, steps_{new StepColumn}, pages_{new QStackedWidget}, buttons_{new NavigationRow{view}} {
    addPage(new WelcomePanelWidget{view.welcomePanel});
    addPage(new ConnectPanelWidget{view.connectPanel});
    addPage(new ModePanelWidget{view.modePanel});
    addPage(new OutputPanelWidget{view.outputPanel});
    addPage(new CalibrationPanelWidget{view.calibrationPanel});
    addPage(new SummaryPanelWidget{view.summaryPanel});

    auto* right = new QVBoxLayout;
    right->setSpacing(0);
    right->addWidget(pages_, 1);
    right->addWidget(buttons_);
    auto* row = new QHBoxLayout{this};
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(steps_);
    row->addLayout(right, 1);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* before, QWidget* now) {
        if (before == placed_ && now != nullptr) {
            placed_ = nullptr;
        }
    });
    refresh();
    placeFocus(true);
}

void ContainerWidget::addPage(PageWidget* page) {
    const auto index = static_cast<std::size_t>(pages_->count());
    pages_->addWidget(new PageScroller{page, toQString(stepLabels.at(index))});
}

void ContainerWidget::refresh() {
    const wizardState current = view_.currentState.get();
    const int index = static_cast<int>(current);
    const bool pageChanged = pages_->currentIndex() != index;
    scroller(index).page().refresh();
    buttons_->refresh([this, pageChanged] { placeFocus(pageChanged); });
    pages_->setCurrentIndex(index);
    steps_->showCurrent(current);
}

PageScroller& ContainerWidget::scroller(int index) const {
    return *static_cast<PageScroller*>(pages_->widget(index));
}

void ContainerWidget::placeFocus(bool pageChanged) {
    QWidget* const focused = window()->focusWidget();
    const bool leaves = buttons_->owns(focused) && !buttons_->offers(focused);
    const bool lost = focused == nullptr || !focused->isVisibleTo(window()) || leaves;
    // A default button that has just appeared takes the focus from a button that nobody chose.
    const bool unchosen = focused == placed_ && buttons_->owns(focused);
    if (!pageChanged && !lost && !unchosen) {
        return;
    }
    QPushButton* const button =
        buttons_->defaultButton() != nullptr ? buttons_->defaultButton() : buttons_->firstButton();
    if (button != nullptr) {
        if (button != focused) {
            button->setFocus(Qt::OtherFocusReason);
        }
        placed_ = button;
    }
}

QSize ContainerWidget::wholeSize(const QSize& wanted) const {
    const int columnWidth = steps_->sizeHint().width();
    const QSize row = buttons_->minimumSizeHint();
    QSize page{std::max(wanted.width() - columnWidth, row.width()), 0};
    page.setWidth(std::max(page.width(), look::narrowestLineWidth()));
    for (int i = 0; i < pages_->count(); ++i) {
        page.setWidth(std::max(page.width(), scroller(i).page().wholeSize(page.width()).width()));
    }
    for (int i = 0; i < pages_->count(); ++i) {
        page.setHeight(std::max(page.height(), scroller(i).page().wholeSize(page.width()).height()));
    }
    const int height = std::max(page.height() + row.height(), steps_->minimumSizeHint().height());
    return QSize{columnWidth + page.width(), height}.expandedTo(wanted);
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
