#pragma once

#include <QSlider>

#include "SliderRange.h"

namespace velmorindal {

/// A horizontal slider over the positions of a SliderRange. Arrow keys move one step, the page keys ten.
///
/// A screen reader meets the real value with its range and step, not the number of the position.
class StepSlider final : public QSlider {
    Q_OBJECT

  public:
    StepSlider(const QString& accessibleName, const SliderRange& range, QWidget* parent = nullptr);

    const SliderRange& range() const { return range_; }

  protected:
    /// The wheel scrolls the page; it does not change a threshold that the pointer happens to be over.
    void wheelEvent(QWheelEvent* event) override;

  private:
    const SliderRange range_;
};

}  // namespace velmorindal
