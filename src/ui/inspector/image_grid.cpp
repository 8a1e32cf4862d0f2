#include "ui/inspector/image_grid.h"

#include <QAbstractListModel>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>

#include "base/path_name.h"
#include "ui/inspector/thumbnail.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/focus_ring.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kColumns = 3;
constexpr int kCell = 95;
constexpr int kThumbnail = 90;
constexpr int kLeft = 15;
constexpr QSizeF kDensityBadge(28, 20);
constexpr int kTick = 18;
constexpr int kTickMargin = 4;
constexpr int kTickPicture = 12;
constexpr int kInUseRole = Qt::UserRole;
constexpr int kNameRole = Qt::UserRole + 1;

}  // namespace

class ImageGrid::Model : public QAbstractListModel {
 public:
    using QAbstractListModel::QAbstractListModel;

    void set(const ImageChoices::ImageSets& sets, const QString& inUse) {
        if (sets == m_sets) {
            if (inUse == m_inUse || m_sets.empty()) { return; }
            m_inUse = inUse;
            Q_EMIT dataChanged(index(0), index(rowCount() - 1));
            return;
        }
        beginResetModel();
        m_sets = sets;
        m_inUse = inUse;
        endResetModel();
    }
    const PCImageSet& at(const QModelIndex& index) const {
        return *m_sets[static_cast<size_t>(index.row())];
    }
    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_sets.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid()) { return {}; }
        const PCImageSet& set = at(index);
        switch (role) {
            case Qt::DisplayRole:
                return withoutPathExtension(set.name());
            case Qt::ToolTipRole:
                return u"%1, %2"_s.arg(set.name(), densityName(set));
            case Qt::AccessibleDescriptionRole:
                return densityName(set) + (set.name() == m_inUse ? u", in use"_s : QString());
            case kInUseRole:
                return set.name() == m_inUse;
            case kNameRole:
                return set.name();
            default:
                return {};
        }
    }

 private:
    ImageChoices::ImageSets m_sets;
    QString m_inUse;
};

class ImageGrid::Delegate : public QStyledItemDelegate {
 public:
    explicit Delegate(ImageGrid& grid) : QStyledItemDelegate(&grid), m_grid(grid) {}

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
        return {kCell, kCell};
    }
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const WorkbenchColors& colors = Appearance::current().workbench();
        const QRectF place(option.rect.left(), option.rect.top(), kThumbnail, kThumbnail);
        const bool isInUse = index.data(kInUseRole).toBool();
        const bool isCurrent =
            m_grid.hasFocus() && FocusRing::keyboardIsInUse() && index == m_grid.currentIndex();
        const bool isHovered = option.state & QStyle::State_MouseOver;
        const bool isMarked = isInUse || isCurrent || isHovered;
        const PCImageSet& set = m_grid.m_model->at(index);
        paintThumbnail(*painter, place, &set, painter->device()->devicePixelRatioF() > 1,
                       isMarked ? colors.accent : Appearance::current().frame().popoverLine,
                       isMarked ? 2 : 1);
        const QString density = densityName(set);
        if (density != u"3x"_s) {
            const QRectF badge(QPointF(place.left(), place.bottom() - kDensityBadge.height()),
                               kDensityBadge);
            paintIcon(*painter, badge, density + u"icon"_s, colors.knob);
        }
        if (!isInUse) { return; }
        const QRectF tick(place.right() - kTick - kTickMargin, place.top() + kTickMargin, kTick,
                          kTick);
        paintRounded(*painter, tick, kTick / 2.0, colors.accent, {});
        QRectF picture(0, 0, kTickPicture, kTickPicture);
        picture.moveCenter(tick.center());
        paintIcon(*painter, picture, u"check"_s, colors.knob);
    }

 private:
    ImageGrid& m_grid;
};

ImageGrid::ImageGrid(const QString& name, QWidget* parent)
    : QListView(parent), m_model(new Model(this)) {
    setAccessibleName(name);
    setModel(m_model);
    setItemDelegate(new Delegate(*this));
    setViewMode(IconMode);
    setMovement(Static);
    setResizeMode(Adjust);
    setUniformItemSizes(true);
    setSpacing(0);
    setGridSize({kCell, kCell});
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSelectionMode(NoSelection);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setMouseTracking(true);
    viewport()->setAutoFillBackground(false);
    viewport()->setAttribute(Qt::WA_Hover);
    setViewportMargins(kLeft, 0, sizes::chooserWidth - kLeft - kColumns * kCell - 2, 0);
    connect(this, &QListView::clicked, this,
            [this](const QModelIndex& index) { Q_EMIT chosen(index.data(kNameRole).toString()); });
}

void ImageGrid::setImageSets(const ImageChoices::ImageSets& sets, const QString& inUse) {
    const QString current = currentIndex().data(kNameRole).toString();
    m_model->set(sets, inUse);
    setFocusPolicy(sets.empty() ? Qt::NoFocus : Qt::StrongFocus);
    if (currentIndex().isValid() || sets.empty()) { return; }
    int row = 0;
    for (size_t i = 0; i < sets.size(); ++i) {
        if (sets[i]->name() == current) { row = static_cast<int>(i); }
    }
    setCurrentIndex(m_model->index(row));
}

int ImageGrid::contentHeight() const {
    return (m_model->rowCount() + kColumns - 1) / kColumns * kCell;
}

QModelIndex ImageGrid::moveCursor(CursorAction action, Qt::KeyboardModifiers) {
    const int count = m_model->rowCount();
    if (count == 0) { return {}; }
    int row = std::max(0, currentIndex().row());
    switch (action) {
        case MoveLeft:
        case MovePrevious:
            row -= 1;
            break;
        case MoveRight:
        case MoveNext:
            row += 1;
            break;
        case MoveUp:
            row -= row >= kColumns ? kColumns : 0;
            break;
        case MoveDown:
            row += row + kColumns < count ? kColumns : 0;
            break;
        case MoveHome:
        case MovePageUp:
            row = 0;
            break;
        case MoveEnd:
        case MovePageDown:
            row = count - 1;
            break;
    }
    return m_model->index(std::clamp(row, 0, count - 1));
}

void ImageGrid::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            if (currentIndex().isValid()) {
                Q_EMIT chosen(currentIndex().data(kNameRole).toString());
            }
            return;
        case Qt::Key_Escape:
            event->ignore();
            return;
        default:
            QListView::keyPressEvent(event);
    }
}

void ImageGrid::wheelEvent(QWheelEvent* event) {
    event->ignore();  // scrolls the chooser
}

}  // namespace tweenery
