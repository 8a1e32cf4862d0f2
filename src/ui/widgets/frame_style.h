#pragma once

#include <QProxyStyle>

class QApplication;

namespace tweenery {

class DesktopSettings;

/// Draws buttons, boxes, fields, menus, tool tips and scroll bars of the frame, alike on every
/// desktop, from the one table of colours and the one of sizes.
class FrameStyle : public QProxyStyle {
    Q_OBJECT

 public:
    FrameStyle();

    using QProxyStyle::polish;
    void polish(QPalette& palette) override;
    void polish(QWidget* widget) override;

    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                         SubControl subControl, const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override;

 Q_SIGNALS:
    /// The desktop has another palette.
    void systemPaletteChanged(bool isDark);
};

/// Gives the program its style, typeface and icon, and has them follow the desktop and the user's
/// choices. Called once, after the user's defaults came into use.
void setUpFrame(QApplication& application);

/// The palette of the frame's colours.
QPalette framePalette();

}  // namespace tweenery
