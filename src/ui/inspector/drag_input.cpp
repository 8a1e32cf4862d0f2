#include "ui/inspector/drag_input.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>

namespace tweenery {

DragInput::DragInput(QWidget& widget, Handlers handlers)
    : QObject(&widget), m_widget(widget), m_handlers(std::move(handlers)) {
    widget.installEventFilter(this);
}

DragInput::~DragInput() = default;

void DragInput::end(bool isCancelled) {
    if (!m_isDragging) { return; }
    m_isDragging = false;
    qApp->removeEventFilter(this);
    m_handlers.ended(isCancelled);
}

// All keys wait for the end, but for Escape.
bool DragInput::takesKey(QEvent& event) {
    if (event.type() == QEvent::ShortcutOverride) {
        event.accept();
        return true;
    }
    if (event.type() != QEvent::KeyPress) { return false; }
    if (static_cast<QKeyEvent&>(event).key() == Qt::Key_Escape) { end(true); }
    return true;
}

bool DragInput::eventFilter(QObject* object, QEvent* event) {
    if (m_isDragging && takesKey(*event)) { return true; }
    if (object != &m_widget) { return false; }
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick: {
            const auto* press = static_cast<QMouseEvent*>(event);
            if (press->button() != Qt::LeftButton || m_isDragging) { return true; }
            m_isDragging = true;
            m_point = press->position();
            qApp->installEventFilter(this);
            m_handlers.began(m_point);
            return true;
        }
        case QEvent::MouseMove: {
            if (!m_isDragging) { return false; }
            const QPointF point = static_cast<QMouseEvent*>(event)->position();
            m_handlers.moved(std::exchange(m_point, point), point);
            return true;
        }
        case QEvent::MouseButtonRelease:
            if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) { end(false); }
            return true;
        case QEvent::UngrabMouse:
        case QEvent::WindowDeactivate:
        case QEvent::WindowBlocked:
        case QEvent::Hide:
            end(false);  // the release will not come
            return false;
        default:
            return false;
    }
}

}  // namespace tweenery
