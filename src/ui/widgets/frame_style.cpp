#include "ui/widgets/frame_style.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QStyleOption>
#include <QToolTip>

#include "ui/widgets/appearance.h"
#include "ui/widgets/desktop_settings.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/focus_ring.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/frame_style_painting.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

namespace tweenery {

namespace {

using namespace Qt::StringLiterals;

bool paletteIsDark(const QPalette& palette) {
    return relativeLuminance(palette.color(QPalette::Window)) <
           relativeLuminance(palette.color(QPalette::WindowText));
}

// Thumbs are in reach even where they are drawn thin.
constexpr int kLeastThumb = 24;

}  // namespace

QPalette framePalette() {
    const FrameColors& colors = Appearance::current().frame();
    QPalette palette;
    const auto set = [&palette](QPalette::ColorRole role, const QColor& color,
                                const QColor& disabled) {
        palette.setColor(QPalette::All, role, color);
        palette.setColor(QPalette::Disabled, role, disabled);
    };
    set(QPalette::Window, colors.frame, colors.frame);
    set(QPalette::WindowText, colors.ink, colors.disabledInk);
    set(QPalette::Base, colors.field, colors.frame);
    set(QPalette::AlternateBase, colors.surround, colors.surround);
    set(QPalette::Text, colors.ink, colors.disabledInk);
    set(QPalette::PlaceholderText, colors.secondInk, colors.disabledInk);
    set(QPalette::Button, colors.control, colors.frame);
    set(QPalette::ButtonText, colors.ink, colors.disabledInk);
    set(QPalette::BrightText, colors.danger, colors.disabledInk);
    set(QPalette::Highlight, colors.plate, colors.separator);
    set(QPalette::HighlightedText, colors.onPlate, colors.disabledInk);
    set(QPalette::Link, colors.accent, colors.disabledInk);
    set(QPalette::LinkVisited, colors.accent, colors.disabledInk);
    set(QPalette::ToolTipBase, colors.toolTipFill, colors.toolTipFill);
    set(QPalette::ToolTipText, colors.toolTipInk, colors.toolTipInk);
    set(QPalette::Light, colors.control, colors.control);
    set(QPalette::Midlight, colors.frame, colors.frame);
    set(QPalette::Mid, colors.separator, colors.separator);
    set(QPalette::Dark, colors.controlLine, colors.separator);
    set(QPalette::Shadow, colors.line, colors.line);
    return palette;
}

FrameStyle::FrameStyle() : QProxyStyle(u"Fusion"_s) {}

void FrameStyle::polish(QPalette& palette) {
    // Comes as the desktop wants it, whenever that changes.
    Q_EMIT systemPaletteChanged(paletteIsDark(palette));
    palette = framePalette();
}

void FrameStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (qobject_cast<QAbstractButton*>(widget) || qobject_cast<QComboBox*>(widget)) {
        widget->setAttribute(Qt::WA_Hover);
    }
    if (auto* edit = qobject_cast<QLineEdit*>(widget); edit && edit->hasFrame()) {
        edit->setTextMargins(sizes::menuMargin, 0, sizes::menuMargin, 0);
    }
}

int FrameStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                            const QWidget* widget) const {
    switch (metric) {
        case PM_IndicatorWidth:
        case PM_IndicatorHeight:
        case PM_ExclusiveIndicatorWidth:
        case PM_ExclusiveIndicatorHeight:
            return sizes::checkBox;
        case PM_CheckBoxLabelSpacing:
            return sizes::checkBoxGap + 1;  // Qt counts from the last point of the box
        case PM_RadioButtonLabelSpacing:
            return sizes::checkBoxGap;
        case PM_ButtonDefaultIndicator:
        case PM_ButtonShiftHorizontal:
        case PM_ButtonShiftVertical:
        case PM_MenuPanelWidth:
        case PM_MenuBarPanelWidth:
        case PM_MenuBarItemSpacing:
            return 0;
        case PM_MenuBarHMargin:
        case PM_MenuHMargin:
        case PM_MenuVMargin:
            return sizes::menuMargin;
        case PM_ScrollBarExtent:
            return sizes::scrollBar;
        case PM_ScrollBarSliderMin:
            return kLeastThumb;
        case PM_ToolTipLabelFrameWidth:
            return sizes::menuMargin;
        case PM_LayoutLeftMargin:
        case PM_LayoutTopMargin:
        case PM_LayoutRightMargin:
        case PM_LayoutBottomMargin:
            return sizes::dialogMargin;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int FrameStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* returnData) const {
    switch (hint) {
        case SH_EtchDisabledText:
        case SH_DitherDisabledText:
        case SH_ComboBox_Popup:
            return 0;
        case SH_ToolTipLabel_Opacity:
            return 255;
        case SH_ScrollBar_LeftClickAbsolutePosition:
            return 0;
        case SH_Menu_Mask:
            if (auto* mask = qstyleoption_cast<QStyleHintReturnMask*>(returnData); mask && option) {
                QPainterPath path;
                path.addRoundedRect(option->rect, sizes::menuRadius, sizes::menuRadius);
                mask->region = QRegion(path.toFillPolygon().toPolygon());
                return 1;
            }
            return 0;
        default:
            return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

QSize FrameStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                   const QSize& contents, const QWidget* widget) const {
    switch (type) {
        case CT_PushButton: {
            const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
            if (!button || button->text.isEmpty()) { break; }
            // All buttons leave room for the heavier text of a default one.
            const QFontMetrics metrics(mediumFont(sizes::frameTextSize));
            const int text = metrics.size(Qt::TextShowMnemonic, button->text).width();
            return {std::max(sizes::leastButtonWidth, text + 2 * sizes::buttonMargin),
                    sizes::buttonHeight};
        }
        case CT_MenuItem:
            if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option)) {
                return framePainting::menuItemSize(*item);
            }
            break;
        case CT_MenuBarItem:
            return {contents.width() + 2 * sizes::checkBoxGap, sizes::menuBarHeight};
        case CT_LineEdit:
            return {contents.width() + 2 * sizes::menuMargin, sizes::fieldHeight};
        case CT_ComboBox:
            return {QProxyStyle::sizeFromContents(type, option, contents, widget).width(),
                    sizes::buttonHeight};
        default:
            break;
    }
    return QProxyStyle::sizeFromContents(type, option, contents, widget);
}

