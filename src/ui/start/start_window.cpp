#include "ui/start/start_window.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QWindow>

#include "model/preferences/app_preferences.h"
#include "ui/widgets/accessible_role.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/elided_label.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr QRect kTitle(0, 0, sizes::startTitleWidth, sizes::startTitleHeight);
constexpr int kRightLeft = sizes::startTitleWidth + 20;
constexpr int kFootTop = sizes::startHeight - sizes::startFoot;
constexpr int kSamplesHeading = 8;  // below the title
constexpr int kSamplesTop = sizes::startTitleHeight + 35;
constexpr int kCellInset = 6;
constexpr int kVideoPicture = 24;
constexpr int kVideoTextLeft = 40;
constexpr int kProjectTextLeft = 92;
constexpr int kChevron = 20;
constexpr int kClose = 30;
constexpr int kClosePicture = 20;
constexpr int kNewProjectWidth = 120;
constexpr int kOpenWidth = 88;
constexpr int kPictureRadius = 4;

const FrameColors& colors() {
    return Appearance::current().frame();
}

// One place of a sample's row, in which all reacts.
class SampleCell : public QAbstractButton {
 public:
    SampleCell(const QString& title, QWidget* parent) : QAbstractButton(parent) {
        setText(title);
        setAccessibleName(title);
        setAttribute(Qt::WA_Hover);
        setFocusPolicy(Qt::StrongFocus);
    }

 protected:
    virtual int textLeft() const = 0;
    virtual void paintPicture(QPainter& painter) = 0;

    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        if (isEnabled() && (underMouse() || isDown())) {
            paintRounded(painter, rect(), sizes::buttonRadius, colors().hover, {});
        }
        paintPicture(painter);
        painter.setFont(frameFont());
        painter.setPen(isEnabled() ? colors().ink : colors().disabledInk);
        const QRect place = rect().adjusted(textLeft(), 0, -kChevron - kCellInset, 0);
        painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(text(), Qt::ElideRight, place.width()));
    }
};

class SampleVideoTableCellView : public SampleCell {
 public:
    using SampleCell::SampleCell;

 protected:
    int textLeft() const override { return kVideoTextLeft; }
    void paintPicture(QPainter& painter) override {
        paintIcon(painter, {4, (height() - kVideoPicture) / 2.0, kVideoPicture, kVideoPicture},
                  u"movie"_s, isEnabled() ? colors().accent : colors().disabledIcon);
    }
};

class SampleProjectTableCellView : public SampleCell {
 public:
    SampleProjectTableCellView(const QString& title, const QString& preview, QWidget* parent)
        : SampleCell(title, parent), m_preview(preview) {}

 protected:
    int textLeft() const override { return kProjectTextLeft; }
    void paintPicture(QPainter& painter) override {
        const QRectF place(8, (height() - sizes::startPictureHeight) / 2.0,
                           sizes::startPictureWidth, sizes::startPictureHeight);
        QPainterPath outline;
        outline.addRoundedRect(place, kPictureRadius, kPictureRadius);
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setClipPath(outline);
        painter.drawPixmap(place.topLeft(),
                           iconPixmap(m_preview, place.size(), devicePixelRatioF(), Qt::black));
        painter.restore();
        paintIcon(painter,
                  {width() - kChevron - kCellInset * 1.0, (height() - kChevron) / 2.0, kChevron,
                   kChevron},
                  u"chev_right"_s, colors().icon);
    }

 private:
    QString m_preview;
};

// Rows of cells, with a line between two.
class SampleRows : public QWidget {
 public:
    explicit SampleRows(QWidget* parent) : QWidget(parent) {}

 protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const auto rows = static_cast<int>(children().size()) / 2;
        for (int row = 0; row + 1 < rows; ++row) {
            paintLowerLine(painter,
                           QRectF(sizes::startMargin, row * sizes::startRow,
                                  width() - 2 * sizes::startMargin, sizes::startRow),
                           colors().separator);
        }
    }
};

}  // namespace

StartWindow::StartWindow(const std::vector<RecentProject>& recents, const QString& samplesFolder)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint),
      m_title(samplesFolder + u"/Onboard.tweenery"_s, this),
      m_recents(this),
      m_showsAtLaunch(u"Show at launch"_s, this) {
    setWindowTitle(u"Tweenery"_s);
    setAccessibleName(u"Tweenery"_s);
    setFixedSize(sizes::startWidth, sizes::startHeight);
    m_title.setGeometry(kTitle);
    addHeading();
    m_recents.setGeometry(sizes::startTitleWidth + 1, sizes::startHeading,
                          sizes::startWidth - sizes::startTitleWidth - 1,
                          kFootTop - sizes::startHeading);
    m_recents.setProjects(recents);
    connect(&m_recents, &RecentsList::opened, this, &StartWindow::projectChosen);
    connect(&m_recents, &RecentsList::removed, this, [this](const QString& path) {
        m_recents.removePath(path);
        Q_EMIT recentRemoved(path);
    });
    addSamples(samplesIn(samplesFolder));
    addFoot();
    connect(&Appearance::current(), &Appearance::changed, this, qOverload<>(&QWidget::update));
    m_recents.count() > 0 ? m_recents.setFocus() : setFocus();
    if (m_recents.count() > 0) { m_recents.setCurrentRow(0); }
}

