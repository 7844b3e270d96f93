#pragma once

#include <QVariantAnimation>
#include <QWidget>

#include "ProgressBar.h"

namespace velmorindal {

/// Draws a ProgressBar: a capsule for the track and, over it from the left, a capsule for the fill, which
/// glides to each new value. It is painted at most once a frame, however fast values arrive.
///
/// For a screen reader it is a progress bar with a value between 0 and the maximum, named by the widget's
/// accessible name. It sends no event for a new value, which would sometimes be spoken as a mere percentage:
/// important values are announced in words.
class ProgressBarWidget final : public QWidget {
    Q_OBJECT

  public:
    explicit ProgressBarWidget(const QString& accessibleName, QWidget* parent = nullptr);

    const ProgressBar& bar() const { return bar_; }
    /// `trace` is a second value, drawn as a paler fill behind that of the bar.
    void setBar(const ProgressBar& bar, double trace = 0.0);
    /// The part of the track that the paler fill takes, 0 to 1.
    double traceFraction() const;

    /// The part of the track that the fill glides to, 0 to 1.
    double targetFraction() const;
    /// The value for a screen reader, rounded to hundredths, 0 to the maximum.
    double spokenValue() const;
    /// The part of the track that is filled on the screen now, 0 to 1.
    double shownFraction() const { return shownFraction_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void glideTo(double fraction);

    ProgressBar bar_{.value = 0.0,
                     .maxValue = 1.0,
                     .backgroundEnabled = true,
                     .backgroundColor = colors::veryLightGrey,
                     .foregroundColor = colors::blue};
    double shownFraction_ = 0.0;
    QVariantAnimation glide_;
    double trace_ = 0.0;
};

}  // namespace velmorindal
