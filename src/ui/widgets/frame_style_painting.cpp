#include "ui/widgets/frame_style_painting.h"

#include <QPainter>
#include <QSlider>

#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

namespace tweenery::framePainting {

namespace {

using namespace Qt::StringLiterals;

constexpr int kMenuTextLeft = 10;
constexpr int kMenuCheck = 18;  // room for it, where a menu has any
constexpr int kMenuTextRight = 14;
constexpr int kMenuColumnGap = 30;
constexpr int kSeparatorHeight = 9;
constexpr int kMenuPicture = 16;
constexpr int kScrollThumb = 6;
constexpr int kSliderKnob = 14;
constexpr int kSliderTick = 3;

const FrameColors& colors() {
    return Appearance::current().frame();
}

bool isEnabled(const QStyleOption& option) {
    return option.state & QStyle::State_Enabled;
}

bool isPressed(const QStyleOption& option) {
    return option.state & QStyle::State_Sunken;
}

bool isHovered(const QStyleOption& option) {
    return isEnabled(option) && option.state & QStyle::State_MouseOver;
}

bool isChecked(const QStyleOption& option) {
    return option.state & QStyle::State_On;
}

bool isFilled(const QStyleOptionButton& option) {
    return isEnabled(option) && option.features & QStyleOptionButton::DefaultButton;
}

QColor inState(const QStyleOption& option, const QColor& fill, const QColor& hover,
               const QColor& pressed) {
    if (isPressed(option)) { return blended(pressed, fill); }
    return isHovered(option) ? blended(hover, fill) : fill;
}

QColor controlFill(const QStyleOption& option, const QColor& fill) {
    return inState(option, fill, colors().hover, colors().pressed);
}

QColor plateFill(const QStyleOption& option) {
    return inState(option, colors().plate, colors().plateHover, colors().platePressed);
}

// The square of a check box, or the circle of a radio button.
void paintBox(QPainter& painter, const QStyleOption& option, double radius) {
    if (!isEnabled(option)) {
        paintRounded(painter, option.rect, radius, {}, colors().separator);
    } else if (isChecked(option)) {
        paintRounded(painter, option.rect, radius, plateFill(option), {});
    } else {
        paintRounded(painter, option.rect, radius, controlFill(option, colors().field),
                     colors().controlLine);
    }
}

QColor markColor(const QStyleOption& option) {
    return isEnabled(option) ? colors().onPlate : colors().disabledInk;
}

// "Group\tCtrl+G" has two columns.
QString menuLabel(const QStyleOptionMenuItem& option) {
    return option.text.section(u'\t', 0, 0);
}

QString menuShortcut(const QStyleOptionMenuItem& option) {
    return option.text.section(u'\t', 1);
}

int menuTextLeft(const QStyleOptionMenuItem& option) {
    return kMenuTextLeft + (option.menuHasCheckableItems ? kMenuCheck : 0);
}

int mnemonicFlags(const QStyleOption& option) {
    const bool shows = !option.styleObject || option.styleObject->property("mnemonics").toBool();
    return shows ? Qt::TextShowMnemonic : Qt::TextHideMnemonic;
}

void paintMenuMark(QPainter& painter, const QStyleOptionMenuItem& option, const QColor& ink) {
    if (option.checkType == QStyleOptionMenuItem::NotCheckable || !option.checked) { return; }
    QRectF place(0, 0, kMenuPicture, kMenuPicture);
    place.moveCenter(
        QPointF(option.rect.left() + menuTextLeft(option) / 2.0, QRectF(option.rect).center().y()));
    paintIcon(painter, place, u"check"_s, ink);
}

void paintChevron(QPainter& painter, const QRectF& rect, const QString& name, const QColor& ink) {
    QRectF place(0, 0, kMenuPicture, kMenuPicture);
    place.moveCenter(QPointF(rect.right() - kMenuPicture / 2.0 - 4, rect.center().y()));
    paintIcon(painter, place, name, ink);
}

}  // namespace

void pushButton(QPainter& painter, const QStyleOptionButton& option) {
    const QRect& rect = option.rect;
    if (!isEnabled(option)) {
        paintRounded(painter, rect, sizes::buttonRadius, {}, colors().separator);
    } else if (isFilled(option) || isChecked(option)) {
        paintRounded(painter, rect, sizes::buttonRadius, plateFill(option), {});
    } else {
        paintRounded(painter, rect, sizes::buttonRadius, controlFill(option, colors().control),
                     colors().controlLine);
    }
}

void pushButtonLabel(QPainter& painter, const QStyleOptionButton& option) {
    const bool isOnPlate = isFilled(option) || isChecked(option);
    QColor ink = isOnPlate ? colors().onPlate : colors().ink;
    if (!isEnabled(option)) { ink = colors().disabledInk; }
    painter.save();
    painter.setPen(ink);
    painter.setFont(option.features & QStyleOptionButton::DefaultButton
                        ? mediumFont(sizes::frameTextSize)
                        : frameFont());
    painter.drawText(option.rect, Qt::AlignCenter | mnemonicFlags(option), option.text);
    painter.restore();
}

void checkBox(QPainter& painter, const QStyleOption& option) {
    paintBox(painter, option, sizes::checkBoxRadius);
    if (isChecked(option)) {
        paintIcon(painter, QRectF(option.rect).adjusted(1, 1, -1, -1), u"check"_s,
                  markColor(option));
    } else if (option.state & QStyle::State_NoChange) {
        QRectF dash(0, 0, option.rect.width() / 2.0, 2);
        dash.moveCenter(QRectF(option.rect).center());
        painter.fillRect(alignedToDevice(painter, dash), colors().ink);
    }
}

void radioButton(QPainter& painter, const QStyleOption& option) {
    paintBox(painter, option, option.rect.width() / 2.0);
    if (!isChecked(option)) { return; }
    const double inset = option.rect.width() * 5.0 / sizes::checkBox;
    paintRounded(painter, QRectF(option.rect).adjusted(inset, inset, -inset, -inset),
                 option.rect.width(), markColor(option), {});
}

void field(QPainter& painter, const QStyleOption& option) {
    const bool isInUse = option.state & QStyle::State_HasFocus;
    QColor line = isInUse ? colors().accent : colors().controlLine;
    if (!isEnabled(option)) { line = colors().separator; }
    paintRounded(painter, option.rect, sizes::checkBoxRadius,
                 isEnabled(option) ? colors().field : colors().frame, line, isInUse ? 2 : 1);
}

void comboBox(QPainter& painter, const QStyleOptionComboBox& option) {
    const QRect& rect = option.rect;
    const bool enabled = isEnabled(option);
    paintRounded(painter, rect, sizes::buttonRadius,
                 enabled ? controlFill(option, option.editable ? colors().field : colors().control)
                         : QColor(),
                 enabled ? colors().controlLine : colors().separator);
    paintChevron(painter, rect, u"chev_down"_s, enabled ? colors().icon : colors().disabledIcon);
}

void menuPanel(QPainter& painter, const QRect& rect) {
    paintRounded(painter, rect, sizes::menuRadius, colors().popover, colors().popoverLine);
}

QSize menuItemSize(const QStyleOptionMenuItem& option) {
    if (option.menuItemType == QStyleOptionMenuItem::Separator) { return {10, kSeparatorHeight}; }
    const QFontMetrics metrics(frameFont());
    int width = menuTextLeft(option) + kMenuTextRight +
                metrics.size(Qt::TextShowMnemonic, menuLabel(option)).width();
    const QString shortcut = menuShortcut(option);
    if (!shortcut.isEmpty()) { width += kMenuColumnGap + metrics.horizontalAdvance(shortcut); }
    if (option.menuItemType == QStyleOptionMenuItem::SubMenu) { width += kMenuColumnGap; }
    return {width, sizes::menuItemHeight};
}

void menuItem(QPainter& painter, const QStyleOptionMenuItem& option) {
    const QRect& rect = option.rect;
    if (option.menuItemType == QStyleOptionMenuItem::Separator) {
        paintLowerLine(painter, rect.adjusted(10, 0, -10, -kSeparatorHeight / 2),
                       colors().separator);
        return;
    }
    const bool isSelected = isEnabled(option) && option.state & QStyle::State_Selected;
    if (isSelected) { paintRounded(painter, rect, sizes::checkBoxRadius, colors().plate, {}); }
    QColor ink = isSelected ? colors().onPlate : colors().ink;
    QColor secondInk = isSelected ? colors().onPlate : colors().secondInk;
    if (!isEnabled(option)) { ink = secondInk = colors().disabledInk; }
    painter.save();
    painter.setFont(frameFont());
    painter.setPen(ink);
    const QRect text = rect.adjusted(menuTextLeft(option), 0, -kMenuTextRight, 0);
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter | mnemonicFlags(option),
                     menuLabel(option));
    painter.setPen(secondInk);
    painter.drawText(text, Qt::AlignRight | Qt::AlignVCenter, menuShortcut(option));
    painter.restore();
    paintMenuMark(painter, option, ink);
    if (option.menuItemType == QStyleOptionMenuItem::SubMenu) {
        paintChevron(painter, rect, u"chev_right"_s, ink);
    }
}

