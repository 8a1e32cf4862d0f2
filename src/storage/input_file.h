#pragma once

#include <QByteArray>
#include <QString>

namespace tweenery {

/// The bytes of a file that the user names, through symbolic links. Throws InputError for anything
/// but a regular file, however much it looks like one, and for more than 1 GiB.
QByteArray readInputFile(const QString& path);

}  // namespace tweenery
