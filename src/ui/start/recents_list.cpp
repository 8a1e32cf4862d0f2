#include "ui/start/recents_list.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QStyledItemDelegate>

#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/focus_ring.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

enum Role { Path = Qt::UserRole, Folder, Picture, IsMissing };

constexpr int kLeft = 20;
constexpr int kTextLeft = 104;
constexpr int kTitleSize = 15;
constexpr int kRecentPictureRadius = 4;
constexpr int kNoPicture = 24;

const FrameColors& paperColors() {
    return frameColors(false, Appearance::current().increasesContrast());
}

void paintPicture(QPainter& painter, const QRectF& place, const QImage& picture) {
    const FrameColors& colors = paperColors();
    if (picture.isNull()) {
        const QColor ground = Appearance::current().frame().recents;
        paintRounded(painter, place, kRecentPictureRadius, blended(colors.hover, ground), {});
        QRectF sign(0, 0, kNoPicture, kNoPicture);
        sign.moveCenter(place.center());
        return paintIcon(painter, sign, u"no_preview"_s, colors.disabledIcon);
    }
    QSizeF shown = picture.size();
    shown.scale(place.size(), Qt::KeepAspectRatio);
    QRectF target(QPointF(), shown);
    target.moveCenter(place.center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, picture);
}

class RecentRow : public QStyledItemDelegate {
 public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
        return {sizes::startPictureWidth, sizes::startRow};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const FrameColors& colors = paperColors();
        const WorkbenchColors& workbench = Appearance::current().workbench();
        const bool isSelected = option.state.testFlag(QStyle::State_Selected);
        painter->save();
        if (isSelected) {
            painter->fillRect(option.rect, workbench.setupSelection);
        } else if (option.state.testFlag(QStyle::State_MouseOver)) {
            painter->fillRect(option.rect, colors.hover);
        }
        const QRectF row = option.rect;
        paintPicture(
            *painter,
            {row.left() + kLeft, row.top() + (row.height() - sizes::startPictureHeight) / 2,
             sizes::startPictureWidth, sizes::startPictureHeight},
            index.data(Picture).value<QImage>());
        paintTexts(*painter, row, index, isSelected ? workbench.onSelected : colors.ink);
        if (!isSelected && index.row() + 1 < index.model()->rowCount()) {
            paintLowerLine(*painter, row.adjusted(kTextLeft, 0, -kLeft, 0), colors.separator);
        }
        if (isSelected && option.state.testFlag(QStyle::State_HasFocus) &&
            FocusRing::keyboardIsInUse()) {
            paintRounded(*painter, row, 0, {}, workbench.onSelected, sizes::focusRing);
        }
        painter->restore();
    }

 private:
    static void paintTexts(QPainter& painter, const QRectF& row, const QModelIndex& index,
                           const QColor& titleInk) {
        const FrameColors& colors = paperColors();
        QRectF line = row.adjusted(kTextLeft, 10, -kLeft, 0);
        line.setHeight(20);
        double room = line.width();
        if (index.data(IsMissing).toBool()) {
            painter.setFont(frameFont());
            painter.setPen(titleInk == colors.ink ? colors.secondInk : titleInk);
            painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, u"Missing"_s);
            room -= painter.fontMetrics().horizontalAdvance(u"Missing "_s);
        }
        const auto drawLine = [&](const QFont& font, const QColor& ink, const QString& text,
                                  Qt::TextElideMode mode, double width) {
            painter.setFont(font);
            painter.setPen(ink);
            painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                             painter.fontMetrics().elidedText(text, mode, static_cast<int>(width)));
        };
        drawLine(regularFont(kTitleSize), titleInk, index.data().toString(), Qt::ElideRight, room);
        line.translate(0, line.height());
        drawLine(frameFont(), colors.ink, index.data(Folder).toString(), Qt::ElideMiddle,
                 line.width());
    }
};

}  // namespace

RecentsList::RecentsList(QWidget* parent) : QListWidget(parent) {
    setAccessibleName(u"Recent projects"_s);
    setFrameShape(QFrame::NoFrame);
    setItemDelegate(new RecentRow(this));
    setMouseTracking(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setUniformItemSizes(true);
    viewport()->setAutoFillBackground(false);
    connect(this, &QListWidget::itemDoubleClicked, this,
            [this](QListWidgetItem* item) { Q_EMIT opened(item->data(Path).toString()); });
}

void RecentsList::setProjects(const std::vector<RecentProject>& projects) {
    clear();
    for (const RecentProject& project : projects) {
        auto* item = new QListWidgetItem(project.title, this);
        item->setData(Path, project.path);
        item->setData(Folder, project.folder);
        item->setToolTip(project.path);
        item->setData(Qt::AccessibleDescriptionRole, project.folder);
    }
}

QListWidgetItem* RecentsList::itemOf(const QString& path) const {
    for (int i = 0; i < count(); ++i) {
        if (item(i)->data(Path) == path) { return item(i); }
    }
    return nullptr;
}

void RecentsList::update(const RecentProject& project) {
    QListWidgetItem* item = itemOf(project.path);
    if (!item) { return; }
    item->setData(Picture, project.picture);
    item->setData(IsMissing, project.isMissing);
    if (project.isMissing) {
        item->setData(Qt::AccessibleDescriptionRole, project.folder + u", missing"_s);
        item->setToolTip(
            u"%1 is missing. Press Delete to take it off the list."_s.arg(project.path));
    }
}

void RecentsList::removePath(const QString& path) {
    delete itemOf(path);
}

void RecentsList::paintEvent(QPaintEvent* event) {
    if (count() > 0) { return QListWidget::paintEvent(event); }
    const FrameColors& colors = paperColors();
    QPainter painter(viewport());
    QRect line(0, viewport()->height() / 2 - 40, viewport()->width(), 24);
    painter.setFont(regularFont(sizes::emptyPlaceTitleSize));
    painter.setPen(colors.ink);
    painter.drawText(line, Qt::AlignCenter, u"Nothing here yet"_s);
    painter.setFont(frameFont());
    painter.setPen(colors.secondInk);
    painter.drawText(line.translated(0, 22), Qt::AlignCenter,
                     u"Projects that you open are listed here."_s);
}

void RecentsList::keyPressEvent(QKeyEvent* event) {
    QListWidgetItem* item = currentItem();
    const QString path = item ? item->data(Path).toString() : QString();
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (item) { Q_EMIT opened(path); }
            return;
        case Qt::Key_Delete:
        case Qt::Key_Backspace:
            if (item) { Q_EMIT removed(path); }
            return;
        default:
            QListWidget::keyPressEvent(event);
    }
}

void RecentsList::contextMenuEvent(QContextMenuEvent* event) {
    const bool isByPointer = event->reason() == QContextMenuEvent::Mouse;
    QListWidgetItem* item = isByPointer ? itemAt(event->pos()) : currentItem();
    if (!item) { return; }
    const QString path = item->data(Path).toString();
    QMenu menu(this);
    connect(menu.addAction(u"Open"_s), &QAction::triggered, this, [&] { Q_EMIT opened(path); });
    connect(menu.addAction(u"Remove from List"_s), &QAction::triggered, this,
            [&] { Q_EMIT removed(path); });
    menu.exec(isByPointer ? event->globalPos()
                          : viewport()->mapToGlobal(visualItemRect(item).center()));
}

}  // namespace tweenery
