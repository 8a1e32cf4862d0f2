#include "ui/canvas/canvas_view.h"

#include <QMimeData>
#include <QNativeGestureEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QWheelEvent>
#include <cmath>

#include "editor/canvas/canvas_interaction.h"
#include "editor/mime_pasteboard.h"
#include "editor/outline_drop.h"
#include "ui/canvas/canvas_cursors.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/feedback_plate.h"
#include "ui/widgets/wheel.h"

namespace tweenery {
namespace {

bool acceptsDrop(const QMimeData& data) {
    return data.hasFormat(PCElement::pasteboardType()) || hasPictures(filesOf(data.urls()));
}

}  // namespace

CanvasView::CanvasView(PCDocumentWindowController& controller, QWidget* parent)
    : QAbstractScrollArea(parent),
      m_controller(controller),
      m_feedback(new FeedbackPlate(viewport())) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setAcceptDrops(true);
    setAccessibleName(QStringLiteral("Canvas"));
    // The corner between the scroll bars is the canvas's surround.
    QPalette colors = palette();
    colors.setColor(QPalette::Window, Appearance::current().workbench().surround);
    setPalette(colors);
    viewport()->setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    m_frameTimer.setSingleShot(true);
    connect(&m_frameTimer, &QTimer::timeout, this, &CanvasView::drawFrame);
    m_refreshTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_refreshTimer, &QTimer::timeout, this, &CanvasView::drawTick);
    m_controller.viewport().setChangeHandler([this] { viewportDidChange(); });
    m_playbackSubscription = m_controller.timeManager().addPlaybackStateListener(this);
}

CanvasView::~CanvasView() {
    m_controller.viewport().setChangeHandler({});
}

// Drawing.

void CanvasView::scheduleFrame() {
    if (!m_frameTimer.isActive()) { m_frameTimer.start(0); }
}

void CanvasView::drawFrame() {
    m_frameTimer.stop();
    m_controller.layers().flush();
    updateFeedback();
    const double ratio = devicePixelRatioF();
    const QSize size = (QSizeF(viewport()->size()) * ratio).toSize();
    if (size.isEmpty()) { return; }
    const Affine documentToDevice{{ratio, 0, 0, ratio},
                                  -m_controller.viewport().scrollOrigin() * ratio};
    m_frame = &m_renderer.frame(m_controller.editorLayer(), documentToDevice, size);
    QRegion changed;
    for (const QRect& pixels : m_renderer.changed()) {
        changed += QRectF(QPointF(pixels.topLeft()) / ratio, QSizeF(pixels.size()) / ratio)
                       .toAlignedRect();
    }
    viewport()->update(changed);
}

void CanvasView::drawTick() {
    m_controller.timeManager().displaylinkAdapter()->tick();
    drawFrame();
}

void CanvasView::paintEvent(QPaintEvent* event) {
    if (!m_frame) { drawFrame(); }
    if (!m_frame) { return; }
    QPainter painter(viewport());
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    const double ratio = devicePixelRatioF();
    for (const QRect& part : event->region()) {
        painter.drawImage(QRectF(part), *m_frame,
                          QRectF(QPointF(part.topLeft()) * ratio, QSizeF(part.size()) * ratio));
    }
}

void CanvasView::timeManagerDidChangePlaybackState(PCProjectTimeManager& manager) {
    if (manager.isPlayingBack()) {
        m_refreshTimer.start(qMax(1, static_cast<int>(1000 / screen()->refreshRate())));
    } else {
        m_refreshTimer.stop();
    }
    scheduleFrame();
}

void CanvasView::updateFeedback() {
    m_feedback->show(m_controller.interaction().feedback(), m_pointer);
}

// Scrolling and zoom.

void CanvasView::resizeEvent(QResizeEvent*) {
    m_controller.viewport().setContainerSize(viewport()->size());
}

void CanvasView::viewportDidChange() {
    updateScrollBars();
    scheduleFrame();
    Q_EMIT viewportChanged();
}

void CanvasView::updateScrollBars() {
    const CanvasViewport& view = m_controller.viewport();
    m_isSettingScrollBars = true;
    const auto set = [](QScrollBar* bar, double range, double value, int page) {
        bar->setRange(0, qRound(range));
        bar->setPageStep(page);
        bar->setSingleStep(static_cast<int>(kPointsPerWheelStep) / 3);
        bar->setValue(qRound(value));
    };
    set(horizontalScrollBar(), view.scrollRange().x(), view.scrollOrigin().x(),
        viewport()->width());
    set(verticalScrollBar(), view.scrollRange().y(), view.scrollOrigin().y(), viewport()->height());
    m_isSettingScrollBars = false;
}

void CanvasView::scrollContentsBy(int, int) {
    if (m_isSettingScrollBars) { return; }
    m_controller.viewport().scrollTo({static_cast<double>(horizontalScrollBar()->value()),
                                      static_cast<double>(verticalScrollBar()->value())});
}

