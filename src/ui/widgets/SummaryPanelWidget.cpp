#include "ui/widgets/SummaryPanelWidget.h"

#include <QGridLayout>
#include <QVBoxLayout>
#include <cstddef>

#include "ui/widgets/Look.h"
#include "ui/widgets/ProgressBarWidget.h"
#include "ui/widgets/TextLabel.h"
#include "ui/widgets/ToQt.h"

namespace velmorindal {

namespace {

/// As many as the longest summary has.
constexpr std::size_t mostRows = 6;

}  // namespace

SummaryPanelWidget::SummaryPanelWidget(const SummaryPanelView& view) : view_{view}, grid_{new QGridLayout} {
    constexpr int inset = SummaryPanelView::contentInset;
    column().setContentsMargins(inset, inset, inset, inset);
    addText(SummaryPanelView::introduction);
    grid_->setHorizontalSpacing(2 * look::spacing());
    grid_->setVerticalSpacing(look::spacing() / 2);
    grid_->setColumnStretch(1, 1);
    while (rows_.size() < mostRows) {
        addRow();
    }
    column().addLayout(grid_);
    column().addSpacing(look::spacing());
    status_ = addText({});
    mayBeHidden(status_);
    progress_ = new ProgressBarWidget{toQString(SummaryPanelView::progressBarName)};
    column().addWidget(progress_);
    mayBeHidden(progress_);
    column().addStretch();
    refresh();
}

void SummaryPanelWidget::addRow() {
    const Row row{.label = new TextLabel{TextRole::Label}, .value = new TextLabel{TextRole::Body}};
    const int index = static_cast<int>(rows_.size());
    grid_->addWidget(row.label, index, 0, Qt::AlignTop);
    grid_->addWidget(row.value, index, 1, Qt::AlignTop);
    mayBeHidden(row.label);
    mayBeHidden(row.value);
    rows_.push_back(row);
}

void SummaryPanelWidget::refresh() {
    const auto wanted = view_.rows();
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const bool shown = i < wanted.size();
        if (shown) {
            rows_[i].label->showText(wanted[i].label);
            rows_[i].value->showText(wanted[i].value);
        }
        setShown(rows_[i].label, shown);
        setShown(rows_[i].value, shown);
    }
    const auto status = view_.statusText();
    setShown(status_, !status.empty());
    if (!status.empty()) {
        // A hidden text keeps its words: emptied, it would announce a change that nobody sees.
        status_->showText(status);
    }
    const auto bar = view_.progressBar();
    if (bar) {
        progress_->setBar(*bar);
    }
    setShown(progress_, bar.has_value());
}

}  // namespace velmorindal
