#pragma once

#include <QSlider>

#include "SliderRange.h"

namespace velmorindal {

/// A horizontal slider over the positions of a SliderRange. Arrow keys move one step, the page keys ten.
///
/// A screen reader gets the real value with its range and step, not the number of the position.
class StepSlider final : public QSlider {
    Q_OBJECT

  public:
    StepSlider(const QString& accessibleName, const SliderRange& range, QWidget* parent = nullptr);

    const SliderRange& range() const { return range_; }

  protected:
    /// The wheel scrolls the page and does not change the threshold below the pointer.
    void wheelEvent(QWheelEvent* event) override;

  private:
    const SliderRange range_;
};

}  // namespace velmorindal