QRect FrameStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                 SubControl subControl, const QWidget* widget) const {
    const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_ScrollBar || !bar) {
        return QProxyStyle::subControlRect(control, option, subControl, widget);
    }
    // No arrows: the thumb has the whole length.
    const QRect& whole = bar->rect;
    const bool isUpright = bar->orientation == Qt::Vertical;
    const int length = isUpright ? whole.height() : whole.width();
    const qint64 range = qint64{bar->maximum} - bar->minimum;
    const qint64 share =
        range > 0 ? qint64{length} * bar->pageStep / (range + bar->pageStep) : length;
    const int thumb = std::min(length, std::max(static_cast<int>(share), kLeastThumb));
    const int start = sliderPositionFromValue(bar->minimum, bar->maximum, bar->sliderPosition,
                                              length - thumb, bar->upsideDown);
    const auto part = [&](int from, int to) {
        return isUpright ? QRect(whole.x(), whole.y() + from, whole.width(), to - from)
                         : QRect(whole.x() + from, whole.y(), to - from, whole.height());
    };
    switch (subControl) {
        case SC_ScrollBarGroove:
            return whole;
        case SC_ScrollBarSlider:
            return part(start, start + thumb);
        case SC_ScrollBarSubPage:
            return part(0, start);
        case SC_ScrollBarAddPage:
            return part(start + thumb, length);
        default:
            return {};
    }
}

void FrameStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                               QPainter* painter, const QWidget* widget) const {
    switch (element) {
        case PE_IndicatorCheckBox:
            framePainting::checkBox(*painter, *option);
            return;
        case PE_IndicatorRadioButton:
            framePainting::radioButton(*painter, *option);
            return;
        case PE_PanelLineEdit: {
            const auto* panel = qstyleoption_cast<const QStyleOptionFrame*>(option);
            const bool paintsItself = panel && panel->lineWidth == 0;
            if (!paintsItself) { framePainting::field(*painter, *option); }
            return;
        }
        case PE_PanelMenu:
            framePainting::menuPanel(*painter, option->rect);
            return;
        case PE_PanelTipLabel:
            framePainting::toolTip(*painter, option->rect);
            return;
        case PE_FrameFocusRect:  // the ring shows the focus
        case PE_FrameMenu:
        case PE_FrameDefaultButton:
            return;
        default:
            QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void FrameStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    const auto* progress = qstyleoption_cast<const QStyleOptionProgressBar*>(option);
    if (element == CE_PushButtonBevel && button) {
        framePainting::pushButton(*painter, *button);
    } else if (element == CE_PushButtonLabel && button && button->icon.isNull()) {
        framePainting::pushButtonLabel(*painter, *button);
    } else if (element == CE_MenuItem && item) {
        framePainting::menuItem(*painter, *item);
    } else if (element == CE_MenuBarItem && item) {
        framePainting::menuBarItem(*painter, *item);
    } else if (element == CE_MenuBarEmptyArea || element == CE_MenuEmptyArea) {
        if (element == CE_MenuBarEmptyArea) {
            painter->fillRect(option->rect, Appearance::current().frame().frame);
        }
    } else if (element == CE_ProgressBar && progress) {
        framePainting::progressBar(*painter, *progress);
    } else {
        QProxyStyle::drawControl(element, option, painter, widget);
    }
}

void FrameStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                    QPainter* painter, const QWidget* widget) const {
    if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
        control == CC_ScrollBar && bar) {
        framePainting::scrollBar(*painter, *bar,
                                 subControlRect(control, option, SC_ScrollBarSlider, widget));
    } else if (const auto* level = qstyleoption_cast<const QStyleOptionSlider*>(option);
               control == CC_Slider && level && level->orientation == Qt::Horizontal) {
        framePainting::slider(*painter, *level,
                              subControlRect(control, option, SC_SliderHandle, widget));
    } else if (const auto* combo = qstyleoption_cast<const QStyleOptionComboBox*>(option);
               control == CC_ComboBox && combo) {
        framePainting::comboBox(*painter, *combo);
    } else {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }
}

void setUpFrame(QApplication& application) {
    auto* settings = new DesktopSettings(&application);
    settings->setPaletteIsDark(paletteIsDark(QApplication::palette()));
    auto* style = new FrameStyle;
    QApplication::setStyle(style);
    QApplication::setFont(frameFont());
    QApplication::setWindowIcon(applicationIcon());
    // Queued, since the style is asked while the palette is being changed.
    QObject::connect(style, &FrameStyle::systemPaletteChanged, settings,
                     &DesktopSettings::setPaletteIsDark, Qt::QueuedConnection);
    QToolTip::setFont(regularFont(sizes::captionTextSize));
    QToolTip::setPalette(framePalette());
    QObject::connect(&Appearance::current(), &Appearance::changed, &application, [] {
        QApplication::setPalette(QPalette());
        QToolTip::setPalette(framePalette());
        for (QWidget* widget : QApplication::allWidgets()) {
            widget->update();
        }
    });
    FocusRing::install();
}

}  // namespace tweenery
