#include "ui/navigators/animation_rows.h"

#include <QFontMetricsF>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include "ui/navigators/animations_model.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/focus_ring.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/row_painting.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kNameLeft = 44;
constexpr int kNameRight = 10;  // from the row's right
constexpr double kPictureCentre = 22.5;
constexpr int kPicture = 24;

constexpr int kPlateInset = 8;
constexpr double kPlateRadius = 5;
constexpr QSizeF kIcon(22, 14);
constexpr double kIconRadius = 2;
constexpr double kIconGap = 10;

// Black, blurred by a radius of 3: rings that add up, the widest first.
void paintShadow(QPainter& painter, const QRectF& shape) {
    struct Ring {
        double reach;
        double opacity;
    };
    constexpr Ring kRings[] = {{3, 0.02},   {2.5, 0.03}, {2, 0.05},
                               {1.5, 0.08}, {1, 0.12},   {0.5, 0.16}};
    painter.setPen(Qt::NoPen);
    for (const Ring& ring : kRings) {
        painter.setBrush(QColor::fromRgbF(0, 0, 0, static_cast<float>(ring.opacity)));
        const double reach = ring.reach;
        painter.drawRoundedRect(shape.adjusted(-reach, -reach, reach, reach), kPlateRadius + reach,
                                kPlateRadius + reach);
    }
}

void paintSetupRow(QPainter& painter, const QRect& row, bool isSelected) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    painter.fillRect(row, colors.rowLowerEdge);
    const QRectF plate = QRectF(row).adjusted(kPlateInset, kPlateInset, -kPlateInset, -kPlateInset);
    paintShadow(painter, plate);
    painter.setBrush(isSelected ? colors.setupSelection : colors.rowLowerEdge);
    painter.drawRoundedRect(plate, kPlateRadius, kPlateRadius);

    const QFont font = regularFont(sizes::rowTextSize);
    const QString text = u"setup"_s;
    const double width = QFontMetricsF(font).horizontalAdvance(text);
    const QPointF centre = QRectF(row).center();
    const double left = centre.x() - width / 2;
    painter.setFont(font);
    painter.setPen(isSelected ? colors.onSelected : colors.setupSelection);
    painter.drawText(QRectF(left, row.top(), width + 1, row.height()),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
    const QPointF icon(left - kIcon.width() - kIconGap, centre.y() - kIcon.height() / 2);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.setupIcon);
    painter.drawRoundedRect(QRectF(icon, kIcon), kIconRadius, kIconRadius);
}

void paintAnimationRow(QPainter& painter, const QRect& row, const QString& name, bool isSelected,
                       bool isHovered) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    rows::paintFill(painter, row, isSelected ? colors.animationSelection : colors.row, isHovered);
    const QRect face = rows::withoutLowerEdge(row);
    if (isSelected) {
        rows::paintPicture(painter, {row.left() + kPictureCentre, QRectF(face).center().y()},
                           kPicture, u"animation_image"_s, isSelected);
    }
    rows::paintName(painter, face.adjusted(kNameLeft, 0, -kNameRight, 0), name, isSelected);
}

}  // namespace

AnimationRowDelegate::AnimationRowDelegate(QAbstractItemView& view)
    : NameDelegate([](const QModelIndex&) { return kNameLeft; }, &view), m_view(view) {}

QSize AnimationRowDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const {
    const bool isSetup = index.row() == AnimationsModel::kSetupRow;
    return {0, isSetup ? sizes::setupRow : sizes::animationRow};
}

void AnimationRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const {
    const bool isSelected = option.state & QStyle::State_Selected;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (index.row() == AnimationsModel::kSetupRow) {
        paintSetupRow(*painter, option.rect, isSelected);
    } else {
        paintAnimationRow(*painter, option.rect, index.data().toString(), isSelected,
                          option.state & QStyle::State_MouseOver);
    }
    const bool hasKeyboard = m_view.hasFocus() && FocusRing::keyboardIsInUse();
    if (hasKeyboard && m_view.currentIndex() == index) {
        rows::paintFocusRing(*painter, option.rect, isSelected);
    }
    painter->restore();
}

bool AnimationRowDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                     const QStyleOptionViewItem& option, const QModelIndex& index) {
    const QString name = index.data().toString();
    const int width = option.rect.width() - kNameLeft - kNameRight;
    const bool isCut = index.isValid() && index.row() != AnimationsModel::kSetupRow &&
                       rows::isCut(name, width, view->devicePixelRatioF());
    if (!isCut) { return NameDelegate::helpEvent(event, view, option, index); }
    QToolTip::showText(event->globalPos(), name, view->viewport(), option.rect);
    return true;
}

}  // namespace tweenery
