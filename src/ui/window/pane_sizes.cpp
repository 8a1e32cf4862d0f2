#include "ui/window/pane_sizes.h"

namespace tweenery {

namespace {

constexpr int kLeastAboveBottom = 100;
constexpr double kLeftHidesBelow = 125;
constexpr double kRightHidesBelow = 175;
constexpr int kThickness = PaneSizes::dividerThickness;

// The bound holds only once the view has its `extent`.
int upTo(int most, double asked, int extent) {
    return extent > 0 ? std::min(static_cast<int>(asked), most) : static_cast<int>(asked);
}

// On the very border nothing changes.
void showOrHide(bool& isVisible, double asked, double border) {
    if (asked < border) { isVisible = false; }
    if (asked > border) { isVisible = true; }
}

}  // namespace

void PaneSizes::setLeftWidth(double asked) {
    const int most = width - sizes::paneWidth - 2 * kThickness;
    leftWidth = std::max(upTo(most, asked, width), sizes::leastLeftPaneWidth);
    showOrHide(leftVisible, asked, kLeftHidesBelow);
}

void PaneSizes::setRightWidth(double asked) {
    rightWidth = sizes::paneWidth;
    showOrHide(rightVisible, asked, kRightHidesBelow);
}

void PaneSizes::setBottomHeight(double asked) {
    const int most = height - kLeastAboveBottom;
    bottomHeight = std::max(upTo(most, asked, height), collapsedBottomHeight);
}

PaneFrames paneFrames(const PaneSizes& panes) {
    const int bottomTop = panes.bottomVisible ? panes.height - panes.bottomHeight : panes.height;
    const int upperHeight = bottomTop - kThickness;
    const int leftEdge = panes.leftVisible ? panes.leftWidth : 0;
    const int rightEdge = panes.rightVisible ? panes.width - panes.rightWidth : panes.width;
    PaneFrames frames;
    frames.bottom = QRect(0, bottomTop, panes.width, panes.bottomHeight);
    frames.left = QRect(leftEdge - panes.leftWidth, 0, panes.leftWidth, upperHeight);
    frames.right = QRect(rightEdge, 0, panes.rightWidth, upperHeight);
    frames.main =
        QRect(leftEdge + kThickness, 0, rightEdge - leftEdge - 2 * kThickness, upperHeight);
    frames.leftDivider = QRect(leftEdge, 0, kThickness, upperHeight);
    frames.rightDivider = QRect(rightEdge - kThickness, 0, kThickness, upperHeight);
    frames.bottomDivider = QRect(0, upperHeight, panes.width, kThickness);
    return frames;
}

Divider dividerAt(const PaneFrames& frames, QPointF point) {
    if (QRectF(frames.bottomDivider).contains(point)) { return Divider::Bottom; }
    if (QRectF(frames.rightDivider).contains(point)) { return Divider::Right; }
    if (QRectF(frames.leftDivider).contains(point)) { return Divider::Left; }
    return Divider::None;
}

PaneSizes sizesAfterDrag(PaneSizes panes, Divider divider, QPointF point) {
    constexpr double half = kThickness / 2.0;
    switch (divider) {
        case Divider::Left:
            panes.setLeftWidth(point.x() - half);
            break;
        case Divider::Right:
            panes.setRightWidth(panes.width - point.x() - half);
            break;
        case Divider::Bottom:
            panes.setBottomHeight(panes.height - point.y() - half);
            break;
        case Divider::None:
            break;
    }
    return panes;
}

}  // namespace tweenery
