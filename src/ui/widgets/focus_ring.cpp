#include "ui/widgets/focus_ring.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDial>
#include <QKeyEvent>
#include <QPainter>
#include <QRadioButton>
#include <QSlider>
#include <QStyleOptionButton>

#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/sizes.h"
#include "ui/widgets/toggle_icon_button.h"

namespace tweenery {

namespace {

constexpr int kReach = sizes::focusRing + sizes::focusRingGap;

QPointer<FocusRing> theRing;

bool takesRing(const QWidget* widget) {
    return qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QComboBox*>(widget) ||
           qobject_cast<const QSlider*>(widget) || qobject_cast<const QDial*>(widget);
}

// What the ring goes round, in the coordinates of `widget`.
QRect ringedRect(const QWidget* widget) {
    QStyleOptionButton option;
    option.initFrom(widget);
    if (qobject_cast<const QCheckBox*>(widget)) {
        return widget->style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, widget);
    }
    if (qobject_cast<const QRadioButton*>(widget)) {
        return widget->style()->subElementRect(QStyle::SE_RadioButtonIndicator, &option, widget);
    }
    return widget->rect();
}

double ringRadius(const QWidget* widget) {
    if (qobject_cast<const QCheckBox*>(widget)) {
        return sizes::checkBoxRadius + sizes::focusRingGap;
    }
    if (qobject_cast<const QRadioButton*>(widget)) { return sizes::checkBox / 2.0 + kReach; }
    if (qobject_cast<const QDial*>(widget)) { return widget->height() / 2.0 + kReach; }
    if (qobject_cast<const ToggleIconButton*>(widget)) { return widget->width() / 2.0 + kReach; }
    return sizes::buttonRadius + sizes::focusRingGap;
}

class RingWidget : public QWidget {
 public:
    RingWidget(QWidget* window, double radius) : QWidget(window), m_radius(radius) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
    }

 protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        paintRounded(painter, rect(), m_radius, {}, Appearance::current().frame().accent,
                     sizes::focusRing);
    }

 private:
    double m_radius;
};

bool isModifier(int key) {
    return key == Qt::Key_Control || key == Qt::Key_Shift || key == Qt::Key_Alt ||
           key == Qt::Key_Meta;
}

}  // namespace

void FocusRing::install() {
    if (!theRing) { theRing = new FocusRing; }
}

bool FocusRing::keyboardIsInUse() {
    return theRing && theRing->m_keyboardIsInUse;
}

FocusRing::FocusRing() : QObject(qApp) {
    qApp->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget*, QWidget* focus) { follow(focus); });
}

bool FocusRing::eventFilter(QObject* object, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyPress:
            if (!isModifier(static_cast<QKeyEvent*>(event)->key())) { setKeyboardIsInUse(true); }
            break;
        case QEvent::MouseButtonPress:
            setKeyboardIsInUse(false);
            break;
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::Show:
        case QEvent::Hide:
        case QEvent::EnabledChange: {
            const auto* widget = qobject_cast<QWidget*>(object);
            if (m_target && widget && (widget == m_target || widget->isAncestorOf(m_target))) {
                place();
            }
            break;
        }
        default:
            break;
    }
    return false;
}

void FocusRing::setKeyboardIsInUse(bool isInUse) {
    if (isInUse == m_keyboardIsInUse) { return; }
    m_keyboardIsInUse = isInUse;
    follow(m_focus);
    if (m_focus) { m_focus->update(); }
}

void FocusRing::follow(QWidget* target) {
    m_focus = target;
    if (m_keyboardIsInUse && takesRing(target)) {
        attach(target);
    } else {
        detach();
    }
}

void FocusRing::attach(QWidget* target) {
    detach();
    m_target = target;
    m_ring = new RingWidget(target->window(), ringRadius(target));
    place();
}

void FocusRing::detach() {
    m_target = nullptr;
    delete m_ring;
}

void FocusRing::place() {
    if (!m_ring) { return; }
    const QRect rect = ringedRect(m_target).marginsAdded({kReach, kReach, kReach, kReach});
    m_ring->setGeometry(
        QRect(m_target->mapTo(m_ring->parentWidget(), rect.topLeft()), rect.size()));
    m_ring->raise();
    m_ring->setVisible(m_target->isVisible() && m_target->isEnabled());
}

}  // namespace tweenery
