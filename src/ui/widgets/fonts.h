#pragma once

#include <QFont>
#include <QRectF>
#include <QStringList>
#include <functional>

class QPainter;

namespace tweenery {

/// The typeface of the window: Inter, else the first installed one of a short list that has light
/// weights, else the system's own.
QString windowTypeface();
/// The choice itself. `hasLightWeights` tells of an installed family.
QString bestTypeface(const QStringList& installed,
                     const std::function<bool(const QString&)>& hasLightWeights);

// Sizes are in points of the window, which are not those of print.

/// Strokes of less than a pixel and a half a point would vanish, so that a scale below 1.5 gets the
/// next heavier weight.
QFont thinFont(int size, double devicePixelRatio);
QFont lightFont(int size);
QFont regularFont(int size);
QFont mediumFont(int size);
QFont boldFont(int size);
/// Text of windows and menus.
QFont frameFont();
/// Headings of windows and dialogs.
QFont headingFont();
/// Names in rows; heavier with increased contrast.
QFont rowFont(double devicePixelRatio, bool increasesContrast);

/// Width of `text` in points when each digit takes the room of the widest one.
double tabularWidth(const QFont& font, const QString& text);
/// Draws one line whose digits all take the same room, so that a number that changes does not
/// shake. Uses the painter's font and pen.
void drawTabularText(QPainter& painter, const QRectF& rect, Qt::Alignment alignment,
                     const QString& text);

}  // namespace tweenery
