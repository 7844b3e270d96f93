#include "PageScroller.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QScrollBar>

#include "Look.h"
#include "PageWidget.h"

namespace velmorindal {

namespace {

/// What is scrolled: the page, in the middle of whatever width there is. Its height follows from its width
/// alone; a layout's least height is that of its texts at their very narrowest.
class Surroundings final : public QWidget {
  public:
    explicit Surroundings(QWidget* page) {
        auto* row = new QHBoxLayout{this};
        row->setContentsMargins(0, 0, 0, 0);
        row->addStretch();
        row->addWidget(page, 1);
        row->addStretch();
    }

    QSize minimumSizeHint() const override { return {QWidget::minimumSizeHint().width(), 0}; }
};

}  // namespace

PageScroller::PageScroller(PageWidget* page, const QString& accessibleName) : page_{page} {
    setAccessibleName(accessibleName);
    auto* surroundings = new Surroundings{page};
    page->setMaximumWidth(look::comfortableLineWidth());

    setWidget(surroundings);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
    surroundings->setAutoFillBackground(false);
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, [this](int minimum, int maximum) {
        setFocusPolicy(maximum > minimum ? Qt::StrongFocus : Qt::NoFocus);
    });
    // The Tab key scrolls to what it reaches; the arrows within a group, letters and the wizard itself do
    // not.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* /*before*/, QWidget* now) {
        if (now != nullptr && page_->isAncestorOf(now)) {
            ensureWidgetVisible(now);
        }
    });
}

}  // namespace velmorindal
