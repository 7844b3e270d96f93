#pragma once

#include <QTimer>
#include <QVariantAnimation>
#include <QWidget>

#include "ui/views/ProgressBar.h"

namespace velmorindal {

/// Draws a ProgressBar: a capsule for the track and, over it from the left, a capsule for the fill, which
/// glides to each new value.
///
/// However fast values arrive, it is painted once a frame, and a screen reader hears of them four times a
/// second at most. It meets a progress bar with its value between 0 and the maximum; the name is the widget's
/// accessible name.
class ProgressBarWidget final : public QWidget {
    Q_OBJECT

  public:
    explicit ProgressBarWidget(const QString& accessibleName, QWidget* parent = nullptr);

    const ProgressBar& bar() const { return bar_; }
    void setBar(const ProgressBar& bar);

    /// The part of the track that the fill is on its way to, 0 to 1.
    double targetFraction() const;
    /// What a screen reader is told: the value in hundredths, 0 to the maximum.
    double spokenValue() const;
    /// The part of the track that is filled on screen at this moment, 0 to 1.
    double shownFraction() const { return shownFraction_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  signals:
    /// A screen reader, if there is one, is being told `value`.
    void told(double value);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void glideTo(double fraction);
    void tellScreenReader();

    ProgressBar bar_{.value = 0.0,
                     .maxValue = 1.0,
                     .backgroundEnabled = true,
                     .backgroundColor = colors::veryLightGrey,
                     .foregroundColor = colors::blue};
    double shownFraction_ = 0.0;
    QVariantAnimation glide_;
    /// What a screen reader was told last, and the pause until it may be told again.
    double toldValue_ = 0.0;
    QTimer pause_;
};

}  // namespace velmorindal
