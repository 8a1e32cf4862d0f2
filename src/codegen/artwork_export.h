#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

#include "model/project.h"
#include "storage/output_folder.h"

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
    size_t removedFilesCount = 0;  // of the folder "images", when it was cleaned
    bool isStopped = false;        // before all were written
};

/// Told before each image that is written how many are, and how many there will be; false ends the
/// export there.
using ArtworkProgress = std::function<bool(size_t written, size_t all)>;

/// The image sets in use, by name: those of all elements that are no groups, and those that any
/// animation shows. Throws InputError when a stored image timeline cannot be read.
std::vector<std::shared_ptr<PCImageSet>> imageSetsInUse(PCProject& project);

/// Copies the artwork of `sets` into "images" inside `folder`; with `clean` that folder is removed
/// first. Only PNG and JPEG images with a name that says so are copied, and no file that two sets
/// would write. What is not, or cannot be, written is a failure, and the copy goes on. Nothing is
/// written or removed through a symbolic link below `folder`.
void exportArtwork(const std::vector<std::shared_ptr<PCImageSet>>& sets, const OutputFolder& folder,
                   bool clean, WrittenFiles& files, const ArtworkProgress& progress = {});

/// How many files a clean export into `directory` removes from its folder "images".
size_t oldImagesCount(const QString& directory);

/// Writes the file `name`, made of `pieces`, into `folder`, and notes how it went with `path`, its
/// path relative to the export's directory.
void writeExportedFile(const OutputFolder& folder, const QString& name,
                       const QByteArrayList& pieces, const QString& path, WrittenFiles& files);

}  // namespace tweenery
