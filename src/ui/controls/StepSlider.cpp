#include "StepSlider.h"

#include <QWheelEvent>

namespace velmorindal {

StepSlider::StepSlider(const QString& accessibleName, const SliderRange& range, QWidget* parent)
    : QSlider{Qt::Horizontal, parent}, range_{range} {
    setAccessibleName(accessibleName);
    setRange(0, range.positionCount() - 1);
    setSingleStep(1);
    setPageStep(10);
    setFocusPolicy(Qt::StrongFocus);
}

void StepSlider::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

}  // namespace velmorindal