void menuBarItem(QPainter& painter, const QStyleOptionMenuItem& option) {
    painter.fillRect(option.rect, colors().frame);
    const bool isOpen = isPressed(option);
    const bool isSelected = option.state & QStyle::State_Selected;
    if (isOpen || isSelected) {
        paintRounded(painter, option.rect.adjusted(0, 2, 0, -2), sizes::checkBoxRadius,
                     isOpen ? colors().plate : blended(colors().hover, colors().frame), {});
    }
    QColor ink = isOpen ? colors().onPlate : colors().ink;
    if (!isEnabled(option)) { ink = colors().disabledInk; }
    painter.save();
    painter.setFont(frameFont());
    painter.setPen(ink);
    painter.drawText(option.rect, Qt::AlignCenter | mnemonicFlags(option), option.text);
    painter.restore();
}

void toolTip(QPainter& painter, const QRect& rect) {
    painter.fillRect(rect, colors().toolTipFill);
    paintRounded(painter, rect, 1, {}, colors().toolTipLine);
}

void scrollBar(QPainter& painter, const QStyleOptionSlider& option, const QRect& thumb) {
    if (option.maximum <= option.minimum) { return; }
    const bool isUpright = option.orientation == Qt::Vertical;
    QRectF bar = QRectF(thumb);
    const double slack = (isUpright ? bar.width() : bar.height()) - kScrollThumb;
    bar = isUpright ? bar.adjusted(slack / 2, 2, -slack / 2, -2)
                    : bar.adjusted(2, slack / 2, -2, -slack / 2);
    QColor color = colors().scrollThumb;
    const bool isHeld = option.activeSubControls & QStyle::SC_ScrollBarSlider;
    if (isHeld) { color.setAlphaF(color.alphaF() * 1.4F); }
    paintRounded(painter, bar, kScrollThumb / 2.0, color, {});
}

