#pragma once

#include <string_view>
#include <vector>

#include "CalibrationPanelView.h"
#include "PageWidget.h"

class QGridLayout;

namespace velmorindal {

class IndicatorWidget;
class ShowButton;
class ThresholdMeter;

/// The fifth page, as CalibrationPanelView describes it.
class CalibrationPanelWidget final : public PageWidget {
    Q_OBJECT

  public:
    /// `view` must outlive the page.
    explicit CalibrationPanelWidget(CalibrationPanelView& view);

    void refresh() override;
    QWidget* firstControl() const override;

  private:
    struct IndicatorRow {
        IndicatorWidget* circle;
        TextLabel* text;
        TextLabel* reading;
    };
    /// The controls of one measurement.
    struct Section {
        ShowButton* show = nullptr;
        TextLabel* trouble = nullptr;
        ThresholdMeter* meter = nullptr;
        std::vector<IndicatorRow> indicators;
    };

    void addSectionTexts(std::string_view heading, std::string_view explanation);
    ShowButton* addShowRow(std::string_view label, Qt::Key shortcut, void (CalibrationPanelView::*pressed)(),
                           TextLabel*& trouble);
    std::vector<IndicatorRow> addMeterRow(ThresholdMeter* meter,
                                          const std::vector<CalibrationPanelView::Indicator>& indicators);
    static void refreshIndicator(const IndicatorRow& row, const CalibrationPanelView::Indicator& indicator);

    CalibrationPanelView& view_;
    QGridLayout* grid_;
    Section clarity_;
    Section duration_;
};

}  // namespace velmorindal
