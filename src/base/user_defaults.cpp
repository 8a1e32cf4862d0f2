#include "base/user_defaults.h"

#include <QHash>
#include <QSettings>
#include <mutex>

#include "base/ports.h"

namespace tweenery {

struct UserDefaults::State {
    std::mutex mutex;
    QHash<QString, QVariant> registered;
    QHash<QString, QVariant> inMemory;    // used while there are no settings
    std::unique_ptr<QSettings> settings;  // null: values live in memory only
    bool hasReportedFailure = false;

    void use(std::unique_ptr<QSettings> newSettings) {
        const std::lock_guard lock(mutex);
        settings = std::move(newSettings);
        inMemory.clear();
        hasReportedFailure = false;
    }

    QVariant stored(const QString& key) const {
        return settings ? settings->value(key) : inMemory.value(key);
    }
};

UserDefaults::UserDefaults() : m_state(std::make_unique<State>()) {}
UserDefaults::~UserDefaults() = default;

UserDefaults& UserDefaults::standard() {
    static UserDefaults defaults;
    return defaults;
}

void UserDefaults::useSettingsOfUser() {
    standard().m_state->use(std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                                        QStringLiteral("Tweenery"),
                                                        QStringLiteral("Tweenery")));
}

void UserDefaults::useSettingsFile(const QString& path) {
    standard().m_state->use(std::make_unique<QSettings>(path, QSettings::IniFormat));
}

void UserDefaults::useMemory() {
    State& state = *standard().m_state;
    state.use(nullptr);
    const std::lock_guard lock(state.mutex);
    state.registered.clear();
}

void UserDefaults::registerDefault(const QString& key, const QVariant& value) {
    const std::lock_guard lock(m_state->mutex);
    m_state->registered.insert(key, value);
}

QVariant UserDefaults::value(const QString& key) const {
    const std::lock_guard lock(m_state->mutex);
    const QVariant stored = m_state->stored(key);
    return stored.isValid() ? stored : m_state->registered.value(key);
}

void UserDefaults::setValue(const QString& key, const QVariant& value) {
    const std::lock_guard lock(m_state->mutex);
    if (m_state->settings) {
        m_state->settings->setValue(key, value);
    } else {
        m_state->inMemory.insert(key, value);
    }
}

void UserDefaults::removeValue(const QString& key) {
    const std::lock_guard lock(m_state->mutex);
    if (m_state->settings) { m_state->settings->remove(key); }
    m_state->inMemory.remove(key);
}

void UserDefaults::synchronize() {
    const std::lock_guard lock(m_state->mutex);
    if (!m_state->settings) { return; }
    m_state->settings->sync();
    if (m_state->settings->status() == QSettings::NoError || m_state->hasReportedFailure) {
        return;
    }
    m_state->hasReportedFailure = true;
    StandardErrorLog().writeLine(QStringLiteral("The settings could not be written to %1")
                                     .arg(m_state->settings->fileName()));
}

}  // namespace tweenery
