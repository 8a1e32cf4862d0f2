#include "ui/window/split_view.h"

#include <QMouseEvent>
#include <QPainter>

#include "ui/widgets/appearance.h"

namespace tweenery {

namespace {

int between(int from, int to, double share) {
    return from + qRound((to - from) * share);
}

QRect between(const QRect& from, const QRect& to, double share) {
    const QPoint topLeft(between(from.left(), to.left(), share),
                         between(from.top(), to.top(), share));
    return {topLeft, QSize(between(from.width(), to.width(), share),
                           between(from.height(), to.height(), share))};
}

}  // namespace

SplitView::SplitView(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    m_motion.setStartValue(0.0);
    m_motion.setEndValue(1.0);
    m_motion.setEasingCurve(QEasingCurve::InOutQuad);
    connect(&m_motion, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { moveTowards(value.toDouble()); });
}

void SplitView::setLeftPane(QWidget* pane) {
    setPane(Left, pane);
}

void SplitView::setMainPane(QWidget* pane) {
    setPane(Main, pane);
}

void SplitView::setRightPane(QWidget* pane) {
    setPane(Right, pane);
}

void SplitView::setBottomPane(QWidget* pane) {
    setPane(Bottom, pane);
}

void SplitView::setPane(Place place, QWidget* pane) {
    if (m_views[place]) { m_views[place]->setParent(nullptr); }
    m_views[place] = pane;
    pane->setParent(this);
    updateFrames(false);
}

void SplitView::setLeftPaneWidth(double width) {
    m_panes.setLeftWidth(width);
    updateFrames(false);
}

void SplitView::setRightPaneWidth(double width) {
    m_panes.setRightWidth(width);
    updateFrames(false);
}

void SplitView::setBottomPaneHeight(double height) {
    m_panes.setBottomHeight(height);
    updateFrames(false);
}

void SplitView::setLeftPaneVisible(bool visible) {
    m_panes.leftVisible = visible;
    updateFrames(true);
}

void SplitView::setRightPaneVisible(bool visible) {
    m_panes.rightVisible = visible;
    updateFrames(true);
}

void SplitView::setBottomPaneVisible(bool visible) {
    m_panes.bottomVisible = visible;
    updateFrames(true);
}

void SplitView::updateFrames(bool isAnimated) {
    const PaneFrames frames = paneFrames(m_panes);
    m_motion.stop();
    for (size_t place = 0; place < PlaceCount; ++place) {
        m_from[place] = m_views[place] ? m_views[place]->geometry() : QRect();
    }
    m_to = {frames.bottom, frames.left, frames.right, frames.main};
    const auto duration = Appearance::current().duration(motion::pane);
    if (isAnimated && isVisible() && duration.count() > 0) {
        m_motion.setDuration(static_cast<int>(duration.count()));
        m_motion.start();
    } else {
        showFrames(m_to);
    }
    Q_EMIT panesDidChangeCollapseState();
}

void SplitView::moveTowards(double share) {
    Frames frames;
    for (size_t place = 0; place < PlaceCount; ++place) {
        frames[place] = between(m_from[place], m_to[place], share);
    }
    showFrames(frames);
}

void SplitView::showFrames(const Frames& frames) {
    for (size_t place = 0; place < PlaceCount; ++place) {
        QWidget* view = m_views[place];
        if (!view) { continue; }
        view->setGeometry(frames[place]);
        // What slid out takes neither the keyboard nor the eye of assistive tools.
        view->setVisible(frames[place].intersects(rect()) || place == Main);
    }
    update();
}

void SplitView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.fillRect(event->rect(), Appearance::current().workbench().divider);
}

void SplitView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_panes.width = width();
    m_panes.height = height();
    if (m_panes.leftVisible) { m_panes.setLeftWidth(m_panes.leftWidth); }
    updateFrames(false);
}

void SplitView::showCursor(Divider divider) {
    switch (divider) {
        case Divider::Left:
        case Divider::Right:
            setCursor(Qt::SizeHorCursor);
            break;
        case Divider::Bottom:
            setCursor(Qt::SizeVerCursor);
            break;
        case Divider::None:
            unsetCursor();
            break;
    }
}

void SplitView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) { return; }
    m_isDragging = true;
    m_dragged = dividerAt(paneFrames(m_panes), event->position());
    showCursor(m_dragged);
}

void SplitView::mouseMoveEvent(QMouseEvent* event) {
    if (!m_isDragging) {
        showCursor(dividerAt(paneFrames(m_panes), event->position()));
        return;
    }
    if (m_dragged == Divider::None) { return; }
    m_panes = sizesAfterDrag(m_panes, m_dragged, event->position());
    updateFrames(false);
}

void SplitView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) { endDrag(event->position()); }
}

void SplitView::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    if (!m_isDragging) { showCursor(Divider::None); }
}

void SplitView::endDrag(QPointF point) {
    if (!m_isDragging) { return; }
    m_isDragging = false;
    m_dragged = Divider::None;
    showCursor(dividerAt(paneFrames(m_panes), point));
    Q_EMIT panesDidChangeSizes();
}

bool SplitView::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::UngrabMouse:
        case QEvent::WindowDeactivate:
        case QEvent::WindowBlocked:
        case QEvent::Hide:
            endDrag(QPointF(-1, -1));  // the release will not come
            break;
        default:
            break;
    }
    return QWidget::event(event);
}

}  // namespace tweenery
