#include "ui/inspector/thumbnail.h"

#include <QPainter>
#include <QPainterPath>

#include "base/errors.h"
#include "model/images/image_set.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"

namespace tweenery {
namespace {

constexpr int kSquare = 8;
constexpr double kRadius = 6;

void paintCheckerboard(QPainter& painter, const QRectF& rect) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    painter.fillRect(rect, colors.checkerLight);
    for (int row = 0; row * kSquare < rect.height(); ++row) {
        for (int column = (row + 1) % 2; column * kSquare < rect.width(); column += 2) {
            painter.fillRect(QRectF(rect.left() + column * kSquare, rect.top() + row * kSquare,
                                    kSquare, kSquare),
                             colors.checkerDark);
        }
    }
}

PCImageSet::Rendition renditionOf(const PCImageSet& set, bool isLarge) {
    try {
        return isLarge ? set.medium2xImage() : set.mediumImage();
    } catch (const InputError&) { return nullptr; }
}

}  // namespace

void paintThumbnail(QPainter& painter, const QRectF& rect, const PCImageSet* set, bool isLarge,
                    const QColor& line, double lineWidth) {
    painter.save();
    const QRectF place = alignedToDevice(painter, rect);
    QPainterPath clip;
    clip.addRoundedRect(place, kRadius, kRadius);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setClipPath(clip);
    paintCheckerboard(painter, place);
    if (const auto picture = set ? renditionOf(*set, isLarge) : nullptr) {
        const double inset = 4;
        const QRectF room = place.adjusted(inset, inset, -inset, -inset);
        const QSizeF size = QSizeF(picture->size()).scaled(room.size(), Qt::KeepAspectRatio);
        QRectF target(QPointF(), size);
        target.moveCenter(room.center());
        painter.drawImage(target, picture->image());
    }
    painter.restore();
    paintRounded(painter, place, kRadius, {}, line, lineWidth);
}

}  // namespace tweenery
