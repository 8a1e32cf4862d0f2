#pragma once

#include <QStringList>

#include "cli/support/console.h"

namespace tweenery {

/// The whole program: `arguments` without the program's name. Returns the exit code, and lets no
/// exception out. The user's settings are neither read nor written.
int runTweenc(const QStringList& arguments, Console console);

}  // namespace tweenery
