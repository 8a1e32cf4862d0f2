#pragma once

#include <QObject>
#include <chrono>

#include "model/preferences/app_preferences.h"
#include "ui/widgets/colors.h"

namespace tweenery {

/// What the desktop asks of its programs.
struct SystemAppearance {
    bool isDark = false;
    bool increasesContrast = false;
    bool reducesMotion = false;

    bool operator==(const SystemAppearance&) const = default;
};

/// How the window looks now: the user's choices, which PCAppPreferences keeps, over those of the
/// desktop. Everything that paints asks here for its colours, and paints again at changed().
class Appearance : public QObject {
    Q_OBJECT

 public:
    static Appearance& current();

    bool isDark() const { return m_effective.isDark; }
    bool increasesContrast() const { return m_effective.increasesContrast; }
    bool reducesMotion() const { return m_effective.reducesMotion; }
    const FrameColors& frame() const { return frameColors(isDark(), increasesContrast()); }
    const WorkbenchColors& workbench() const { return workbenchColors(increasesContrast()); }
    /// `asked`, or nothing where motion is reduced.
    std::chrono::milliseconds duration(std::chrono::milliseconds asked) const;

    // The user's choices; each setter keeps it and tells.
    void setTheme(PCAppTheme theme);
    void setIncreasesContrast(bool increases);
    void setReducesMotion(bool reduces);

    const SystemAppearance& system() const { return m_system; }
    void setSystem(const SystemAppearance& system);
    /// Reads the user's choices again, after another store of defaults came into use.
    void reload();

 Q_SIGNALS:
    void changed();

 private:
    Appearance();

    SystemAppearance m_system;
    SystemAppearance m_effective;  // with the user's choices
};

}  // namespace tweenery
