#pragma once

#include <QAccessible>

class QWidget;

namespace tweenery {

/// What assistive tools take `widget` for, where its class has no role of its own. Called before
/// the first of them asks.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

}  // namespace tweenery
