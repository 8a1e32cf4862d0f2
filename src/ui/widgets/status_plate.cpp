#include "ui/widgets/status_plate.h"

#include <QEvent>
#include <QPainter>

#include "ui/widgets/accessible_role.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

namespace tweenery {

namespace {

using namespace Qt::StringLiterals;

constexpr std::chrono::seconds kShown{2};
constexpr int kFromEdge = 12;
constexpr int kStatusPicture = 16;
constexpr int kStatusPictureLeft = 10;
constexpr int kStatusTextLeft = 34;
constexpr int kStatusTextRight = 16;

}  // namespace

StatusPlate::StatusPlate(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleRole(*this, QAccessible::StatusBar);
    parent->installEventFilter(this);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] { fadeTo(0); });
    connect(&m_fade, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        m_opacity = value.toDouble();
        update();
    });
    connect(&m_fade, &QVariantAnimation::finished, this, [this] { setVisible(m_opacity > 0); });
    hide();
}

void StatusPlate::showMessage(const QString& text) {
    m_text = text;
    setAccessibleName(text);
    const int width = kStatusTextLeft + kStatusTextRight +
                      QFontMetrics(mediumFont(sizes::frameTextSize)).horizontalAdvance(text);
    resize(width, sizes::statusPlateHeight);
    place();
    raise();
    show();
    fadeTo(1);
    m_timer.start(kShown);
    if (QAccessible::isActive()) {
        QAccessibleEvent alert(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

void StatusPlate::fadeTo(double opacity) {
    m_fade.stop();
    m_fade.setDuration(static_cast<int>(Appearance::current().duration(motion::fade).count()));
    m_fade.setStartValue(m_opacity);
    m_fade.setEndValue(opacity);
    m_fade.start();
}

void StatusPlate::place() {
    move(kFromEdge, parentWidget()->height() - kFromEdge - height());
}

bool StatusPlate::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::Resize) { place(); }
    return QWidget::eventFilter(object, event);
}

void StatusPlate::paintEvent(QPaintEvent*) {
    const FrameColors& colors = Appearance::current().frame();
    QPainter painter(this);
    painter.setOpacity(m_opacity);
    paintRounded(painter, rect(), height() / 2.0, colors.statusFill, {});
    const QRectF picture(kStatusPictureLeft, (height() - kStatusPicture) / 2.0, kStatusPicture,
                         kStatusPicture);
    paintIcon(painter, picture, u"check"_s, colors.statusInk);
    painter.setFont(mediumFont(sizes::frameTextSize));
    painter.setPen(colors.statusInk);
    drawTabularText(painter,
                    QRectF(rect()).adjusted(kStatusTextLeft, 0, -kStatusTextRight / 2.0, 0),
                    Qt::AlignLeft | Qt::AlignVCenter, m_text);
}

}  // namespace tweenery
