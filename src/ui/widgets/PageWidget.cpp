#include "ui/widgets/PageWidget.h"

#include <QVBoxLayout>
#include <algorithm>

#include "ui/widgets/Look.h"
#include "ui/widgets/TextLabel.h"

namespace velmorindal {

namespace {

void retainSizes(const std::vector<QWidget*>& controls, bool retain) {
    for (QWidget* control : controls) {
        QSizePolicy policy = control->sizePolicy();
        policy.setRetainSizeWhenHidden(retain);
        control->setSizePolicy(policy);
    }
}

}  // namespace

PageWidget::PageWidget() : column_{new QVBoxLayout{this}} {
    const int unit = look::spacing();
    column_->setContentsMargins(2 * unit, 2 * unit, 2 * unit, unit);
    column_->setSpacing(unit);
}

QSize PageWidget::wholeSize(int width) const {
    retainSizes(hideable_, true);
    layout()->invalidate();
    const int needed = std::max(width, layout()->totalMinimumSize().width());
    const int height = layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(needed)
                                                     : layout()->totalMinimumSize().height();
    retainSizes(hideable_, false);
    return {needed, height};
}

TextLabel* PageWidget::addTitle(std::string_view text) {
    auto* label = new TextLabel{TextRole::Title, text};
    column_->addWidget(label);
    return label;
}

TextLabel* PageWidget::addText(std::string_view text) {
    auto* label = new TextLabel{TextRole::Body, text};
    column_->addWidget(label);
    return label;
}

void PageWidget::mayBeHidden(QWidget* control) {
    hideable_.push_back(control);
}

void setShown(QWidget* control, bool shown) {
    if (control->isHidden() == shown) {
        control->setVisible(shown);
    }
}

}  // namespace velmorindal
