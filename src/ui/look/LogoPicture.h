#pragma once

#include <QIcon>

class QPainter;
class QRectF;

namespace velmorindal {

/// Draws the logo from its vectors into the rectangle `where`, without its circle. Main thread only.
void paintLogoPicture(QPainter& painter, const QRectF& where);

/// The logo as an icon, drawn from its vectors at each size that is needed. It does not need the toolkit's
/// plugin for SVG icons, a separate package on some systems whose absence is not reported.
QIcon logoIcon();

}  // namespace velmorindal
