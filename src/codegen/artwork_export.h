#pragma once

#include <QString>
#include <QStringList>
#include <vector>

#include "model/project.h"

namespace tweenery {

/// A file that an export could not write.
struct ExportFailure {
    QString path;  // relative to the export's directory
    QString reason;
};

/// What has been written, by paths relative to the export's directory, and what could not be.
struct WrittenFiles {
    QStringList paths;
    std::vector<ExportFailure> failures;
};

/// The image sets in use, by name: those of all elements that are no groups, and those that any
/// animation shows. Throws InputError when a stored image timeline cannot be read.
std::vector<std::shared_ptr<PCImageSet>> imageSetsInUse(PCProject& project);

/// Copies the artwork of `sets` into "images" inside `directory`, which exists; with `clean` that
/// folder is removed first. A file that cannot be written is a failure, and the copy goes on.
/// Nothing is written or removed through a symbolic link below `directory`.
WrittenFiles exportArtwork(const std::vector<std::shared_ptr<PCImageSet>>& sets,
                           const QString& directory, bool clean);

/// Writes one file, made of `pieces`, into `directory`, under a relative path below it, and notes
/// how it went.
void writeExportedFile(const QString& directory, const QString& path, const QByteArrayList& pieces,
                       WrittenFiles& files);

}  // namespace tweenery
