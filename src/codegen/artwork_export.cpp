#include "codegen/artwork_export.h"

#include <QFile>
#include <filesystem>
#include <map>

#include "base/errors.h"
#include "storage/package_store.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

using ImageSets = std::map<QString, std::shared_ptr<PCImageSet>>;

const QString kImagesDirectory = u"images"_s;

std::filesystem::path filePath(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

/// Makes the folder; gives the reason when there is none afterwards that can be trusted.
QString reasonForNoImagesDirectory(const QString& path) {
    std::error_code error;
    const auto target = filePath(path);
    if (std::filesystem::is_symlink(target, error)) { return u"it is a symbolic link"_s; }
    std::filesystem::create_directories(target, error);
    if (error) { return QString::fromStdString(error.message()); }
    return std::filesystem::is_directory(target, error) ? QString() : u"it is no directory"_s;
}

void exportSet(const PCImageSet& set, const QString& directory, WrittenFiles& files) {
    const auto write = [&](const QString& name, const QByteArray& data) {
        if (data.isNull()) { return; }
        const QString path = kImagesDirectory + u'/' + name;
        if (isSafeFilename(name)) {
            writeExportedFile(directory, path, {data}, files);
        } else {
            files.failures.push_back({path, u"the image set's name is no file name"_s});
        }
    };
    write(set.name(), set.originalData());
    if (set.has2XArtwork()) { write(set.artwork2XName(), set.original2xData()); }
    if (set.has3XArtwork()) { write(set.artwork3XName(), set.original3xData()); }
}

}  // namespace

std::vector<std::shared_ptr<PCImageSet>> imageSetsInUse(PCProject& project) {
    ImageSets sets;
    const auto use = [&](const QString& name) {
        if (name.isEmpty() || sets.contains(name)) { return; }
        if (const auto set = project.imageSetManager().imageSetWithName(name)) { sets[name] = set; }
    };
    for (const PCElement::Ptr& element : project.canvas()->elementAndAllDescendants()) {
        if (!element->isGroup()) { use(element->imageName()); }
    }
    for (const PCAnimation::Ptr& animation : project.animationsManager().animations()) {
        for (const auto& [identifier, group] : animation->timelineGroups()) {
            const auto timeline = group->storedTimeline(PCPropertyTypeImageContents);
            if (!timeline) { continue; }
            for (size_t i = 0; i < timeline->keyframesCount(); ++i) {
                use(stringOfValue(timeline->storedValueOfKeyframe(i)));
            }
        }
    }
    std::vector<std::shared_ptr<PCImageSet>> inUse;
    for (const auto& [name, set] : sets) {
        inUse.push_back(set);
    }
    return inUse;
}

WrittenFiles exportArtwork(const std::vector<std::shared_ptr<PCImageSet>>& sets,
                           const QString& directory, bool clean) {
    WrittenFiles files;
    const QString target = directory + u'/' + kImagesDirectory;
    if (clean) {
        std::error_code ignored;  // there may be nothing to remove
        std::filesystem::remove_all(filePath(target), ignored);
    }
    const QString reason = reasonForNoImagesDirectory(target);
    if (!reason.isEmpty()) {
        files.failures.push_back({kImagesDirectory, reason});
        return files;
    }
    for (const auto& set : sets) {
        exportSet(*set, directory, files);
    }
    return files;
}

void writeExportedFile(const QString& directory, const QString& path, const QByteArrayList& pieces,
                       WrittenFiles& files) {
    try {
        writeFileAtomically(directory + u'/' + path, pieces);
        files.paths << path;
    } catch (const InputError& error) { files.failures.push_back({path, error.reason()}); }
}

}  // namespace tweenery
