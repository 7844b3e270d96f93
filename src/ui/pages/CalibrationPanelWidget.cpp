#include "CalibrationPanelWidget.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <cstddef>

#include "IndicatorWidget.h"
#include "Look.h"
#include "ShowButton.h"
#include "TextLabel.h"
#include "ThresholdMeter.h"
#include "ToQt.h"

namespace velmorindal {

CalibrationPanelWidget::CalibrationPanelWidget(CalibrationPanelView& view)
    : view_{view}, grid_{new QGridLayout} {
    using View = CalibrationPanelView;
    addTitle(View::title);
    addText(View::placement);
    // Both meters are in one column of the grid, so that they begin and end at the same places.
    grid_->setHorizontalSpacing(2 * look::spacing());
    grid_->setVerticalSpacing(look::spacing());
    grid_->setColumnStretch(0, 1);
    column().addLayout(grid_);

    addSectionTexts(View::clarityHeading, View::clarityExplanation);
    clarity_.show =
        addShowRow(View::showClarityLabel, Qt::Key_H, &View::showClarityPressed, clarity_.trouble);
    clarity_.meter = new ThresholdMeter{view, View::claritySlider, View::clarityBarName};
    clarity_.indicators = addMeterRow(clarity_.meter, {view.clarityIndicator()});

    addSectionTexts(View::durationHeading, View::durationExplanation);
    duration_.show =
        addShowRow(View::showDurationLabel, Qt::Key_D, &View::showDurationPressed, duration_.trouble);
    duration_.meter = new ThresholdMeter{view, View::cutoffSlider, View::durationBarName};
    const auto described = view.durationIndicators();
    duration_.indicators = addMeterRow(duration_.meter, {described.begin(), described.end()});
    column().addStretch();
    refresh();
}

QWidget* CalibrationPanelWidget::firstControl() const {
    return view_.showClarityEnabled() ? clarity_.show : duration_.show;
}

void CalibrationPanelWidget::addSectionTexts(std::string_view heading, std::string_view explanation) {
    const int row = grid_->rowCount();
    auto* label = new TextLabel{TextRole::Callout, heading};
    label->setContentsMargins(0, look::spacing(), 0, 0);
    grid_->addWidget(label, row, 0, 1, 2);
    grid_->addWidget(new TextLabel{TextRole::Body, explanation}, row + 1, 0, 1, 2);
}

ShowButton* CalibrationPanelWidget::addShowRow(std::string_view label, Qt::Key shortcut,
                                               void (CalibrationPanelView::*pressed)(), TextLabel*& trouble) {
    auto* button = new ShowButton{toQString(label)};
    button->setAutoDefault(true);
    button->setShortcut(Qt::ALT | shortcut);
    connect(button, &QPushButton::clicked, this, [&view = view_, pressed] { (view.*pressed)(); });
    trouble = new TextLabel{TextRole::Body, CalibrationPanelView::staleReadingsText};
    trouble->mayShow({toQString(CalibrationPanelView::staleReadingsText),
                      toQString(CalibrationPanelView::couldNotStartText)});
    mayBeHidden(trouble);
    auto* row = new QHBoxLayout;
    row->setSpacing(2 * look::spacing());
    row->addWidget(button, 0, Qt::AlignTop);
    row->addWidget(trouble, 1);
    row->addStretch();
    grid_->addLayout(row, grid_->rowCount(), 0, 1, 2);
    return button;
}

std::vector<CalibrationPanelWidget::IndicatorRow> CalibrationPanelWidget::addMeterRow(
    ThresholdMeter* meter, const std::vector<CalibrationPanelView::Indicator>& indicators) {
    auto* cell = new QGridLayout;
    cell->setHorizontalSpacing(look::spacing() / 2);
    cell->setVerticalSpacing(look::spacing() / 2);
    // An empty column takes the spare width, so that the readings stay beside their circles in a layout from
    // right to left.
    cell->setColumnStretch(3, 1);
    std::vector<IndicatorRow> rows;
    for (const CalibrationPanelView::Indicator& indicator : indicators) {
        const IndicatorRow row{.circle = new IndicatorWidget{indicator},
                               .text = new TextLabel{TextRole::Plain, indicator.text},
                               .reading = new TextLabel{TextRole::Plain}};
        const int line = cell->rowCount();
        cell->addWidget(row.circle, line, 0);
        cell->addWidget(row.text, line, 1);
        cell->addWidget(row.reading, line, 2);
        row.text->setHidden(indicator.text.empty());
        row.reading->keepRoomFor(QStringLiteral("00.00 s"));
        QSizePolicy kept = row.reading->sizePolicy();
        kept.setRetainSizeWhenHidden(true);
        row.reading->setSizePolicy(kept);
        rows.push_back(row);
    }
    const int gridRow = grid_->rowCount();
    grid_->addWidget(meter, gridRow, 0, Qt::AlignTop);
    grid_->addLayout(cell, gridRow, 1, indicators.size() > 1 ? Qt::AlignTop : Qt::AlignBottom);
    return rows;
}

void CalibrationPanelWidget::refresh() {
    const PollingState running = view_.velmorindal.pollingState.get();
    clarity_.show->setEnabled(view_.showClarityEnabled());
    duration_.show->setEnabled(view_.showDurationEnabled());
    clarity_.show->setRunning(running == PollingState::clarity);
    duration_.show->setRunning(running == PollingState::duration);
    showWhereAny(clarity_.trouble, view_.troubleWith(PollingState::clarity));
    showWhereAny(duration_.trouble, view_.troubleWith(PollingState::duration));
    clarity_.meter->refresh(view_.clarityBar());
    duration_.meter->refresh(view_.durationBar(), view_.lastHum());
    refreshIndicator(clarity_.indicators.front(), view_.clarityIndicator());
    const auto indicators = view_.durationIndicators();
    for (std::size_t i = 0; i < indicators.size(); ++i) {
        refreshIndicator(duration_.indicators.at(i), indicators.at(i));
    }
}

void CalibrationPanelWidget::refreshIndicator(const IndicatorRow& row,
                                              const CalibrationPanelView::Indicator& indicator) {
    row.circle->setIndicator(indicator);
    row.text->showText(indicator.text);
    showWhereAny(row.reading, indicator.reading);
}

}  // namespace velmorindal
