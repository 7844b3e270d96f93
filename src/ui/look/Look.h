#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QRectF>

class QPainter;

/// The measures and colours that all pages share. Everything follows the application's font and palette, so
/// that doubled fonts and dark themes need no special case.
namespace velmorindal::look {

/// The one unit of spacing, in pixels: half the height of a line of body text, at least 4.
int spacing();

/// The least height of what is pressed, in pixels, and of the buttons that lead from page to page: 24 and 44
/// at a font of 9 points, growing with it.
int targetHeight();
int navigationHeight();

/// The groove of a slider with that geometry, from the middle of its handle at one end to that at the other.
QRectF sliderGroove(const QRectF& slider, int handle);

QFont bodyFont();
QFont titleFont();
/// For labels that name the text beside them.
QFont labelFont();
/// For the headings of a page's sections, a little smaller than the body.
QFont calloutFont();

/// The width in pixels of a comfortable line of body text, and the least that a page is laid out for.
int comfortableLineWidth();
int narrowestLineWidth();
/// Room for any one word of a page, title or body.
int widestWordWidth();

/// The contrast of two opaque colours, 1 for none to 21 for black on white.
double contrast(const QColor& one, const QColor& other);

/// `faint` where it can be read on `ground`, at 4.5 : 1; or else, on the way from it to `full`, the first
/// colour that can.
QColor legible(const QColor& faint, const QColor& full, const QColor& ground);

/// The fill of what is chosen; white shows upon it.
QColor accentColor();

/// Can be distinguished from `color` beside it and from a light track behind it.
QColor paler(const QColor& color);

/// A white tick inside `square`, for what is on.
void drawTick(QPainter& painter, const QRectF& square);

/// Marks on the page that must be seen at a contrast of at least 3 : 1: the ring around the control with the
/// focus, and the outlines of bars and indicators.
QColor focusColor(const QPalette& palette);
QColor outlineColor(const QPalette& palette);

}  // namespace velmorindal::look