void CanvasView::wheelEvent(QWheelEvent* event) {
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        if (m_controller.interaction().isPressed()) { return; }  // what is grabbed stays in hand
        m_controller.viewport().zoomAbout(event->position(), wheelZoom(*event));
    } else {
        m_controller.viewport().scrollBy(-scrollDistance(*event));
    }
    event->accept();
}

bool CanvasView::zoomByGesture(const QNativeGestureEvent& event) {
    if (event.gestureType() != Qt::ZoomNativeGesture) { return false; }
    m_controller.viewport().zoomAbout(event.position(), std::exp(event.value()));
    return true;
}

// The pointer.

PointerEvent CanvasView::pointerEvent(const QMouseEvent& event) const {
    return {event.position(), event.globalPosition(), event.modifiers(), event.button()};
}

bool CanvasView::viewportEvent(QEvent* event) {
    switch (event->type()) {
        case QEvent::NativeGesture:
            return zoomByGesture(static_cast<QNativeGestureEvent&>(*event));
        case QEvent::Enter:
            m_pointer = static_cast<QEnterEvent*>(event)->position();
            updateCursor();
            break;
        case QEvent::Leave:
            viewport()->unsetCursor();
            break;
        case QEvent::UngrabMouse:
            m_controller.interaction().lost();
            break;
        default:
            break;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

void CanvasView::mousePressEvent(QMouseEvent* event) {
    m_pointer = event->position();
    setFocus(Qt::MouseFocusReason);
    m_controller.interaction().press(pointerEvent(*event));
    updateCursor();
}

void CanvasView::mouseMoveEvent(QMouseEvent* event) {
    m_pointer = event->position();
    CanvasInteraction& interaction = m_controller.interaction();
    if (interaction.isPressed()) {
        interaction.drag(pointerEvent(*event));
        scheduleFrame();
    } else {
        interaction.modifiersChanged(event->modifiers());
    }
    updateCursor();
}

void CanvasView::mouseReleaseEvent(QMouseEvent* event) {
    m_controller.interaction().release(pointerEvent(*event));
    scheduleFrame();
    updateCursor();
}

void CanvasView::updateCursor() {
    viewport()->setCursor(
        canvasCursor(m_controller.interaction().cursorAt(m_pointer), devicePixelRatioF()));
}

void CanvasView::keyPressEvent(QKeyEvent* event) {
    event->ignore();
}

void CanvasView::keyReleaseEvent(QKeyEvent* event) {
    event->ignore();
}

bool CanvasView::focusNextPrevChild(bool next) {
    m_controller.selectNextElement(!next);
    return true;
}

void CanvasView::focusOutEvent(QFocusEvent* event) {
    // A popup belongs to the pane; another window takes pointer and keys.
    if (event->reason() != Qt::PopupFocusReason) { m_controller.interaction().focusLost(); }
    QAbstractScrollArea::focusOutEvent(event);
}

void CanvasView::hideEvent(QHideEvent* event) {
    m_controller.interaction().lost();
    QAbstractScrollArea::hideEvent(event);
}

void CanvasView::contextMenuEvent(QContextMenuEvent* event) {
    const bool isByPointer = event->reason() == QContextMenuEvent::Mouse;
    if (isByPointer && !m_controller.interaction().pressForContextMenu(
                           {QPointF(event->pos()), QPointF(event->globalPos()), event->modifiers(),
                            Qt::RightButton})) {
        return;
    }
    const QPoint middle = viewport()->mapToGlobal(viewport()->rect().center());
    Q_EMIT contextMenuRequested(isByPointer ? event->globalPos() : middle);
}

// Drops.

void CanvasView::dragEnterEvent(QDragEnterEvent* event) {
    if (!acceptsDrop(*event->mimeData())) { return; }
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void CanvasView::dragMoveEvent(QDragMoveEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

// The questions of an import would hold up the program that the drag comes from.
void CanvasView::dropEvent(QDropEvent* event) {
    const QPointF position = m_controller.viewport().canvasPoint(event->position());
    const QStringList files = filesOf(event->mimeData()->urls());
    event->setDropAction(Qt::CopyAction);
    event->accept();
    if (hasPictures(files)) {
        QMetaObject::invokeMethod(
            this, [this, files, position] { m_controller.dropImages(files, position); },
            Qt::QueuedConnection);
        return;
    }
    auto dropped = std::make_shared<QMimeData>();
    const QString type = PCElement::pasteboardType();
    dropped->setData(type, event->mimeData()->data(type));
    QMetaObject::invokeMethod(
        this, [this, dropped] { m_controller.dropElements(ReceivedPasteboard(*dropped)); },
        Qt::QueuedConnection);
}

}  // namespace tweenery
