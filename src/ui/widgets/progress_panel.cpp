#include "ui/widgets/progress_panel.h"

#include <QGridLayout>
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

constexpr std::chrono::seconds kPanelDelay{1};
constexpr int kPanelWidth = 424;
constexpr int kCardRadius = 8;
constexpr int kResultPicture = 24;
constexpr int kResultTextLeft = 56;
constexpr int kResultTextWidth = kPanelWidth - kResultTextLeft - sizes::dialogMargin;

}  // namespace

ProgressPanel::ProgressPanel(QWidget* parent) : QWidget(parent) {
    auto* grid = new QGridLayout(this);
    grid->setSpacing(8);
    grid->addWidget(&m_title, 0, 0, 1, 2);
    grid->addWidget(&m_bar, 1, 0, 1, 2);
    grid->addWidget(&m_detail, 2, 0, 1, 2);
    grid->addWidget(&m_button, 3, 1, Qt::AlignRight);
    grid->setColumnStretch(0, 1);
    setFixedWidth(kPanelWidth);
    setAccessibleRole(*this, QAccessible::Pane);
    m_title.setFont(headingFont());
    m_detail.setFont(regularFont(sizes::captionTextSize));
    m_detail.setTextFormat(Qt::PlainText);
    m_title.setTextFormat(Qt::PlainText);
    m_detail.setForegroundRole(QPalette::PlaceholderText);
    m_bar.setTextVisible(false);
    m_bar.setFixedHeight(sizes::progressBarHeight);
    connect(&m_button, &QAbstractButton::clicked, this, [this] {
        if (!m_showsResult) {
            Q_EMIT stopped();
        } else if (m_action) {
            m_action();
        }
    });
    m_delay.setSingleShot(true);
    connect(&m_delay, &QTimer::timeout, this, &QWidget::show);
    hide();
}

void ProgressPanel::setShowsResult(bool shows) {
    m_showsResult = shows;
    m_bar.setVisible(!shows);
    const int left = shows ? kResultTextLeft : sizes::dialogMargin;
    layout()->setContentsMargins(left, sizes::dialogMargin, sizes::dialogMargin,
                                 sizes::dialogMargin);
    adjustSize();
    update();
}

void ProgressPanel::start(const QString& name) {
    hide();
    m_title.setText(name);
    setAccessibleName(name);
    m_bar.setAccessibleName(name);
    m_detail.clear();
    m_bar.setRange(0, 0);
    m_button.setText(u"Stop"_s);
    setShowsResult(false);
    m_delay.start(kPanelDelay);
}

void ProgressPanel::setProgress(const QString& step, int done, int total) {
    m_bar.setRange(0, total);
    m_bar.setValue(done);
    m_detail.setText(total > 0 ? u"%1, %2 of %3"_s.arg(step).arg(done).arg(total) : step);
}

void ProgressPanel::finish() {
    m_delay.stop();
    hide();
}

void ProgressPanel::showResult(const QString& title, const QString& detail,
                               const QString& buttonText, std::function<void()> action) {
    m_delay.stop();
    m_title.setText(title);
    setAccessibleName(title);
    QStringList lines = detail.split(u'\n');
    for (QString& line : lines) {
        line = m_detail.fontMetrics().elidedText(line, Qt::ElideMiddle, kResultTextWidth);
    }
    m_detail.setText(lines.join(u'\n'));
    m_detail.setToolTip(detail);
    m_button.setText(buttonText);
    m_action = std::move(action);
    setShowsResult(true);
    show();
}

void ProgressPanel::paintEvent(QPaintEvent*) {
    const FrameColors& colors = Appearance::current().frame();
    QPainter painter(this);
    paintRounded(painter, rect(), kCardRadius, colors.frame, colors.popoverLine);
    if (!m_showsResult) { return; }
    const QRectF picture(sizes::dialogMargin,
                         m_title.geometry().center().y() - kResultPicture / 2.0, kResultPicture,
                         kResultPicture);
    paintIcon(painter, picture, u"check"_s, colors.done);
}

}  // namespace tweenery
