#pragma once

#include <QWidget>

#include "CalibrationPanelView.h"

namespace velmorindal {

/// A filled circle with a tick while it is lit, for people who cannot distinguish its colours.
class IndicatorWidget final : public QWidget {
    Q_OBJECT

  public:
    explicit IndicatorWidget(const CalibrationPanelView::Indicator& indicator);

    void setIndicator(const CalibrationPanelView::Indicator& indicator);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    bool muted_ = false;
    bool lit_;
    QColor color_;
};

}  // namespace velmorindal
