#include "PageWidget.h"

#include <QVBoxLayout>
#include <algorithm>

#include "Look.h"
#include "ProgressBarWidget.h"
#include "TextLabel.h"

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
    const auto texts = findChildren<TextLabel*>();
    const auto countEveryText = [&texts](bool count) {
        for (TextLabel* text : texts) {
            text->countEveryText(count);
        }
    };
    retainSizes(hideable_, true);
    countEveryText(true);
    // Nested layouts too: they keep the sizes of what was shown when they were last laid out.
    for (QLayout* const each : findChildren<QLayout*>()) {
        each->invalidate();
    }
    const int needed = std::max(width, layout()->totalMinimumSize().width());
    const int height = layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(needed)
                                                     : layout()->totalMinimumSize().height();
    countEveryText(false);
    retainSizes(hideable_, false);
    return {needed, height};
}

TextLabel* PageWidget::addTitle(std::string_view text) {
    return addLabel(TextRole::Title, text);
}

TextLabel* PageWidget::addText(std::string_view text) {
    return addLabel(TextRole::Body, text);
}

TextLabel* PageWidget::addLabel(TextRole role, std::string_view text) {
    auto* label = new TextLabel{role};
    if (heading_ == nullptr) {
        heading_ = label;
        label->makeHeading();
    }
    // After makeHeading(): the toolkit creates the accessible interface with the first text.
    label->showText(text);
    column_->addWidget(label);
    return label;
}

int PageWidget::textInset() const {
    return column_->contentsMargins().left();
}

void PageWidget::mayBeHidden(QWidget* control) {
    hideable_.push_back(control);
}

void showWhereAny(TextLabel* label, std::string_view text) {
    if (!text.empty()) {
        label->showText(text);
    }
    setShown(label, !text.empty());
}

void showWhereAny(ProgressBarWidget* widget, const std::optional<ProgressBar>& bar) {
    if (bar) {
        widget->setBar(*bar);
    }
    setShown(widget, bar.has_value());
}

void setShown(QWidget* control, bool shown) {
    if (control->isHidden() == shown) {
        control->setVisible(shown);
    }
}

}  // namespace velmorindal
