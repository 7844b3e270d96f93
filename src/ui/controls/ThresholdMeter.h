#pragma once

#include <QWidget>

#include "CalibrationPanelView.h"

namespace velmorindal {

class ProgressBarWidget;
class StepSlider;
class TextLabel;

/// The slider of a threshold with its number beside it and the bar of live readings under it, on one scale
/// from zero to the largest value: the handle is exactly above the end of the fill when a reading equals
/// the threshold.
class ThresholdMeter final : public QWidget {
    Q_OBJECT

  public:
    /// `view` must outlive the meter.
    ThresholdMeter(CalibrationPanelView& view, const CalibrationPanelView::Slider& threshold,
                   std::string_view barName);

    /// `trace` is a second, paler value behind the reading.
    void refresh(const ProgressBar& reading, double trace = 0.0);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    int wholeHeight() const;
    int numberWidth() const;
    void arrange();

    CalibrationPanelView& view_;
    const CalibrationPanelView::Slider& threshold_;
    StepSlider* slider_;
    TextLabel* number_;
    ProgressBarWidget* bar_;
};

}  // namespace velmorindal
