#include "ui/timeline/timeline_pane.h"

#include <QPainter>
#include <QSlider>

#include "ui/widgets/appearance.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kLeastSpan = 10'000;  // ms; room to add keyframes after the last
constexpr int kStep = 10;
constexpr int kPage = 100;
constexpr int kTimeWidth = 90;
constexpr int kMargin = 12;

}  // namespace

TimelinePane::TimelinePane(PCDocumentWindowController& controller, QWidget* parent)
    : QWidget(parent), m_controller(controller), m_playhead(new QSlider(Qt::Horizontal, this)) {
    setAccessibleName(u"Timeline"_s);
    m_playhead->setAccessibleName(u"Playhead"_s);
    m_playhead->setToolTip(u"Playhead"_s);
    m_playhead->setSingleStep(kStep);
    m_playhead->setPageStep(kPage);
    connect(m_playhead, &QSlider::valueChanged, this, &TimelinePane::movePlayhead);
    m_subscription = m_controller.timeManager().addPlayheadTimeListener(this);
    timeManagerDidUpdatePlayhead(m_controller.timeManager());
}

void TimelinePane::timeManagerDidUpdatePlayhead(PCProjectTimeManager& manager) {
    const QSignalBlocker blocker(m_playhead);
    const int time = manager.playheadPositionInMS();
    m_playhead->setRange(0, qMax(kLeastSpan, qMax(time, m_controller.lastKeyframeTimeInMS())));
    m_playhead->setValue(time);
    update();
}

void TimelinePane::movePlayhead(int timeInMS) {
    m_controller.stopPlaybackHere();
    m_controller.timeManager().setPlayheadPositionInMS(timeInMS);
}

void TimelinePane::resizeEvent(QResizeEvent*) {
    m_playhead->setGeometry(kTimeWidth, 0, qMax(0, width() - kTimeWidth - kMargin),
                            sizes::timelineHeader);
}

void TimelinePane::paintEvent(QPaintEvent*) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    QPainter painter(this);
    painter.fillRect(rect(), colors.timelineRest);
    painter.setFont(regularFont(sizes::paneLabelSize));
    painter.setPen(colors.headerInk);
    drawTabularText(painter, QRectF(kMargin, 0, kTimeWidth - kMargin, sizes::timelineHeader),
                    Qt::AlignLeft | Qt::AlignVCenter,
                    PCProjectTimeManager::displayStringForTimeInMS(
                        m_controller.timeManager().playheadPositionInMS()) +
                        u's');
}

}  // namespace tweenery
