#pragma once

#include "base/ports.h"

namespace tweenery {

class PCProject;

/// Where new elements and structure belong: leaves the selected animation, and tells the user why
/// unless the alert was silenced. Nothing in setup mode.
void switchToSetupIfNecessary(PCProject& project, AlertPort& alerts);

}  // namespace tweenery
