#include "ui/timeline/playhead_field.h"

#include <QApplication>
#include <QFocusEvent>

#include "base/number_text.h"
#include "editor/timeline/time_text.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kPlayheadFieldWidth = 64;
constexpr int kPlayheadFieldHeight = 24;
constexpr double kPerSecond = 1000;

}  // namespace

PlayheadField::PlayheadField(PCDocumentWindowController& controller, QWidget* parent)
    : TextField(parent), m_controller(controller) {
    hide();
    resize(kPlayheadFieldWidth, kPlayheadFieldHeight);
    setAccessibleName(u"Playhead Time"_s);
    connect(this, &TextField::committed, this, &PlayheadField::take);
    connect(this, &TextField::left, this, &PlayheadField::leave);
}

void PlayheadField::open(const QRectF& plate) {
    if (isVisible()) { return; }
    m_focusBefore = QApplication::focusWidget();
    const int room = parentWidget()->width() - width();
    move(qBound(0, static_cast<int>(plate.left()), qMax(0, room)),
         static_cast<int>(plate.center().y()) - height() / 2);
    const double seconds = m_controller.timeManager().playheadPositionInMS() / kPerSecond;
    setText(QString::fromStdString(fixedText(seconds, 3)));
    setToolTip(u"Seconds; or with a unit, as 500 ms"_s);
    show();
    setFocus(Qt::OtherFocusReason);
}

void PlayheadField::take(const QString& text) {
    const auto time = timeInMSFromText(text, TimeUnit::Seconds);
    if (!time) {
        m_controller.tellFailure(u"“%1” Is No Time"_s.arg(text),
                                 u"Type seconds, such as 1.5, or a unit, such as 500 ms."_s);
        return;
    }
    m_controller.stopPlaybackHere();
    m_controller.timeManager().setPlayheadPositionInMS(*time);
}

void PlayheadField::leave() {
    hide();
    if (m_focusBefore) { m_focusBefore->setFocus(Qt::OtherFocusReason); }
}

void PlayheadField::focusOutEvent(QFocusEvent* event) {
    TextField::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason) {
        hide();
    }
}

}  // namespace tweenery
