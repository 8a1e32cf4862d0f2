#pragma once

#include <QString>
#include <span>

#include "model/preferences/project_preferences.h"

namespace tweenery {

/// One of the choices of an export, as the sheet shows it: a round button that stands for one value
/// of one preference of the project.
struct ExportToggle {
    const char* section;  // the heading above it; toggles of a section follow each other
    const char* label;
    const char* toolTip;
    const char* onIcon;
    const char* offIcon;  // null: the same as on
    bool (PCProjectPreferences::*preference)() const;
    void (PCProjectPreferences::*setPreference)(bool value);
    bool onValue;      // the preference for which it is on
    bool isSwitch;     // a press turns it off again; else another toggle of the section does
    bool needsImages;  // means nothing while images are left out

    bool isOn(const PCProjectPreferences& preferences) const {
        return (preferences.*preference)() == onValue;
    }
    /// A toggle that is not available does nothing and looks disabled.
    bool isAvailable(const PCProjectPreferences& preferences) const {
        return !needsImages || preferences.generatedCodeIncludesImages();
    }
    /// Stores what a press of it means. Leaving out images turns off what needs them.
    void press(PCProjectPreferences& preferences) const;
};

/// In the order of the sheet.
std::span<const ExportToggle> exportToggles();

}  // namespace tweenery
