#pragma once

#include <array>

#include "ui/views/CalibrationPanelView.h"
#include "ui/widgets/PageWidget.h"

class QLayout;
class QPushButton;

namespace velmorindal {

class IndicatorWidget;
class ThresholdMeter;

class CalibrationPanelWidget final : public PageWidget {
    Q_OBJECT

  public:
    /// `view` must outlive the page.
    explicit CalibrationPanelWidget(CalibrationPanelView& view);

    void refresh() override;

  private:
    struct IndicatorRow {
        IndicatorWidget* circle;
        TextLabel* text;
    };

    QPushButton* addShowButton(std::string_view label, Qt::Key shortcut,
                               void (CalibrationPanelView::*pressed)());
    static IndicatorRow addIndicator(QLayout& layout, const CalibrationPanelView::Indicator& indicator);
    void addHeading(std::string_view text);

    CalibrationPanelView& view_;
    QPushButton* showClarity_;
    ThresholdMeter* clarity_;
    IndicatorRow clarityIndicator_{};
    QPushButton* showDuration_;
    ThresholdMeter* duration_;
    std::array<IndicatorRow, 2> durationIndicators_{};
};

}  // namespace velmorindal
