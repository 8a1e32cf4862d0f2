#pragma once

#include <QString>

namespace tweenery {

/// Whether a framework of the platforms, or the code that exports rely on, has a class of that name
/// already. Only names that end in "View" are known, because generated classes have no others.
bool isPlatformClass(const QString& name);

}  // namespace tweenery