void StartWindow::addHeading() {
    auto* heading = new ElidedLabel(this);
    heading->setFont(headingFont());
    heading->setText(u"Recent projects"_s);
    heading->setInk(
        [] { return frameColors(false, Appearance::current().increasesContrast()).ink; });
    heading->setGeometry(kRightLeft, 0, sizes::startWidth - kRightLeft - kClose - 20,
                         sizes::startHeading);
    auto* close = new IconButton(u"close"_s, kClosePicture, this);
    close->setAccessibleName(u"Close"_s);
    close->setToolTip(u"Close (Esc)"_s);
    close->setInk(
        [] { return frameColors(false, Appearance::current().increasesContrast()).icon; });
    close->setGeometry(sizes::startWidth - kClose - 11, (sizes::startHeading - kClose) / 2, kClose,
                       kClose);
    connect(close, &QAbstractButton::clicked, this, &QWidget::close);
}

void StartWindow::addSamples(const std::vector<Sample>& samples) {
    auto* heading = new QLabel(u"Samples"_s, this);
    heading->setFont(mediumFont(sizes::captionTextSize));
    heading->setForegroundRole(QPalette::PlaceholderText);
    heading->setGeometry(sizes::startMargin, sizes::startTitleHeight + kSamplesHeading, 200, 22);
    auto* list = new SampleRows(this);
    setAccessibleRole(*list, QAccessible::List);
    list->setAccessibleName(u"Samples"_s);
    list->setGeometry(0, kSamplesTop, sizes::startTitleWidth, kFootTop - kSamplesTop);
    int top = 0;
    for (const Sample& sample : samples) {
        const QString video = sample.title + u" Video"_s;
        auto* left = new SampleVideoTableCellView(video, list);
        left->setGeometry(sizes::startMargin, top, sizes::startVideoColumn - sizes::startMargin,
                          sizes::startRow);
        left->setToolTip(u"Plays the video here"_s);
        left->setEnabled(!sample.video.isEmpty());
        connect(left, &QAbstractButton::clicked, this,
                [this, path = sample.video, video] { m_title.showVideo(path, video); });
        auto* right =
            new SampleProjectTableCellView(sample.title + u" Project"_s, sample.preview, list);
        right->setGeometry(sizes::startVideoColumn, top,
                           sizes::startTitleWidth - sizes::startVideoColumn - 8, sizes::startRow);
        right->setToolTip(u"Opens a copy of the project"_s);
        connect(right, &QAbstractButton::clicked, this,
                [this, path = sample.project] { Q_EMIT sampleChosen(path); });
        top += sizes::startRow;
    }
}

void StartWindow::addFoot() {
    const int top = kFootTop + (sizes::startFoot - sizes::buttonHeight) / 2;
    auto* make = new QPushButton(u"New Project"_s, this);
    make->setDefault(true);
    make->setToolTip(u"New Project (Ctrl+N)"_s);
    make->setGeometry(sizes::startMargin, top, kNewProjectWidth, sizes::buttonHeight);
    connect(make, &QAbstractButton::clicked, this, &StartWindow::newProjectWanted);
    auto* open = new QPushButton(u"Open…"_s, this);
    open->setToolTip(u"Open… (Ctrl+O)"_s);
    open->setGeometry(make->geometry().right() + 13, top, kOpenWidth, sizes::buttonHeight);
    connect(open, &QAbstractButton::clicked, this, &StartWindow::openPanelWanted);
    m_showsAtLaunch.setChecked(PCAppPreferences::showsOnboardWindowAtLaunch());
    m_showsAtLaunch.setToolTip(u"Show this window when Tweenery starts without a project"_s);
    m_showsAtLaunch.setGeometry(kRightLeft, top, 160, sizes::buttonHeight);
    connect(&m_showsAtLaunch, &QCheckBox::toggled, this,
            [](bool shows) { PCAppPreferences::setShowsOnnboardWindowAtLaunch(shows); });
    auto* version = new QLabel(u"Version "_s + QStringLiteral(TWEENERY_VERSION), this);
    version->setForegroundRole(QPalette::PlaceholderText);
    version->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    version->setGeometry(sizes::startWidth - 180, top, 160, sizes::buttonHeight);
}

void StartWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), colors().frame);
    painter.fillRect(sizes::startTitleWidth, 0, sizes::startWidth, kFootTop, colors().recents);
    const double line = hairlineWidth(painter);
    painter.fillRect(QRectF(sizes::startTitleWidth, 0, line, kFootTop), colors().line);
    painter.fillRect(QRectF(0, kFootTop, sizes::startWidth, line), colors().line);
    paintRounded(painter, rect(), 0, {}, colors().popoverLine);
}

void StartWindow::keyPressEvent(QKeyEvent* event) {
    const bool isControl = event->modifiers() == Qt::ControlModifier;
    switch (event->key()) {
        case Qt::Key_Escape:
            if (m_title.showsVideo()) { return m_title.endVideo(); }
            close();
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (auto* button = qobject_cast<QAbstractButton*>(focusWidget())) {
                return button->click();
            }
            Q_EMIT newProjectWanted();
            return;
        case Qt::Key_N:
            if (isControl) { Q_EMIT newProjectWanted(); }
            return;
        case Qt::Key_O:
            if (isControl) { Q_EMIT openPanelWanted(); }
            return;
        case Qt::Key_W:
        case Qt::Key_Q:
            if (isControl) { close(); }
            return;
        default:
            QWidget::keyPressEvent(event);
    }
}

// The window has no title bar of the desktop's to be moved by.
void StartWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && windowHandle()) { windowHandle()->startSystemMove(); }
}

void StartWindow::closeEvent(QCloseEvent* event) {
    QWidget::closeEvent(event);
    Q_EMIT closed();
}

}  // namespace tweenery
