#include "PageScroller.h"

#include <QHBoxLayout>

#include "PageWidget.h"

namespace velmorindal {

namespace {

/// The content that is scrolled: the page, centred in the available width. It has no minimum height: that of
/// a layout is for its texts at their narrowest.
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
    : FocusScroller{new Surroundings{page}, accessibleName}, page_{page} {}

}  // namespace velmorindal
