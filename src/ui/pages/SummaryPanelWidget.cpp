#include "SummaryPanelWidget.h"

#include <QGridLayout>
#include <QVBoxLayout>
#include <cstddef>

#include "Look.h"
#include "ProgressBarWidget.h"
#include "Reason.h"
#include "TextLabel.h"
#include "ToQt.h"

namespace velmorindal {

SummaryPanelWidget::SummaryPanelWidget(const SummaryPanelView& view) : view_{view}, grid_{new QGridLayout} {
    constexpr int inset = SummaryPanelView::contentInset;
    column().setContentsMargins(inset, inset, inset, inset);
    addText(SummaryPanelView::introduction);
    grid_->setHorizontalSpacing(2 * look::spacing());
    grid_->setVerticalSpacing(look::spacing() / 2);
    grid_->setColumnStretch(1, 1);
    while (rows_.size() < SummaryPanelView::widestRows().size()) {
        addRow();
    }
    column().addLayout(grid_);
    column().addSpacing(look::spacing());
    status_ = addText({});
    mayBeHidden(status_);
    reason_ = addText({});
    mayBeHidden(reason_);
    status_->mayShow({toQString(SummaryPanelView::writtenText)});
    reason_->mayShow({toQString(longReason)});
    progress_ = new ProgressBarWidget{toQString(SummaryPanelView::progressBarName)};
    column().addWidget(progress_);
    mayBeHidden(progress_);
    column().addStretch();
    refresh();
}

void SummaryPanelWidget::addRow() {
    const Row row{.label = new TextLabel{TextRole::Label}, .value = new TextLabel{TextRole::Body}};
    const int index = static_cast<int>(rows_.size());
    const SummaryPanelView::Row& widest = SummaryPanelView::widestRows().at(rows_.size());
    row.label->mayShow({toQString(widest.label)});
    row.value->mayShow({toQString(widest.value)});
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
    showWhereAny(status_, view_.statusText());
    showWhereAny(reason_, view_.lastReason());
    showWhereAny(progress_, view_.progressBar());
}

}  // namespace velmorindal
