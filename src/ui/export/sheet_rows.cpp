#include "ui/export/sheet_rows.h"

#include <QEvent>
#include <QPainter>

#include "ui/widgets/accessible_role.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kCellRadius = 8;
constexpr double kCellBorder = 2;
constexpr double kDimBorder = 0.5;  // towards white, of an animation that does not move
constexpr int kCellMargin = 12;
constexpr int kCellTextLeft = 37;
constexpr int kCellNameSize = 14;
constexpr int kLengthSize = 13;
constexpr int kNoteMargin = 8;
constexpr int kNoteTextLeft = 36;
constexpr int kMostNoteLines = 2;

QString pictureOf(ExportDiagnostic::Severity severity) {
    return severity == ExportDiagnostic::Severity::Note ? u"info"_s : u"warning"_s;
}

QColor inkOf(ExportDiagnostic::Severity severity) {
    const FrameColors& colors = Appearance::current().frame();
    switch (severity) {
        case ExportDiagnostic::Severity::Note:
            return colors.accent;
        case ExportDiagnostic::Severity::Warning:
            return colors.warning;
        case ExportDiagnostic::Severity::Error:
            return colors.danger;
    }
    return colors.ink;
}

void repaintOnHover(QWidget& widget, const QEvent& event) {
    if (event.type() == QEvent::HoverEnter || event.type() == QEvent::HoverLeave) {
        widget.update();
    }
}

}  // namespace

// Animations.

PCPreviewAnimationCellView::PCPreviewAnimationCellView(QWidget* parent) : QAbstractButton(parent) {
    setCheckable(true);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void PCPreviewAnimationCellView::show(const ExportPreview::Animation& animation) {
    m_animation = animation;
    setChecked(animation.isRunning);
    setText(animation.name);
    setAccessibleName(animation.name);
    const QString length = animation.length.text();
    setAccessibleDescription(animation.failure.isNull() ? length : animation.failure);
    setToolTip(animation.failure.isNull()
                   ? (animation.isRunning ? u"Stop “%1”"_s : u"Play “%1”"_s).arg(animation.name)
                   : animation.failure);
    update();
}

QSize PCPreviewAnimationCellView::sizeHint() const {
    return {sizes::sheetListWidth - 2 * sizes::sheetMargin, sizes::sheetAnimationRow};
}

bool PCPreviewAnimationCellView::event(QEvent* event) {
    repaintOnHover(*this, *event);
    return QAbstractButton::event(event);
}

void PCPreviewAnimationCellView::paintEvent(QPaintEvent*) {
    const QColor red = Appearance::current().workbench().red;
    const FrameColors& paper = frameColors(false, Appearance::current().increasesContrast());
    const bool isRunning = m_animation.isRunning;
    QColor border = red;
    if (!isRunning && !m_animation.length.isAbove0()) {
        border = blended(QColor::fromRgbF(1, 1, 1, kDimBorder), red);
    }
    QColor fill = isRunning ? red : QColor();
    if (!isRunning && underMouse()) { fill = paper.hover; }
    QPainter painter(this);
    paintRounded(painter, rect(), kCellRadius, fill, border, kCellBorder);
    const QRectF picture(kCellMargin - 2, (height() - sizes::sheetAnimationPicture) / 2.0,
                         sizes::sheetAnimationPicture, sizes::sheetAnimationPicture);
    const QColor ink = isRunning ? paper.onPlate : red;
    paintIcon(painter, picture, isRunning ? u"stop_square_circle"_s : u"play_triangle"_s, ink);

    QRectF place = QRectF(rect()).adjusted(kCellTextLeft, 0, -kCellMargin, 0);
    if (!isRunning) {
        const AnimationLength& length = m_animation.length;
        painter.setFont(length.isEndless ? boldFont(kLengthSize) : lightFont(kLengthSize));
        painter.setPen(paper.secondInk);
        drawTabularText(painter, place, Qt::AlignRight | Qt::AlignVCenter, length.text());
        place.setRight(place.right() - tabularWidth(painter.font(), length.text()) - kNoteMargin);
    }
    painter.setFont(regularFont(kCellNameSize));
    painter.setPen(ink);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter,
                     painter.fontMetrics().elidedText(m_animation.name, Qt::ElideRight,
                                                      static_cast<int>(place.width())));
}

// Notes.

ExportNoteRow::ExportNoteRow(ExportDiagnostic note, QWidget* parent)
    : QAbstractButton(parent), m_note(std::move(note)) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleRole(*this, QAccessible::ListItem);
    setAccessibleName(text());
    setAccessibleDescription(nameOf(m_note.severity));
    setToolTip(text());
}

QString ExportNoteRow::text() const {
    const QString name =
        m_note.subject == ExportDiagnostic::Subject::Project ? QString() : m_note.name + u": "_s;
    return name + m_note.sentence;
}

QSize ExportNoteRow::sizeHint() const {
    return {sizes::sheetListWidth, sizes::sheetNoteRow};
}

bool ExportNoteRow::event(QEvent* event) {
    repaintOnHover(*this, *event);
    return QAbstractButton::event(event);
}

void ExportNoteRow::paintEvent(QPaintEvent*) {
    const FrameColors& colors = Appearance::current().frame();
    QPainter painter(this);
    if (underMouse() || isDown()) {
        paintRounded(painter, rect(), sizes::buttonRadius, colors.hover, {});
    }
    const QRectF picture(kNoteMargin, (height() - sizes::sheetNotePicture) / 2.0,
                         sizes::sheetNotePicture, sizes::sheetNotePicture);
    paintIcon(painter, picture, pictureOf(m_note.severity), inkOf(m_note.severity));

    const double width = this->width() - kNoteTextLeft - kNoteMargin;
    QTextLayout layout(text(), frameFont());
    QTextCharFormat bold;
    bold.setFontWeight(QFont::DemiBold);
    const auto nameLength = static_cast<int>(text().size() - m_note.sentence.size());
    layout.setFormats({{0, nameLength, bold}});
    std::vector<QTextLine> lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        lines.push_back(line);
    }
    layout.endLayout();
    const size_t shown = std::min<size_t>(lines.size(), kMostNoteLines);
    const double top = (height() - static_cast<double>(shown) * sizes::frameTextLine) / 2;
    painter.setPen(colors.ink);
    for (size_t i = 0; i < shown; ++i) {
        const double y = top + static_cast<double>(i) * sizes::frameTextLine;
        if (i + 1 == shown && lines.size() > shown) {
            painter.setFont(frameFont());
            const QString rest = text().mid(lines[i].textStart());
            painter.drawText(
                QRectF(kNoteTextLeft, y, width, sizes::frameTextLine), Qt::AlignLeft | Qt::AlignTop,
                painter.fontMetrics().elidedText(rest, Qt::ElideRight, static_cast<int>(width)));
        } else {
            lines[i].setPosition({0, 0});
            lines[i].draw(&painter, {static_cast<double>(kNoteTextLeft), y});
        }
    }
}

}  // namespace tweenery
