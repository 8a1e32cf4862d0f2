#include "ui/widgets/colors.h"

#include <algorithm>
#include <cmath>

#include "base/errors.h"

namespace tweenery {

namespace {

using namespace Qt::StringLiterals;

QColor rgb(QRgb value) {
    return QColor::fromRgb(value);
}

QColor black(double alpha) {
    return QColor::fromRgbF(0, 0, 0, static_cast<float>(alpha));
}

QColor white(double alpha) {
    return QColor::fromRgbF(1, 1, 1, static_cast<float>(alpha));
}

QColor grey(float level) {
    return QColor::fromRgbF(level, level, level);
}

const QColor kContrastLineOnLight = rgb(0x5E5E5E);
const QColor kContrastLineOnDark = rgb(0x9A9A9A);

FrameColors lightFrame() {
    return {
        .frame = rgb(0xECECEC),
        .surround = rgb(0xE6E6E6),
        .line = rgb(0xC6C6C6),
        .separator = rgb(0xBDBDBD),
        .ink = rgb(0x262626),
        .secondInk = rgb(0x595959),
        .disabledInk = rgb(0x959595),
        .icon = rgb(0x3A3A3A),
        .disabledIcon = rgb(0xA4A4A4),
        .plate = rgb(0x0B66B0),
        .onPlate = Qt::white,
        .accent = rgb(0x0B66B0),
        .control = Qt::white,
        .controlLine = rgb(0x868686),
        .field = Qt::white,
        .popover = rgb(0xF7F7F7),
        .popoverLine = rgb(0xB9B9B9),
        .popoverShadow = black(0.025),
        .noticeFill = rgb(0xFFF3CD),
        .noticeLine = rgb(0xD9BE6A),
        .noticeInk = rgb(0x4A3B00),
        .failureFill = rgb(0xFBE3E1),
        .failureLine = rgb(0xE0A29D),
        .failureInk = rgb(0x5E1511),
        .danger = rgb(0xB3261E),
        .warning = rgb(0x8A5A00),
        .done = rgb(0x1F7A3A),
        .toolTipFill = rgb(0x2A2A2A),
        .toolTipLine = rgb(0x2A2A2A),
        .toolTipInk = rgb(0xF3F3F3),
        .hover = black(0.07),
        .pressed = black(0.20),
        .plateHover = black(0.08),
        .platePressed = black(0.20),
        .dim = black(0.40),
        .paper = Qt::white,
        .recents = Qt::white,
        .statusFill = rgb(0x3C3C3C),
        .statusInk = rgb(0xF3F3F3),
        .scrollThumb = black(0.40),
    };
}

FrameColors darkFrame() {
    return {
        .frame = rgb(0x2A2A2A),
        .surround = rgb(0x2A2A2A),
        .line = rgb(0x171717),
        .separator = rgb(0x474747),
        .ink = rgb(0xE8E8E8),
        .secondInk = rgb(0xB4B4B4),
        .disabledInk = rgb(0x767676),
        .icon = rgb(0xD2D2D2),
        .disabledIcon = rgb(0x6E6E6E),
        .plate = rgb(0x1F7AC4),
        .onPlate = Qt::white,
        .accent = rgb(0x6CB8F5),
        .control = rgb(0x3C3C3C),
        .controlLine = rgb(0x808080),
        .field = rgb(0x1E1E1E),
        .popover = rgb(0x343434),
        .popoverLine = rgb(0x141414),
        .popoverShadow = black(0.05),
        .noticeFill = rgb(0x4A3F1C),
        .noticeLine = rgb(0x6D5C27),
        .noticeInk = rgb(0xF5E3A8),
        .failureFill = rgb(0x4A2320),
        .failureLine = rgb(0x7A3A35),
        .failureInk = rgb(0xFFD7D3),
        .danger = rgb(0xFF8A80),
        .warning = rgb(0xF0C060),
        .done = rgb(0x7FD49A),
        .toolTipFill = rgb(0x1A1A1A),
        .toolTipLine = rgb(0x6E6E6E),
        .toolTipInk = rgb(0xF3F3F3),
        .hover = white(0.09),
        .pressed = black(0.20),
        .plateHover = black(0.08),
        .platePressed = black(0.20),
        .dim = black(0.40),
        .paper = Qt::white,
        .recents = rgb(0xE6E6E6),
        .statusFill = rgb(0x3C3C3C),
        .statusInk = rgb(0xF3F3F3),
        .scrollThumb = white(0.40),
    };
}

FrameColors withContrast(FrameColors colors, const QColor& line) {
    colors.secondInk = colors.ink;
    for (QColor* open : {&colors.line, &colors.separator, &colors.controlLine, &colors.popoverLine,
                         &colors.noticeLine, &colors.failureLine}) {
        *open = line;
    }
    return colors;
}

WorkbenchColors ordinaryWorkbench() {
    return {
        .row = rgb(0xE6E6E6),
        .rowLowerEdge = Qt::white,
        .rowHover = black(0.05),
        .rowInk = Qt::black,
        .rowIcon = rgb(0x3A3A3A),
        .lockDot = rgb(0xAAAAAA),
        .onSelected = Qt::white,
        .onSelectedLockDot = white(0.75),
        .setupSelection = rgb(0x009AF4),
        .animationSelection = rgb(0xFF0000),
        .setupIcon = rgb(0x00BAF7),
        .headerTop = grey(0.607843F),
        .headerBottom = grey(0.423529F),
        .headerInk = Qt::white,
        .headerShadow = black(0.45),
        .divider = rgb(0x555555),
        .surround = rgb(0x4D4D4D),
        .pane = rgb(0xD1D1D1),
        .paneInk = Qt::black,
        .paneIcon = rgb(0x5E5E5E),
        .paneSecondInk = rgb(0x555555),
        .checkerLight = rgb(0xF6F6F6),
        .checkerDark = rgb(0xE4E4E4),
        .fieldFill = grey(0.7F),
        .fieldLine = rgb(0x6E6E6E),
        .fieldInk = Qt::white,
        .fieldRefused = rgb(0xB3261E),
        .paneRow = grey(0.886F),
        .paneRowLine = black(0.11),
        .keyButton = grey(0.698039F),
        .dial = grey(0.7F),
        .knob = Qt::white,
        .badge = rgb(0x3C3C3C),
        .bracket = rgb(0x6A6A6A),
        .accent = rgb(0x0B66B0),
        .track = rgb(0xF3F3F3),
        .trackLine = black(0.11),
        .timelineHeadLine = rgb(0x909090),
        .timelineRest = grey(0.25F),
        .timelineActive = grey(0.161F),
        .timelinePlaying = QColor::fromRgbF(0.114F, 0.616F, 0.953F),
        .timelineButton = rgb(0x5A5A5A),
        .timelineInk = rgb(0xF3F3F3),
        .timelineSecondInk = rgb(0xB4B4B4),
        .timelineScroller = rgb(0x8A8A8A),
        .playheadPlate = rgb(0x111111),
        .lightGrey = rgb(0xAAAAAA),
        .darkGrey = rgb(0x555555),
        .grey = rgb(0x808080),
        .red = rgb(0xFF0000),
        .blue = rgb(0x2E6BFF),
        .green = rgb(0x2FA84F),
        .toggleOn = QColor::fromRgbF(0.360784F, 0.780392F, 0.992157F),
        .toggleOff = grey(0.698039F),
        .exportToggleOn = rgb(0x318AF4),
        .exportToggleOff = rgb(0xB2B2B2),
        .easingButton = rgb(0xD4D4D4),
        .easingInk = rgb(0x1E1E1E),
        .groupFxFill = rgb(0x808080),
        .groupFxInk = Qt::white,
    };
}

WorkbenchColors contrastWorkbench() {
    WorkbenchColors colors = ordinaryWorkbench();
    colors.paneIcon = colors.paneInk;
    colors.paneSecondInk = colors.paneInk;
    colors.fieldFill = rgb(0x5E5E5E);
    colors.fieldLine = kContrastLineOnLight;
    colors.bracket = kContrastLineOnLight;
    colors.lockDot = kContrastLineOnLight;
    colors.trackLine = kContrastLineOnLight;
    colors.timelineHeadLine = kContrastLineOnDark;
    colors.timelineSecondInk = colors.timelineInk;
    colors.timelineScroller = kContrastLineOnDark;
    colors.groupFxFill = rgb(0x5E5E5E);
    return colors;
}

double linearChannel(float channel) {
    return channel <= 0.04045F ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

}  // namespace

const PictureColors& pictureColors() {
    static const PictureColors colors{
        .onRow = QColor(0x3A, 0x3A, 0x3A),
        .onSelectedRow = Qt::white,
        .shutPadlock = Qt::black,
        .loopOff = QColor(0x6A, 0x6A, 0x6A),
        .loopMarker = QColor(0x7A, 0x7A, 0x7A),
        .loopOn = QColor(0x2E, 0x2E, 0x2E),
        .easing = QColor(0x1E, 0x1E, 0x1E),
    };
    return colors;
}

const FrameColors& frameColors(bool isDark, bool increasesContrast) {
    static const FrameColors light = lightFrame();
    static const FrameColors dark = darkFrame();
    static const FrameColors lightContrast = withContrast(lightFrame(), kContrastLineOnLight);
    static const FrameColors darkContrast = withContrast(darkFrame(), kContrastLineOnDark);
    if (increasesContrast) { return isDark ? darkContrast : lightContrast; }
    return isDark ? dark : light;
}

const WorkbenchColors& workbenchColors(bool increasesContrast) {
    static const WorkbenchColors ordinary = ordinaryWorkbench();
    static const WorkbenchColors contrast = contrastWorkbench();
    return increasesContrast ? contrast : ordinary;
}

QColor propertyColor(PCPropertyType type) {
    switch (type) {
        case PCPropertyTypeTranslation:
        case PCPropertyTypeTranslationX:
        case PCPropertyTypeTranslationY:
            return QColor::fromRgbF(0.988F, 0.529F, 0.227F);
        case PCPropertyTypeScale:
        case PCPropertyTypeScaleX:
        case PCPropertyTypeScaleY:
            return QColor::fromRgbF(0.42F, 0.349F, 0.612F);
        case PCPropertyTypeZRotation:
            return QColor::fromRgbF(0, 0.588F, 0.925F);
        case PCPropertyTypeOpacity:
            return QColor::fromRgbF(0.557F, 0.557F, 0.576F);
        case PCPropertyTypeImageContents:
            return QColor::fromRgbF(0.169F, 0.663F, 0.616F);
        case PCPropertyTypeChildrenZPositions:
            return QColor::fromRgbF(0.828F, 0.38F, 0.537F);
        case PCPropertyTypeZPosition:
        case PCPropertyTypeKeyAll:
            break;
    }
    failContract(u"* no style for zPosition"_s);
}

QColor keyButtonLine(PCPropertyType type, bool increasesContrast) {
    return increasesContrast ? kContrastLineOnLight : blended(black(0.4), propertyColor(type));
}

QColor blended(const QColor& over, const QColor& fill) {
    const float share = over.alphaF();
    const auto mix = [share](float top, float bottom) {
        return top * share + bottom * (1 - share);
    };
    return QColor::fromRgbF(mix(over.redF(), fill.redF()), mix(over.greenF(), fill.greenF()),
                            mix(over.blueF(), fill.blueF()));
}

QColor lightened(const QColor& color, double level) {
    return blended(white(level), color);
}

QColor darkened(const QColor& color, double level) {
    return blended(black(level), color);
}

double relativeLuminance(const QColor& color) {
    return 0.2126 * linearChannel(color.redF()) + 0.7152 * linearChannel(color.greenF()) +
           0.0722 * linearChannel(color.blueF());
}

double contrastRatio(const QColor& a, const QColor& b) {
    const double first = relativeLuminance(a);
    const double second = relativeLuminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QColor pictureColorOn(const QColor& fill) {
    return relativeLuminance(fill) > 0.30 ? rgb(0x1E1E1E) : QColor(Qt::white);
}

}  // namespace tweenery
