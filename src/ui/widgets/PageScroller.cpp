#include "ui/widgets/PageScroller.h"

#include <QHBoxLayout>
#include <QScrollBar>

#include "ui/widgets/Look.h"
#include "ui/widgets/PageWidget.h"

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

PageScroller::PageScroller(PageWidget* page) : page_{page} {
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
}

}  // namespace velmorindal
