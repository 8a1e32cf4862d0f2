#include "ui/inspector/scrubby_label.h"

#include <QEvent>
#include <QPainter>

#include "ui/widgets/appearance.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {

ScrubbyLabel::ScrubbyLabel(QWidget* parent) : QLabel(parent) {
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::SizeHorCursor);
    setFont(lightFont(sizes::paneLabelSize));
    new DragInput(*this, {[this](QPointF) { Q_EMIT dragBegan(); },
                          [this](QPointF from, QPointF to) {
                              const double motion = to.x() - from.x();
                              if (motion != 0) { Q_EMIT scrubbed(motion > 0 ? 1 : -1); }
                          },
                          [this](bool isCancelled) { Q_EMIT dragEnded(isCancelled); }});
}

void ScrubbyLabel::setLabel(const QString& text) {
    setText(text + u':');
    setToolTip(u"%1 – drag to change"_s.arg(text));
}

bool ScrubbyLabel::event(QEvent* event) {
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave) { update(); }
    return QLabel::event(event);
}

void ScrubbyLabel::paintEvent(QPaintEvent*) {
    const QColor ink = Appearance::current().workbench().paneInk;
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(ink);
    painter.drawText(rect(), Qt::AlignRight | Qt::AlignVCenter, text());
    if (!underMouse()) { return; }
    const QFontMetricsF metrics(font());
    const double width = metrics.horizontalAdvance(text());
    const double y = height() / 2.0 + metrics.ascent() / 2 + 2;
    painter.fillRect(QRectF(this->width() - width, y, width, 1), ink);
}

}  // namespace tweenery
