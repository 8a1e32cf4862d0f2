#include "ui/widgets/desktop_settings.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>

namespace tweenery {

namespace {

using namespace Qt::StringLiterals;

const QString kAppearanceGroup = u"org.freedesktop.appearance"_s;
const QString kInterfaceGroup = u"org.gnome.desktop.interface"_s;
const QString kAccessGroup = u"org.gnome.desktop.a11y.interface"_s;

const QString kPortalService = u"org.freedesktop.portal.Desktop"_s;
const QString kPortalPath = u"/org/freedesktop/portal/desktop"_s;
const QString kPortalInterface = u"org.freedesktop.portal.Settings"_s;

// Asking for the bus without one would start it.
bool hasSessionBus() {
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/bus"_s);
}

}  // namespace

DesktopSettings::DesktopSettings(QObject* parent) : QObject(parent) {
    if (hasSessionBus()) { watchPortal(); }
}

void DesktopSettings::watchPortal() {
    qDBusRegisterMetaType<QMap<QString, QVariantMap>>();
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(kPortalService, kPortalPath, kPortalInterface, u"SettingChanged"_s, this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage question =
        QDBusMessage::createMethodCall(kPortalService, kPortalPath, kPortalInterface, u"ReadAll"_s);
    question << QStringList{kAppearanceGroup, kInterfaceGroup, kAccessGroup};
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        readAnswer(*watcher);
        watcher->deleteLater();
    });
}

void DesktopSettings::readAnswer(const QDBusPendingCallWatcher& answer) {
    const QDBusPendingReply<QMap<QString, QVariantMap>> reply = answer;
    if (reply.isError()) { return; }
    const QMap<QString, QVariantMap> groups = reply.value();
    for (auto group = groups.begin(); group != groups.end(); ++group) {
        for (auto setting = group->begin(); setting != group->end(); ++setting) {
            apply(group.key(), setting.key(), setting.value());
        }
    }
}

void DesktopSettings::settingChanged(const QString& group, const QString& key,
                                     const QDBusVariant& value) {
    apply(group, key, value.variant());
}

void DesktopSettings::setPaletteIsDark(bool isDark) {
    m_paletteIsDark = isDark;
    handOver();
}

void DesktopSettings::apply(const QString& group, const QString& key, const QVariant& value) {
    if (group == kAppearanceGroup && key == u"color-scheme") {
        // 1 asks for dark, 2 for light, 0 for nothing.
        const uint scheme = value.toUInt();
        m_portalIsDark = scheme == 1 || scheme == 2 ? std::optional(scheme == 1) : std::nullopt;
    } else if (group == kAppearanceGroup && key == u"contrast") {
        m_increasesContrast = value.toUInt() == 1;
    } else if (group == kAccessGroup && key == u"high-contrast") {
        m_increasesContrast = value.toBool();
    } else if (group == kInterfaceGroup && key == u"enable-animations") {
        m_reducesMotion = !value.toBool();
    } else {
        return;
    }
    handOver();
}

void DesktopSettings::handOver() {
    Appearance::current().setSystem(
        {m_portalIsDark.value_or(m_paletteIsDark), m_increasesContrast, m_reducesMotion});
}

}  // namespace tweenery
