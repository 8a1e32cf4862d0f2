#include "ui/export/preview_view.h"

#include <QPainter>
#include <QScreen>

#include "ui/widgets/accessible_role.h"
#include "ui/widgets/appearance.h"

using namespace Qt::StringLiterals;

namespace tweenery {

PreviewView::PreviewView(ExportSession& session, QWidget* parent)
    : QWidget(parent), m_session(session) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleRole(*this, QAccessible::Canvas);
    setAccessibleName(u"Preview"_s);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        m_session.tick();
        update();
    });
}

void PreviewView::refresh() {
    ExportPreview* preview = m_session.preview();
    if (!preview) { return; }
    preview->setViewSize(size());
    if (!preview->isAnyRunning()) {
        m_timer.stop();
    } else if (!m_timer.isActive()) {
        m_timer.start(qMax(1, static_cast<int>(1000 / screen()->refreshRate())));
    }
    update();
}

void PreviewView::resizeEvent(QResizeEvent*) {
    refresh();
}

void PreviewView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const double ratio = devicePixelRatioF();
    const QSize pixels = (QSizeF(size()) * ratio).toSize();
    ExportPreview* preview = m_session.preview();
    if (!preview || pixels.isEmpty()) {
        painter.fillRect(rect(), Appearance::current().workbench().lightGrey);
        return;
    }
    preview->update();
    const QImage& frame =
        m_renderer.frame(preview->layer(), {{ratio, 0, 0, ratio}, QPointF()}, pixels);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(QRectF(QPointF(), QSizeF(pixels) / ratio), frame);
}

}  // namespace tweenery
