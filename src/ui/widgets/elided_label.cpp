#include "ui/widgets/elided_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include "ui/widgets/accessible_role.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/fonts.h"

namespace tweenery {

ElidedLabel::ElidedLabel(QWidget* parent) : QWidget(parent) {
    setFont(frameFont());
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    setAccessibleRole(*this, QAccessible::StaticText);
}

void ElidedLabel::setText(const QString& text) {
    if (text == m_text) { return; }
    m_text = text;
    setAccessibleName(text);
    updateGeometry();
    update();
}

void ElidedLabel::setInk(std::function<QColor()> ink) {
    m_ink = std::move(ink);
    update();
}

void ElidedLabel::setAlignment(Qt::Alignment alignment) {
    m_alignment = alignment;
    update();
}

QSize ElidedLabel::sizeHint() const {
    return {fontMetrics().horizontalAdvance(m_text) + 1, fontMetrics().height()};
}

QSize ElidedLabel::minimumSizeHint() const {
    return {0, fontMetrics().height()};
}

bool ElidedLabel::isCut() const {
    return fontMetrics().horizontalAdvance(m_text) > width();
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(m_ink ? m_ink() : Appearance::current().frame().ink);
    painter.drawText(rect(), static_cast<int>(m_alignment),
                     fontMetrics().elidedText(m_text, m_elideMode, width()));
}

bool ElidedLabel::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && isCut()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), m_text, this);
        return true;
    }
    return QWidget::event(event);
}

}  // namespace tweenery
