#pragma once

#include <QString>
#include <QVariant>
#include <memory>

namespace tweenery {

/// The per-user defaults: values by key, over registered defaults that are never written.
/// Safe to read and write from several threads.
class UserDefaults {
 public:
    /// The store of the running program. Until setStandard() it lies in memory only, so that a tool
    /// or a test that does not ask for the user's settings cannot change them.
    static UserDefaults& standard();
    /// Makes the user's own settings file, or the INI file at `path`, the standard store. What was
    /// registered stays.
    static void useSettingsOfUser();
    static void useSettingsFile(const QString& path);
    /// Back to an empty store in memory, registered defaults included.
    static void useMemory();

    void registerDefault(const QString& key, const QVariant& value);
    /// The stored value, else the registered default, else an invalid variant.
    QVariant value(const QString& key) const;
    void setValue(const QString& key, const QVariant& value);
    void removeValue(const QString& key);
    /// Writes what was set to the disk now. A file that cannot be written is told on standard
    /// error, once, and the values live on in memory.
    void synchronize();

    UserDefaults();
    ~UserDefaults();

 private:
    struct State;
    std::unique_ptr<State> m_state;
};

}  // namespace tweenery
