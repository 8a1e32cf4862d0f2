#pragma once

#include <QColor>
#include <QImage>

namespace tweenery {

/// The colours and patterns of the canvas, in one place.
namespace TweeneryStyle {

inline QColor white(float brightness) {
    return QColor::fromRgbF(brightness, brightness, brightness);
}
/// The surround of the canvas.
inline QColor editorColor() {
    return white(0.302F);
}
inline QColor canvasInnerBorderColor() {
    return white(0.333F);
}
inline QColor canvasOuterBorderColor() {
    return white(0.667F);
}
/// The ground of a preview, where the canvas ends.
inline QColor lightGrey() {
    return white(0.667F);
}
/// The marquee.
inline QColor selectionLayerColor() {
    return white(0.5F);
}
inline QColor selectionLayerBorderColor() {
    return white(0.333F);
}
inline QColor clearColor() {
    return QColor(Qt::transparent);
}
inline QColor guideColor() {
    return QColor::fromRgbF(0, 0.75F, 0.98F);
}
/// Borders of selected elements: a drag edits the setup state.
inline QColor setupBorderColor() {
    return QColor::fromRgbF(0, 0.75F, 0.98F);
}
/// A drag edits a timeline.
inline QColor keyedBorderColor() {
    return QColor::fromRgbF(1, 0, 0);
}

/// The texture "checkerboard" that shows where the canvas is transparent.
const QImage& canvasPattern();

// Pictures that keep their size on the screen, with `scale` pixels for each of its points. Each is
// drawn once, with its middle in the middle of the image.

/// The marker "anchor_point" of the one selected element's anchor point, which can be dragged.
QImage anchorPointImage(double scale);
/// The marker "anchor_point_axis" within a selection border.
QImage anchorPointAxisImage(double scale);
/// A handle of a selection border: a white square of 13 points with a black rim.
QImage handleImage(double scale);

}  // namespace TweeneryStyle
}  // namespace tweenery
