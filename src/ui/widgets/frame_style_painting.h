#pragma once

#include <QStyleOption>

class QPainter;

namespace tweenery::framePainting {

// How each control of the frame looks, in the colours of the moment.

void pushButton(QPainter& painter, const QStyleOptionButton& option);
void pushButtonLabel(QPainter& painter, const QStyleOptionButton& option);
void checkBox(QPainter& painter, const QStyleOption& option);
void radioButton(QPainter& painter, const QStyleOption& option);
void field(QPainter& painter, const QStyleOption& option);
void comboBox(QPainter& painter, const QStyleOptionComboBox& option);
void menuPanel(QPainter& painter, const QRect& rect);
void menuItem(QPainter& painter, const QStyleOptionMenuItem& option);
void menuBarItem(QPainter& painter, const QStyleOptionMenuItem& option);
void toolTip(QPainter& painter, const QRect& rect);
void scrollBar(QPainter& painter, const QStyleOptionSlider& option, const QRect& thumb);
/// A level slider, its ticks along the lower edge.
void slider(QPainter& painter, const QStyleOptionSlider& option, const QRect& handle);
void progressBar(QPainter& painter, const QStyleOptionProgressBar& option);

/// The size of a menu's item, its shortcut included.
QSize menuItemSize(const QStyleOptionMenuItem& option);

}  // namespace tweenery::framePainting
