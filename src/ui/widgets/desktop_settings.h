#pragma once

#include <QDBusVariant>
#include <QObject>
#include <QVariantMap>

#include "ui/widgets/appearance.h"

class QDBusPendingCallWatcher;

namespace tweenery {

/// Asks the desktop's portal for light or dark, contrast and motion, follows their changes, and
/// hands them to Appearance. Without a session bus, or without an answer, the palette decides.
class DesktopSettings : public QObject {
    Q_OBJECT

 public:
    explicit DesktopSettings(QObject* parent);

    /// What the desktop's palette tells; counts while the portal has no preference.
    void setPaletteIsDark(bool isDark);
    /// One setting of the portal; unknown ones are passed over.
    void apply(const QString& group, const QString& key, const QVariant& value);

 private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

 private:
    void watchPortal();
    void readAnswer(const QDBusPendingCallWatcher& answer);
    void handOver();

    bool m_paletteIsDark = false;
    std::optional<bool> m_portalIsDark;
    bool m_increasesContrast = false;
    bool m_reducesMotion = false;
};

}  // namespace tweenery
