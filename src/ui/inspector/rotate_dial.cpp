#include "ui/inspector/rotate_dial.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QSignalBlocker>
#include <cmath>

#include "editor/canvas/rotation_calculator.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kFullTurn = 360;
constexpr double kLineWidth = 3;

int wholeDegrees(double radians) {
    const double degrees = std::fmod(radians * 180 / M_PI, kFullTurn);
    return static_cast<int>(std::round(degrees < 0 ? degrees + kFullTurn : degrees)) % kFullTurn;
}

}  // namespace

RotateDial::RotateDial(QWidget* parent) : QDial(parent) {
    setRange(0, kFullTurn - 1);
    setWrapping(true);
    setFocusPolicy(Qt::TabFocus);
    resize(sizes::rotateDial, sizes::rotateDial);
    setAccessibleName(u"Rotation Dial"_s);
    setToolTip(u"Rotation – drag round to turn"_s);
    new DragInput(*this, {[this](QPointF) { Q_EMIT dragBegan(); },
                          [this](QPointF from, QPointF to) { turn(from, to); },
                          [this](bool isCancelled) { Q_EMIT dragEnded(isCancelled); }});
    // By an assistive tool; everybody else sets radians.
    connect(this, &QDial::valueChanged, this, [this](int degrees) {
        const int delta = degrees - wholeDegrees(m_radians);
        setRadians(m_radians + delta * M_PI / 180);
        Q_EMIT turned(delta);
    });
}

void RotateDial::setRadians(double radians) {
    if (radians == m_radians) { return; }
    m_radians = radians;
    const QSignalBlocker blocker(this);
    setValue(wholeDegrees(radians));
    update();
}

void RotateDial::turn(QPointF from, QPointF to) {
    const double delta =
        PCRotationCalculator::radiansBetweenStartPoint(from, to, QRectF(rect()).center());
    if (delta == 0) { return; }
    setRadians(m_radians + delta);
    Q_EMIT turned(delta * 180 / M_PI);
}

void RotateDial::keyPressEvent(QKeyEvent* event) {
    const double step = event->modifiers().testFlag(Qt::ShiftModifier) ? 10 : 1;
    switch (event->key()) {
        case Qt::Key_Up:
        case Qt::Key_Right:
            Q_EMIT turned(step);
            return;
        case Qt::Key_Down:
        case Qt::Key_Left:
            Q_EMIT turned(-step);
            return;
        default:
            event->ignore();
    }
}

void RotateDial::wheelEvent(QWheelEvent* event) {
    event->ignore();  // scrolls the panes
}

void RotateDial::paintEvent(QPaintEvent*) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF center = QRectF(rect()).center();
    const double radius = std::min(width(), height()) / 2.0;
    QPainterPath circle;
    circle.addEllipse(center, radius, radius);
    painter.fillPath(circle, colors.dial);
    painter.setClipPath(circle);
    painter.setPen(QPen(colors.paneInk, kLineWidth, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(center, center + radius * QPointF(std::cos(m_radians), std::sin(m_radians)));
}

}  // namespace tweenery
