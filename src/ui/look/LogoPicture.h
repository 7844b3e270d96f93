#pragma once

#include <QIcon>

class QPainter;
class QRectF;

namespace velmorindal {

/// Draws the logo from its vectors into a rectangle, without its circle. Main thread.
void paintLogoPicture(QPainter& painter, const QRectF& where);

/// The logo as an icon, drawn from its vectors at each size that is asked for. It needs no plugin of the
/// toolkit, which is a separate package on some systems and whose absence is not reported.
QIcon logoIcon();

}  // namespace velmorindal
