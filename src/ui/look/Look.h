#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QRectF>

class QPainter;

/// The sizes and colours that all pages share. They follow the application's font and palette, so that
/// doubled fonts and dark themes need no special case. Main thread only.
namespace velmorindal::look {

/// The one unit of spacing, in pixels: half the height of a line of body text, at least 4.
int spacing();

/// The smallest height in pixels of a control, and of the buttons that lead from page to page: at least 24
/// and 44, growing with the font.
int targetHeight();
int navigationHeight();

/// The groove of a slider with that geometry: from the middle of its handle at one end to the middle at the
/// other. `handle` is the width of the handle.
QRectF sliderGroove(const QRectF& slider, int handle);

/// The font of the application, and a larger one for titles.
QFont bodyFont();
QFont titleFont();
/// For labels that name the text beside them.
QFont labelFont();
/// For the headings of a page's sections, a little smaller than the body.
QFont calloutFont();

/// The width in pixels of a comfortable line of body text, and the smallest that a page is designed for.
int comfortableLineWidth();
int narrowestLineWidth();
/// The width in pixels that any single word of a page needs, in a title or the body.
int widestWordWidth();

/// The contrast of two opaque colours, 1 for none to 21 for black on white.
double contrast(const QColor& one, const QColor& other);

/// `faint` if it can be read on `ground`, at 4.5 : 1; otherwise the first readable colour on the way from it
/// to `full`, or `full`.
QColor legible(const QColor& faint, const QColor& full, const QColor& ground);

/// The fill of chosen and running controls; white can be read on it.
QColor accentColor();

/// A paler `color`, which differs visibly from `color` beside it and from a light track behind it.
QColor paler(const QColor& color);

/// Draws a white tick inside `square`, the mark for "on". Changes the painter's pen and brush.
void drawTick(QPainter& painter, const QRectF& square);

/// The colours of the focus ring and of outlines, chosen for a contrast of at least 3 : 1 with the page.
QColor focusColor(const QPalette& palette);
QColor outlineColor(const QPalette& palette);

}  // namespace velmorindal::look
