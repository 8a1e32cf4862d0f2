// How the list of elements looks: where the parts of a row lie, and what is painted there.

#include <QPainter>

#include "ui/navigators/elements_view.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/focus_ring.h"
#include "ui/widgets/row_painting.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kChevronCentre = 8;  // from where the level begins
constexpr int kElementPictureCentre = 28;
constexpr int kChevron = 16;
constexpr double kLockDotRadius = 4;
constexpr double kOpacityOfLocked = 0.5;

}  // namespace

int ElementsView::depthOf(const QModelIndex& index) const {
    int depth = 0;
    for (QModelIndex above = index.parent(); above.isValid(); above = above.parent()) {
        ++depth;
    }
    return depth;
}

int ElementsView::indentOf(int depth) const {
    return columnViewportPosition(ElementsModel::Name) + depth * kIndent;
}

QRect ElementsView::rowRect(const QModelIndex& index) const {
    const QRect name = visualRect(index.siblingAtColumn(ElementsModel::Lock));
    return {0, name.top(), viewport()->width(), name.height()};
}

void ElementsView::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    QPainter painter(viewport());
    if (m_model.rowCount() == 0) {
        rows::paintEmptyPlace(painter, viewport()->rect(), u"No elements yet"_s,
                              u"Drop images here, or press + to choose one."_s);
    }
    if (m_dropMark) { paintDropMark(painter); }
}

void ElementsView::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    paintRow(*painter, option.rect, index);
    painter->restore();
}

void ElementsView::paintRow(QPainter& painter, const QRect& row, const QModelIndex& index) const {
    const WorkbenchColors& colors = Appearance::current().workbench();
    const PCElement::Ptr element = m_model.element(index);
    const bool isSelected = m_outline.showsAsSelected(*element);
    const bool isHovered = m_hovered.isValid() && m_hovered.row() == index.row() &&
                           m_hovered.parent() == index.parent();
    const RowTint tint = m_outline.tintOf(*element);
    const QColor& color =
        m_document.project()->isSetupMode() ? colors.setupSelection : colors.animationSelection;
    QColor fill = colors.row;
    if (isSelected) {
        fill = lightened(color, tint.selected);
    } else if (tint.unselected) {
        fill = lightened(color, *tint.unselected);
    }
    rows::paintFill(painter, row, fill, isHovered);

    const QRectF face = rows::withoutLowerEdge(row);
    const auto at = [&face](double x) { return QPointF(x, face.center().y()); };
    const int eye = columnViewportPosition(ElementsModel::Visibility);
    rows::paintPicture(painter, at(eye + sizes::visibilityColumn / 2.0), sizes::rowPicture,
                       element->hidden() ? u"hidden"_s : u"visible"_s, isSelected);
    const int lock = columnViewportPosition(ElementsModel::Lock);
    paintLock(painter, at(lock + sizes::lockColumn / 2.0), *element, isSelected,
              isHovered && m_hovered.column() == ElementsModel::Lock);
    const int left = indentOf(depthOf(index));
    if (!element->children().empty()) {
        rows::paintPicture(painter, at(left + kChevronCentre), kChevron,
                           isExpanded(index) ? u"chev_down"_s : u"chev_right"_s, isSelected);
    }
    const bool isFaint = element->locked() && !Appearance::current().increasesContrast();
    const double opacity = painter.opacity();
    painter.setOpacity(isFaint ? opacity * kOpacityOfLocked : opacity);
    rows::paintPicture(painter, at(left + kElementPictureCentre), sizes::rowPicture,
                       element->isGroup() ? u"folder"_s : u"image"_s, isSelected);
    QRect name = face.toRect();
    name.setLeft(left + kElementNameLeft);
    name.setRight(row.right() - kElementNameRight);
    rows::paintName(painter, name, element->name(), isSelected);
    painter.setOpacity(opacity);
    const bool isCurrent =
        currentIndex().row() == index.row() && currentIndex().parent() == index.parent();
    if (hasFocus() && FocusRing::keyboardIsInUse() && isCurrent) {
        rows::paintFocusRing(painter, row, isSelected);
    }
}

void ElementsView::paintLock(QPainter& painter, QPointF centre, const PCElement& element,
                             bool isSelected, bool isHovered) const {
    const WorkbenchColors& colors = Appearance::current().workbench();
    if (element.locked()) {
        rows::paintPicture(painter, centre, sizes::lockPicture, u"locked_dark"_s, false);
    } else if (isHovered) {
        rows::paintPicture(painter, centre, sizes::lockPicture, u"unlocked"_s, isSelected);
    } else {
        painter.setPen(Qt::NoPen);
        painter.setBrush(isSelected ? colors.onSelectedLockDot : colors.lockDot);
        painter.drawEllipse(centre, kLockDotRadius, kLockDotRadius);
    }
}

}  // namespace tweenery
