#include "ui/timeline/tracks_scroller.h"

#include <QPainter>
#include <QStyleOptionSlider>
#include <algorithm>

#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"

namespace tweenery {
namespace {

constexpr double kMostUnits = 1e9;
constexpr int kScrollStep = 20;  // points
constexpr double kThumb = 7;
constexpr double kThumbInset = 4;

}  // namespace

TracksScroller::TracksScroller(Qt::Orientation orientation, QWidget* parent)
    : QScrollBar(orientation, parent) {
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::ArrowCursor);
    connect(this, &QScrollBar::valueChanged, this,
            [this](int value) { Q_EMIT scrolledTo(value * m_unit); });
}

void TracksScroller::show(double range, double offset, double page) {
    const QSignalBlocker blocker(this);
    m_unit = std::max(1.0, range / kMostUnits);
    setRange(0, qRound(range / m_unit));
    setPageStep(std::max(1, qRound(page / m_unit)));
    setSingleStep(std::max(1, qRound(kScrollStep / m_unit)));
    setValue(qRound(offset / m_unit));
}

void TracksScroller::setFill(const QColor& fill) {
    m_fill = fill;
    update();
}

void TracksScroller::paintEvent(QPaintEvent*) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    QPainter painter(this);
    if (m_fill.isValid()) { painter.fillRect(rect(), m_fill); }
    QStyleOptionSlider option;
    initStyleOption(&option);
    QRectF thumb =
        style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    const QPointF middle = QRectF(rect()).center();
    const double half = kThumb / 2;
    if (orientation() == Qt::Horizontal) {
        thumb = {thumb.left() + kThumbInset, middle.y() - half, thumb.width() - 2 * kThumbInset,
                 kThumb};
    } else {
        thumb = {middle.x() - half, thumb.top(), kThumb, thumb.height()};
    }
    QColor color = colors.timelineScroller;
    if (isSliderDown() || underMouse()) { color = colors.lightGrey; }
    paintRounded(painter, thumb, half, color, {});
}

}  // namespace tweenery
