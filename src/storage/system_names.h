#pragma once

#include <QByteArray>
#include <QString>

namespace tweenery {

/// Stands for the byte b of a name that is no UTF-8 as kByteOfName + b: half a surrogate pair.
inline constexpr char16_t kByteOfName = 0xdc00;

/// A name from the system as text, which systemPath() turns back, whatever bytes it has.
QString textOfSystemName(const QByteArray& name);

/// What stands at `path`, links followed; a link that leads nowhere is Other.
enum class PathKind { Nothing, File, Directory, Other };
PathKind kindOfPath(const QString& path);

}  // namespace tweenery
