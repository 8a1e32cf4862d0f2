#include "ui/widgets/accessible_role.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace tweenery {

namespace {

constexpr char kRoleProperty[] = "accessibleRole";

QAccessibleInterface* interfaceWithRole(const QString&, QObject* object) {
    const QVariant role = object ? object->property(kRoleProperty) : QVariant();
    auto* widget = qobject_cast<QWidget*>(object);
    if (!widget || !role.isValid()) { return nullptr; }
    return new QAccessibleWidget(widget, static_cast<QAccessible::Role>(role.toInt()));
}

}  // namespace

void setAccessibleRole(QWidget& widget, QAccessible::Role role) {
    static const bool isInstalled = [] {
        QAccessible::installFactory(interfaceWithRole);
        return true;
    }();
    Q_UNUSED(isInstalled);
    widget.setProperty(kRoleProperty, static_cast<int>(role));
}

}  // namespace tweenery
