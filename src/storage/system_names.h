#pragma once

#include <QByteArray>
#include <QString>
#include <string_view>

namespace tweenery {

/// Stands for the byte b of a name that is no UTF-8 as kByteOfName + b: half a surrogate pair.
inline constexpr char16_t kByteOfName = 0xdc00;

/// A name from the system as text, which systemPath() turns back, whatever bytes it has.
QString textOfSystemName(const QByteArray& name);
/// The bytes of a path for the system. Throws InputError when no path can have that name.
QByteArray systemPath(const QString& path);
/// `name` for a message: what would not show, and all beyond ASCII if it is not UTF-8, as \xNN.
QString printableName(std::string_view name);
QString printableName(const QString& name);

/// What stands at `path`, links followed; a link that leads nowhere is Other.
enum class PathKind { Nothing, File, Directory, Other };
PathKind kindOfPath(const QString& path);

}  // namespace tweenery
