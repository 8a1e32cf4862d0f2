#include "editor/canvas/setup_switch.h"

#include "model/preferences/app_preferences.h"
#include "model/project.h"

using namespace Qt::StringLiterals;

namespace tweenery {

void switchToSetupIfNecessary(PCProject& project, AlertPort& alerts) {
    if (project.isSetupMode()) { return; }
    project.animationsManager().setSelectedAnimation(nullptr);
    if (!PCAppPreferences::showsSetupFirstAlert()) { return; }
    const AlertAnswer answer =
        alerts.runModal({u"Switched to Setup Mode"_s,
                         u"You need to define this element's initial setup values before using it "
                         u"in an animation."_s,
                         {u"Ok"_s},
                         u"Don't show again."_s});
    PCAppPreferences::setShowsSetupFirstAlert(!answer.suppressed);
}

}  // namespace tweenery
