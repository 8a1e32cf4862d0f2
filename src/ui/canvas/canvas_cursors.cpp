#include "ui/canvas/canvas_cursors.h"

#include <QHash>
#include <QPainter>
#include <cmath>

#include "ui/widgets/icons.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kArrow = 28;  // points; the sizes of the files
constexpr int kOther = 24;
constexpr int kRoomForCorners = 20;

int pictureSide(const CanvasCursor& cursor) {
    const bool isArrow =
        cursor.image.startsWith("cursor_select"_L1) || cursor.image.startsWith("cursor_direct"_L1);
    return isArrow ? kArrow : kOther;
}

int sideOf(const CanvasCursor& cursor) {
    return pictureSide(cursor) + (cursor.degrees == 0 ? 0 : kRoomForCorners);
}

QPixmap picture(const CanvasCursor& cursor, double ratio) {
    const int side = sideOf(cursor);
    QPixmap pixmap(qRound(side * ratio), qRound(side * ratio));
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.translate(side / 2.0, side / 2.0);
    painter.rotate(cursor.degrees);
    const int size = pictureSide(cursor);
    paintIcon(painter, QRectF(-size / 2.0, -size / 2.0, size, size), cursor.image, Qt::black);
    return pixmap;
}

}  // namespace

QCursor canvasCursor(const CanvasCursor& cursor, double devicePixelRatio) {
    static QHash<QString, QCursor> cursors;
    CanvasCursor turned = cursor;
    turned.degrees = std::remainder(std::round(cursor.degrees), 360.0);
    const QString key = u"%1 %2 %3"_s.arg(turned.image).arg(turned.degrees).arg(devicePixelRatio);
    const auto known = cursors.constFind(key);
    if (known != cursors.cend()) { return *known; }
    const int middle = sideOf(turned) / 2;
    const QPoint hotSpot = turned.hotSpot.value_or(QPoint(middle, middle));
    return *cursors.insert(key,
                           QCursor(picture(turned, devicePixelRatio), hotSpot.x(), hotSpot.y()));
}

}  // namespace tweenery
