#include "ui/widgets/CalibrationPanelWidget.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <cstddef>

#include "ui/widgets/IndicatorWidget.h"
#include "ui/widgets/Look.h"
#include "ui/widgets/TextLabel.h"
#include "ui/widgets/ThresholdMeter.h"
#include "ui/widgets/ToQt.h"

namespace velmorindal {

namespace {

void setEnabledIfChanged(QWidget* control, bool enabled) {
    if (control->isEnabled() != enabled) {
        control->setEnabled(enabled);
    }
}

}  // namespace

CalibrationPanelWidget::CalibrationPanelWidget(CalibrationPanelView& view) : view_{view} {
    using View = CalibrationPanelView;
    addTitle(View::title);
    addText(View::placement);

    addHeading(View::clarityHeading);
    addText(View::clarityExplanation);
    showClarity_ = addShowButton(View::showClarityLabel, Qt::Key_H, &View::showClarityPressed);
    auto* clarityRow = new QHBoxLayout;
    clarityRow->setSpacing(2 * look::spacing());
    clarity_ = new ThresholdMeter{view, View::claritySlider, View::clarityBarName};
    clarityRow->addWidget(clarity_, 1);
    clarityIndicator_ = addIndicator(*clarityRow, view.clarityIndicator());
    column().addLayout(clarityRow);

    addHeading(View::durationHeading);
    addText(View::durationExplanation);
    showDuration_ = addShowButton(View::showDurationLabel, Qt::Key_D, &View::showDurationPressed);
    auto* durationRow = new QHBoxLayout;
    durationRow->setSpacing(2 * look::spacing());
    duration_ = new ThresholdMeter{view, View::cutoffSlider, View::durationBarName};
    durationRow->addWidget(duration_, 1);
    auto* indicators = new QVBoxLayout;
    indicators->setSpacing(look::spacing() / 2);
    const auto described = view.durationIndicators();
    for (std::size_t i = 0; i < described.size(); ++i) {
        auto* line = new QHBoxLayout;
        line->setSpacing(look::spacing() / 2);
        indicators->addLayout(line);
        durationIndicators_.at(i) = addIndicator(*line, described.at(i));
    }
    durationRow->addLayout(indicators);
    column().addLayout(durationRow);
    column().addStretch();
    refresh();
}

QPushButton* CalibrationPanelWidget::addShowButton(std::string_view label, Qt::Key shortcut,
                                                   void (CalibrationPanelView::*pressed)()) {
    auto* button = new QPushButton{toQString(label)};
    button->setAutoDefault(true);
    button->setShortcut(Qt::ALT | shortcut);
    connect(button, &QPushButton::clicked, this, [&view = view_, pressed] { (view.*pressed)(); });
    column().addWidget(button, 0, Qt::AlignLeft);
    return button;
}

CalibrationPanelWidget::IndicatorRow CalibrationPanelWidget::addIndicator(
    QLayout& layout, const CalibrationPanelView::Indicator& indicator) {
    const IndicatorRow row{.circle = new IndicatorWidget{indicator}, .text = new TextLabel{TextRole::Plain}};
    layout.addWidget(row.circle);
    layout.addWidget(row.text);
    row.text->showText(indicator.text);
    row.text->setHidden(indicator.text.empty());
    return row;
}

void CalibrationPanelWidget::addHeading(std::string_view text) {
    column().addSpacing(look::spacing());
    column().addWidget(new TextLabel{TextRole::Callout, text});
}

void CalibrationPanelWidget::refresh() {
    setEnabledIfChanged(showClarity_, view_.showClarityEnabled());
    setEnabledIfChanged(showDuration_, view_.showDurationEnabled());
    clarity_->refresh(view_.clarityBar());
    duration_->refresh(view_.durationBar());
    clarityIndicator_.circle->setIndicator(view_.clarityIndicator());
    const auto indicators = view_.durationIndicators();
    for (std::size_t i = 0; i < indicators.size(); ++i) {
        durationIndicators_.at(i).circle->setIndicator(indicators.at(i));
        durationIndicators_.at(i).text->showText(indicators.at(i).text);
    }
}

}  // namespace velmorindal