void slider(QPainter& painter, const QStyleOptionSlider& option, const QRect& handle) {
    const QRectF rect = option.rect;
    const double middle = QRectF(handle).center().y();
    const QColor line = isEnabled(option) ? colors().controlLine : colors().separator;
    const QRectF groove(rect.left() + 2, middle - 1, rect.width() - 4, 2);
    painter.fillRect(alignedToDevice(painter, groove), line);
    const double span = option.maximum - option.minimum;
    if (option.tickPosition != QSlider::NoTicks && option.tickInterval > 0 && span > 0) {
        const double length = rect.width() - handle.width();
        for (int value = option.minimum; value <= option.maximum; value += option.tickInterval) {
            const double x =
                rect.left() + handle.width() / 2.0 + length * (value - option.minimum) / span;
            const QRectF tick(x, rect.bottom() - kSliderTick, hairlineWidth(painter), kSliderTick);
            painter.fillRect(alignedToDevice(painter, tick), line);
        }
    }
    QRectF knob(0, 0, kSliderKnob, kSliderKnob);
    knob.moveCenter(QRectF(handle).center());
    paintRounded(painter, knob, kSliderKnob / 2.0, controlFill(option, colors().control), line);
}

void progressBar(QPainter& painter, const QStyleOptionProgressBar& option) {
    QRectF track(0, 0, option.rect.width(), sizes::progressBarHeight);
    track.moveCenter(QRectF(option.rect).center());
    const double radius = sizes::progressBarHeight / 2.0;
    paintRounded(painter, track, radius, colors().line, {});
    const double span = option.maximum - option.minimum;
    if (span <= 0) { return; }
    track.setWidth(track.width() * (option.progress - option.minimum) / span);
    if (track.width() >= 1) { paintRounded(painter, track, radius, colors().plate, {}); }
}

}  // namespace tweenery::framePainting
