#include "ui/widgets/row_painting.h"

#include <QFontMetrics>
#include <QPainter>

#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

namespace tweenery::rows {
namespace {

QFont nameFont(bool isSelected, double devicePixelRatio) {
    const Appearance& appearance = Appearance::current();
    const bool isLight = isSelected && !appearance.increasesContrast();
    return isLight ? lightFont(sizes::rowTextSize)
                   : rowFont(devicePixelRatio, appearance.increasesContrast());
}

QColor inkOf(bool isSelected, const QColor& ink) {
    return isSelected ? Appearance::current().workbench().onSelected : ink;
}

}  // namespace

QRect withoutLowerEdge(const QRect& row) {
    return row.adjusted(0, 0, 0, -sizes::rowLowerEdge);
}

void paintFill(QPainter& painter, const QRect& row, const QColor& fill, bool isHovered) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    painter.fillRect(alignedToDevice(painter, row), colors.rowLowerEdge);
    painter.fillRect(alignedToDevice(painter, withoutLowerEdge(row)),
                     isHovered ? blended(colors.rowHover, fill) : fill);
}

void paintName(QPainter& painter, const QRect& rect, const QString& name, bool isSelected) {
    const QFont font = nameFont(isSelected, painter.device()->devicePixelRatioF());
    painter.setFont(font);
    painter.setPen(inkOf(isSelected, Appearance::current().workbench().rowInk));
    const QString text = QFontMetrics(font).elidedText(name, Qt::ElideRight, rect.width());
    painter.drawText(rect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
}

bool isCut(const QString& name, int width, double devicePixelRatio) {
    return QFontMetrics(nameFont(false, devicePixelRatio)).horizontalAdvance(name) > width;
}

void paintPicture(QPainter& painter, QPointF centre, int size, const QString& icon,
                  bool isSelected) {
    const QRectF rect(centre.x() - size / 2.0, centre.y() - size / 2.0, size, size);
    paintIcon(painter, rect, icon, inkOf(isSelected, Appearance::current().workbench().rowIcon));
}

void paintFocusRing(QPainter& painter, const QRect& row, bool isSelected) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    const double half = sizes::focusRing / 2.0;
    painter.setPen(QPen(isSelected ? colors.onSelected : colors.accent, sizes::focusRing,
                        Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(withoutLowerEdge(row)).adjusted(half, half, -half, -half));
}

void paintEmptyPlace(QPainter& painter, const QRect& place, const QString& title,
                     const QString& advice) {
    constexpr int kTitleLine = 22;
    constexpr int kAdviceLine = 20;
    const FrameColors& colors = Appearance::current().frame();
    QRect line(place.left(), place.center().y() - (kTitleLine + kAdviceLine) / 2, place.width(),
               kTitleLine);
    const auto paintLine = [&](const QFont& font, const QColor& ink, const QString& text) {
        painter.setFont(font);
        painter.setPen(ink);
        painter.drawText(line, Qt::AlignCenter,
                         QFontMetrics(font).elidedText(text, Qt::ElideRight, line.width()));
    };
    paintLine(regularFont(sizes::emptyPlaceTitleSize), colors.ink, title);
    line = QRect(line.left(), line.bottom() + 1, line.width(), kAdviceLine);
    paintLine(regularFont(sizes::frameTextSize), colors.secondInk, advice);
}

}  // namespace tweenery::rows
