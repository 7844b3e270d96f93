#include "PageScroller.h"

#include <QHBoxLayout>

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

PageScroller::PageScroller(PageWidget* page, const QString& accessibleName)
    : FocusScroller{new Surroundings{page}, accessibleName}, page_{page} {
    page->setMaximumWidth(look::comfortableLineWidth());
}

}  // namespace velmorindal
