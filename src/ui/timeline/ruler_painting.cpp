#include "ui/timeline/ruler_painting.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>

#include "base/number_text.h"
#include "editor/timeline/project_time_manager.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/sizes.h"

namespace tweenery {
namespace {

constexpr double kRulerHeight = sizes::timelineHeader;
constexpr int kLabelSize = 12;
constexpr double kLabelLeft = 2;  // from its tick
constexpr double kLabelRoom = 90;
constexpr double kLeastLabelDistance = 60;
constexpr double kLeastTickDistance = 5;
constexpr double kTick = 2;
constexpr double kBar = 2;
constexpr double kBarMiddle = 0.5;  // from its time
constexpr int kPlayheadLabelSize = 14;
constexpr double kPlateTop = 12;
constexpr double kPlateHeight = 18;
constexpr double kPlateRadius = 3;
constexpr double kPlateMargin = 4;

// Of the ruler's height.
double tickShare(int index, int count) {
    if (2 * index == count) { return 0.75; }
    if (4 * index == count || 4 * index == 3 * count) { return 0.5; }
    return 0.25;
}

void paintTick(QPainter& painter, double x, double share, const QColor& color) {
    painter.fillRect(alignedToDevice(painter, {x - kTick / 2, 0, kTick, share * kRulerHeight}),
                     color);
}

// How many segments there are from one label to the next: 1, 2 or 5 times a power of ten.
int64_t segmentsPerLabel(double segmentWidth) {
    const double least = kLeastLabelDistance / std::max(segmentWidth, 1e-12);
    for (int64_t decade = 1;; decade *= 10) {
        for (const int64_t count : {decade, 2 * decade, 5 * decade}) {
            if (static_cast<double>(count) >= least) { return count; }
        }
    }
}

// What stands between two labels.
struct Ticks {
    int count = 0;        // into how many parts they divide it
    double distance = 0;  // in points
};

Ticks ticksBetweenLabels(const PCProjectTimeManager& time, int64_t segments) {
    const double segment = time.segmentWidthInPoints();
    if (segments == 1) { return {time.numberOfSubsegments(), time.subsegmentWidthInPoints()}; }
    if (segment < kLeastTickDistance) { return {}; }
    return {static_cast<int>(segments), segment};
}

QFont labelFont() {
    return regularFont(kPlayheadLabelSize);
}

}  // namespace

void paintRuler(QPainter& painter, const PCProjectTimeManager& time, double width,
                double scrollOffset, int32_t maxTimeInMS, const QColor& fill) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    painter.fillRect(alignedToDevice(painter, {0, 0, width, kRulerHeight}), fill);
    const int32_t atLeft = time.msFromPointValue(scrollOffset);
    const int64_t segments = segmentsPerLabel(time.segmentWidthInPoints());
    const int64_t step = segments * time.segmentWidthInMS();
    int64_t start = time.segmentStartInMSNotAfterTimeInMS(atLeft);
    start -= (start % step + step) % step;
    const Ticks ticks = ticksBetweenLabels(time, segments);
    const double labelDistance = static_cast<double>(segments) * time.segmentWidthInPoints();
    double x = static_cast<double>(start) * time.zoomInPointsPerMillisecond() - scrollOffset;
    painter.setFont(regularFont(kLabelSize));
    painter.setPen(colors.headerInk);
    for (; x < width && start <= maxTimeInMS; x += labelDistance) {
        if (start >= 0) {
            paintTick(painter, x, 1, colors.lightGrey);
            drawTabularText(
                painter, {x + kLabelLeft, 0, kLabelRoom, kRulerHeight},
                Qt::AlignLeft | Qt::AlignBottom,
                PCProjectTimeManager::displayStringForTimeInMS(static_cast<int32_t>(start)));
            for (int i = 1; i < ticks.count && start < maxTimeInMS; ++i) {
                paintTick(painter, x + i * ticks.distance, tickShare(i, ticks.count),
                          colors.lightGrey);
            }
        }
        start += step;
    }
}

void paintLoopRange(QPainter& painter, double from, double to, bool isOn) {
    constexpr double kBand = 4;
    const WorkbenchColors& colors = Appearance::current().workbench();
    const QRectF band(from, kRulerHeight - kBand, to - from, kBand);
    painter.fillRect(alignedToDevice(painter, band), isOn ? colors.green : colors.lightGrey);
}

void paintTimeBar(QPainter& painter, double x, double height, const QColor& color) {
    const QRectF bar(x + kBarMiddle - kBar / 2, 0, kBar, height);
    painter.fillRect(alignedToDevice(painter, bar), color);
}

QString playheadLabel(int32_t timeInMS) {
    constexpr double kMillisecondsPerSecond = 1000;
    return QString::fromStdString(fixedText(timeInMS / kMillisecondsPerSecond, 2)) + u's';
}

QRectF playheadPlate(double x, const QString& label) {
    const double left = x + kBarMiddle + kBar / 2;
    const double right = x + kLabelLeft + tabularWidth(labelFont(), label) + kPlateMargin;
    return {left, kPlateTop, right - left, kPlateHeight};
}

void paintPlayheadLabel(QPainter& painter, double x, const QString& label) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    const QRectF plate = playheadPlate(x, label);
    paintRounded(painter, plate, kPlateRadius, colors.playheadPlate, {});
    painter.setFont(labelFont());
    painter.setPen(colors.red);
    drawTabularText(painter, {x + kLabelLeft, plate.top(), plate.width(), plate.height()},
                    Qt::AlignLeft | Qt::AlignVCenter, label);
}

void paintMarquee(QPainter& painter, QRectF rect) {
    constexpr float kOpacity = 0.7F;
    rect.setTop(std::max(rect.top(), kRulerHeight));
    if (rect.height() < 0) { return; }
    QColor line = Appearance::current().workbench().darkGrey;
    QColor fill = Appearance::current().workbench().lightGrey;
    line.setAlphaF(kOpacity);
    fill.setAlphaF(kOpacity);
    paintRounded(painter, rect, 0, fill, line);
}

}  // namespace tweenery
