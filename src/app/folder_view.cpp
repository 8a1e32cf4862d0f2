#include "app/folder_view.h"

#include <QLocale>
#include <QPainter>
#include <QStyledItemDelegate>
#include <algorithm>

#include "base/path_name.h"
#include "base/visible_text.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/focus_ring.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {

// The model.

void FolderModel::setEntries(std::vector<FolderEntry> entries) {
    beginResetModel();
    m_entries = std::move(entries);
    endResetModel();
}

void FolderModel::setPreview(int row, const QImage& preview) {
    m_entries[static_cast<size_t>(row)].preview = preview;
    Q_EMIT dataChanged(index(row), index(row), {Qt::DecorationRole});
}

const FolderEntry& FolderModel::entry(const QModelIndex& index) const {
    return m_entries[static_cast<size_t>(index.row())];
}

QModelIndex FolderModel::indexOf(const QString& path) const {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&path](const FolderEntry& each) { return each.path == path; });
    return found == m_entries.end() ? QModelIndex()
                                    : index(static_cast<int>(found - m_entries.begin()));
}

int FolderModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
}

QVariant FolderModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) { return {}; }
    const FolderEntry& shown = entry(index);
    const QString name =
        visibleText(shown.isProject ? withoutPathExtension(shown.name) : shown.name);
    switch (role) {
        case Qt::DisplayRole:
            return name;
        case Qt::ToolTipRole:
            return visibleText(shown.name);
        case Qt::AccessibleDescriptionRole:
            return shown.isProject ? u"Project"_s : u"Folder"_s;
        default:
            return {};
    }
}

// The view.

namespace {

constexpr QSize kGridCell{136, 124};
constexpr QSize kGridPicture{112, 84};
constexpr int kGridMargin = 6;
constexpr int kFolderPicture = 48;
constexpr int kDateWidth = 150;
constexpr int kRowGap = 8;

class FolderDelegate : public QStyledItemDelegate {
 public:
    explicit FolderDelegate(FolderView* view) : QStyledItemDelegate(view), m_view(*view) {}

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
        return m_view.isGrid() ? kGridCell : QSize(0, sizes::elementRow);
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const FolderEntry& entry = static_cast<const FolderModel*>(index.model())->entry(index);
        const QString name = index.data(Qt::DisplayRole).toString();
        paintGround(*painter, option);
        if (m_view.isGrid()) {
            paintCell(*painter, option, entry, name);
        } else {
            paintRow(*painter, option, entry, name);
        }
    }

 private:
    const FolderView& m_view;

    static const FrameColors& colors() { return Appearance::current().frame(); }
    static bool isSelected(const QStyleOptionViewItem& option) {
        return option.state & QStyle::State_Selected;
    }
    static QColor ink(const QStyleOptionViewItem& option) {
        return isSelected(option) ? colors().onPlate : colors().ink;
    }

    static void paintGround(QPainter& painter, const QStyleOptionViewItem& option) {
        const QRectF rect = QRectF(option.rect).adjusted(1, 1, -1, -1);
        const bool isHovered = option.state & QStyle::State_MouseOver;
        const QColor fill = isSelected(option) ? colors().plate
                            : isHovered        ? colors().hover
                                               : QColor();
        const bool isMarked =
            (option.state & QStyle::State_HasFocus) && FocusRing::keyboardIsInUse();
        const QColor mark = isSelected(option) ? colors().onPlate : colors().accent;
        paintRounded(painter, rect, sizes::plateRadius, fill, {}, 0);
        if (isMarked) {
            paintRounded(painter, rect.adjusted(2, 2, -2, -2), sizes::plateRadius - 2, {}, mark,
                         sizes::focusRing);
        }
    }

    static void paintPicture(QPainter& painter, const QRectF& rect, const FolderEntry& entry,
                             const QStyleOptionViewItem& option) {
        if (!entry.preview.isNull()) {
            const QSizeF size =
                QSizeF(entry.preview.size()).scaled(rect.size(), Qt::KeepAspectRatio);
            QRectF place({}, size);
            place.moveCenter(rect.center());
            place = alignedToDevice(painter, place);
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            painter.drawImage(place, entry.preview);
            paintRounded(painter, place, 0, {}, colors().line);
            return;
        }
        const double side = std::min<double>(rect.height(), kFolderPicture);
        QRectF place(0, 0, side, side);
        place.moveCenter(rect.center());
        const QColor color = isSelected(option) ? colors().onPlate : colors().icon;
        paintIcon(painter, place, entry.isProject ? u"no_preview"_s : u"folder"_s, color);
    }

