#pragma once

#include <QVariantAnimation>
#include <QWidget>

#include "ProgressBar.h"

namespace velmorindal {

/// Draws a ProgressBar: a capsule for the track and, over it from the left, a capsule for the fill, which
/// glides to each new value. However fast values arrive, it is painted once a frame.
///
/// A screen reader meets a progress bar with its value between 0 and the maximum; the name is the widget's
/// accessible name. It sends no event for a new value, which would be spoken as a bare percentage now and
/// then: what matters is announced in words.
class ProgressBarWidget final : public QWidget {
    Q_OBJECT

  public:
    explicit ProgressBarWidget(const QString& accessibleName, QWidget* parent = nullptr);

    const ProgressBar& bar() const { return bar_; }
    /// `trace` is a second value, drawn behind the bar's own as a paler fill.
    void setBar(const ProgressBar& bar, double trace = 0.0);
    /// The part of the track that the paler fill takes, 0 to 1.
    double traceFraction() const;

    /// The part of the track that the fill is on its way to, 0 to 1.
    double targetFraction() const;
    /// What a screen reader gets: the value in hundredths, 0 to the maximum.
    double spokenValue() const;
    /// The part of the track that is filled on screen at this moment, 0 to 1.
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
