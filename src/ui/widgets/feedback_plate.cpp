#include "ui/widgets/feedback_plate.h"

#include <QPainter>

#include "ui/widgets/appearance.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/sizes.h"

namespace tweenery {
namespace {

constexpr QPointF kFromPointer(16, 20);
constexpr int kMargin = 7;
constexpr int kHeight = 22;
constexpr int kRadius = 5;

}  // namespace

FeedbackPlate::FeedbackPlate(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFont(regularFont(sizes::captionTextSize));
    hide();
}

void FeedbackPlate::show(const QString& text, QPointF pointer) {
    m_text = text;
    if (text.isEmpty()) { return hide(); }
    const QSize size(qCeil(tabularWidth(font(), text)) + 2 * kMargin, kHeight);
    const QPoint wanted = (pointer + kFromPointer).toPoint();
    const QSize room = parentWidget()->size() - size;
    setGeometry({{qBound(0, wanted.x(), qMax(0, room.width())),
                  qBound(0, wanted.y(), qMax(0, room.height()))},
                 size});
    setVisible(true);
    update();
}

void FeedbackPlate::paintEvent(QPaintEvent*) {
    const FrameColors& colors = Appearance::current().frame();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.statusFill);
    painter.drawRoundedRect(rect(), kRadius, kRadius);
    painter.setFont(font());
    painter.setPen(colors.statusInk);
    drawTabularText(painter, rect(), Qt::AlignCenter, m_text);
}

}  // namespace tweenery