    static void paintText(QPainter& painter, const QRectF& rect, int alignment,
                          const QString& text) {
        const QString shown =
            painter.fontMetrics().elidedText(text, Qt::ElideRight, static_cast<int>(rect.width()));
        painter.drawText(rect, alignment | Qt::TextSingleLine, shown);
    }

    static void paintCell(QPainter& painter, const QStyleOptionViewItem& option,
                          const FolderEntry& entry, const QString& name) {
        QRectF picture({}, QSizeF(kGridPicture));
        picture.moveTopLeft({option.rect.center().x() - picture.width() / 2 + 0.5,
                             option.rect.top() + 2.0 * kGridMargin});
        paintPicture(painter, picture, entry, option);
        painter.setFont(frameFont());
        painter.setPen(ink(option));
        const QRectF text(option.rect.left() + kGridMargin, picture.bottom(),
                          option.rect.width() - 2 * kGridMargin,
                          option.rect.bottom() - picture.bottom());
        paintText(painter, text, Qt::AlignCenter, name);
    }

    static void paintRow(QPainter& painter, const QStyleOptionViewItem& option,
                         const FolderEntry& entry, const QString& name) {
        const QRectF row = QRectF(option.rect).adjusted(kRowGap, 0, -kRowGap, 0);
        const QRectF picture(row.left(), row.center().y() - sizes::rowPicture / 2.0,
                             sizes::rowPicture, sizes::rowPicture);
        paintPicture(painter, picture, entry, option);
        painter.setFont(frameFont());
        painter.setPen(ink(option));
        const QRectF date(row.right() - kDateWidth, row.top(), kDateWidth, row.height());
        const double left = picture.right() + kRowGap;
        paintText(painter, {left, row.top(), date.left() - left - kRowGap, row.height()},
                  Qt::AlignVCenter | Qt::AlignLeft, name);
        if (!isSelected(option)) { painter.setPen(colors().secondInk); }
        paintText(painter, date, Qt::AlignVCenter | Qt::AlignRight,
                  QLocale::c().toString(entry.modified, u"d MMM yyyy HH:mm"_s));
    }
};

}  // namespace

FolderView::FolderView(QWidget* parent) : QListView(parent) {
    setItemDelegate(new FolderDelegate(this));
    setUniformItemSizes(true);
    setMouseTracking(true);
    setMovement(Static);
    setResizeMode(Adjust);
    setEditTriggers(NoEditTriggers);
    setFrameShape(NoFrame);
    setVerticalScrollMode(ScrollPerPixel);
}

void FolderView::setIsGrid(bool isGrid) {
    setViewMode(isGrid ? IconMode : ListMode);
    setMovement(Static);
    setGridSize(isGrid ? kGridCell : QSize());
    scrollTo(currentIndex());
}

void FolderView::setEmptyText(const QString& title, const QString& hint) {
    m_emptyTitle = title;
    m_emptyHint = hint;
    setAccessibleDescription(title);
    viewport()->update();
}

void FolderView::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    if (model()->rowCount() > 0) { return; }
    QPainter painter(viewport());
    const QRect area = viewport()->rect().adjusted(kRowGap, 0, -kRowGap, 0);
    const int middle = area.center().y();
    painter.setFont(regularFont(sizes::emptyPlaceTitleSize));
    painter.setPen(Appearance::current().frame().ink);
    painter.drawText(QRect(area.left(), middle - 80, area.width(), 80),
                     Qt::AlignHCenter | Qt::AlignBottom | Qt::TextWrapAnywhere, m_emptyTitle);
    painter.setFont(frameFont());
    painter.setPen(Appearance::current().frame().secondInk);
    painter.drawText(QRect(area.left(), middle + 4, area.width(), 60),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, m_emptyHint);
}

}  // namespace tweenery
