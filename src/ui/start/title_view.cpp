#include "ui/start/title_view.h"

#include <QMouseEvent>
#include <QMovie>
#include <QPainter>
#include <QScreen>

#include "base/errors.h"
#include "storage/package_store.h"
#include "ui/widgets/accessible_role.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

const QString kDown = u"LogoDown"_s;
const QString kUp = u"LogoPopUp"_s;
// Of the artwork's own picture that the logo covers, where it rests.
constexpr QRectF kLogoShare(0.77, 0.186, 0.112, 0.263);
constexpr double kEnd = 3600;  // seconds; beyond all that moves
constexpr int kVideoCloseMargin = 12;
constexpr int kVideoCloseSide = 20;

// Reacts to presses where the logo is; the logo itself is drawn below.
class LogoButton : public QAbstractButton {
 public:
    explicit LogoButton(QWidget* parent) : QAbstractButton(parent) {
        setAccessibleName(u"Logo"_s);
        setToolTip(u"Play the title again"_s);
        setCursor(Qt::PointingHandCursor);
        setFocusPolicy(Qt::TabFocus);
    }

 protected:
    void paintEvent(QPaintEvent*) override {}
};

std::unique_ptr<ScenePreview> readTitle(const QString& package, double backingScale) {
    try {
        auto scene = ScenePreview::of(
            PCProject::projectForReadingWithFileWrapper(readPackage(package)), backingScale);
        scene->setFillsView(true);
        scene->show();
        scene->setClipsToBounds(true);
        return scene;
    } catch (const InputError&) { return nullptr; }
}

}  // namespace

TitleView::TitleView(const QString& package, QWidget* parent)
    : QWidget(parent),
      m_scene(readTitle(package, devicePixelRatioF() > 1 ? 2 : 1)),
      m_logo(new LogoButton(this)),
      m_close(u"close"_s, kVideoCloseSide, this) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleRole(*this, QAccessible::Graphic);
    setAccessibleName(u"Tweenery. Key it. Play it. Hand over the code."_s);
    m_frames.setTimerType(Qt::PreciseTimer);
    m_popUp.setSingleShot(true);
    m_close.setAccessibleName(u"Close Video"_s);
    m_close.setToolTip(u"Close Video (Esc)"_s);
    m_close.setInk([] { return Appearance::current().frame().onPlate; });
    m_close.hide();
    m_logo->setVisible(m_scene != nullptr);
    connect(&m_frames, &QTimer::timeout, this, &TitleView::tick);
    connect(&m_popUp, &QTimer::timeout, this, [this] { play(kDown); });
    connect(m_logo, &QAbstractButton::clicked, this, &TitleView::popUp);
    connect(&m_close, &QAbstractButton::clicked, this, &TitleView::endVideo);
}

TitleView::~TitleView() = default;

// The logo.

// From the beginning, at the view's own time 0.
void TitleView::play(const QString& animation) {
    if (!m_scene) { return; }
    m_scene->stopAll();
    m_scene->setTime(0);
    const auto& animations = m_scene->animations();
    for (size_t i = 0; i < animations.size(); ++i) {
        if (animations[i].name == animation) { m_scene->start(i); }
    }
    m_playing = animation;
    m_clock.start();
    if (Appearance::current().reducesMotion()) {
        m_scene->setTime(kEnd);
    } else {
        m_frames.start(qMax(1, static_cast<int>(1000 / screen()->refreshRate())));
    }
    update();
}

void TitleView::popUp() {
    if (Appearance::current().reducesMotion()) { return play(kDown); }
    play(kUp);
    for (const ScenePreview::Animation& animation : m_scene->animations()) {
        if (animation.name == kUp) { m_popUp.start(animation.length.durationInMS); }
    }
}

bool TitleView::hasEnded() const {
    for (const ScenePreview::Animation& animation : m_scene->animations()) {
        if (animation.name == m_playing) {
            return m_clock.elapsed() > animation.length.durationInMS;
        }
    }
    return true;
}

void TitleView::tick() {
    m_scene->setTime(static_cast<double>(m_clock.elapsed()) / 1000);
    if (hasEnded()) { m_frames.stop(); }
    update();
}

void TitleView::showEvent(QShowEvent*) {
    if (m_playing.isNull()) { play(kDown); }
}

void TitleView::hideEvent(QHideEvent*) {
    endVideo();
}

void TitleView::resizeEvent(QResizeEvent*) {
    if (m_scene) { m_scene->setViewSize(size()); }
    m_logo->setGeometry(QRectF(kLogoShare.x() * width(), kLogoShare.y() * height(),
                               kLogoShare.width() * width(), kLogoShare.height() * height())
                            .toRect());
    const QSize close = m_close.sizeHint();
    m_close.setGeometry({{width() - close.width() - kVideoCloseMargin, kVideoCloseMargin}, close});
}

// Videos.

void TitleView::showVideo(const QString& path, const QString& title) {
    m_movie = std::make_unique<QMovie>(path);
    if (!m_movie->isValid()) { return endVideo(); }
    m_videoTitle = title;
    setAccessibleDescription(title);
    connect(m_movie.get(), &QMovie::frameChanged, this, qOverload<>(&QWidget::update));
    m_movie->start();
    m_close.show();
    m_close.raise();
    m_logo->hide();
    update();
}

void TitleView::endVideo() {
    if (!std::exchange(m_movie, nullptr)) { return; }
    setAccessibleDescription({});
    m_close.hide();
    m_logo->setVisible(m_scene != nullptr);
    update();
    Q_EMIT videoDidEnd();
}

void TitleView::mousePressEvent(QMouseEvent* event) {
    if (m_movie) { return endVideo(); }
    event->ignore();
}

void TitleView::paintVideo(QPainter& painter) {
    const QImage frame = m_movie->currentImage();
    QSizeF shown = frame.size();
    shown.scale(QSizeF(size()), Qt::KeepAspectRatio);
    QRectF place(QPointF(), shown);
    place.moveCenter(QRectF(rect()).center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(place, frame);
}

void TitleView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const double ratio = devicePixelRatioF();
    const QSize pixels = (QSizeF(size()) * ratio).toSize();
    painter.fillRect(rect(), Appearance::current().frame().titleGround);
    if (m_movie) { return paintVideo(painter); }
    if (!m_scene || pixels.isEmpty()) { return; }
    m_scene->update();
    const QImage& frame =
        m_renderer.frame(m_scene->layer(), {{ratio, 0, 0, ratio}, QPointF()}, pixels);
    painter.drawImage(QRectF(QPointF(), QSizeF(pixels) / ratio), frame);
}

}  // namespace tweenery
