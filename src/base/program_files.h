#pragma once

#include <QString>

namespace tweenery {

/// The file or folder of that path below the folder "share" beside that of the running program, as
/// it is installed, or else below the source from which the program was built in place. Empty when
/// there is neither.
QString programFile(const QString& installedPath, const QString& sourcePath);

}  // namespace tweenery
