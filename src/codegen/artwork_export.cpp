#include "codegen/artwork_export.h"

#include <map>

#include "base/errors.h"
#include "base/path_name.h"
#include "storage/image_header.h"
#include "storage/package_entries.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

using ImageSets = std::map<QString, std::shared_ptr<PCImageSet>>;

const QString kImagesDirectory = u"images"_s;

struct ArtworkFile {
    QString name;  // of the file
    QByteArray data;
    QString imageSet;
    QString entry;  // of the package
};

QString entryOf(const PCImageSet& set, const QString& basename) {
    const QString png = basename + u".png"_s;
    const QString file = set.fileWrapper()->child(png) ? png : basename + u".jpg"_s;
    return u"%1/%2/%3"_s.arg(kImagesEntry, set.name(), file);
}

std::vector<ArtworkFile> artworkOf(const std::vector<std::shared_ptr<PCImageSet>>& sets) {
    std::vector<ArtworkFile> artwork;
    for (const auto& set : sets) {
        const auto add = [&](const QString& name, const QByteArray& data, const QString& basename) {
            if (data.isNull()) { return; }
            artwork.push_back({name, data, set->name(), entryOf(*set, basename)});
        };
        add(set->name(), set->originalData(), u"Original"_s);
        if (set->has2XArtwork()) {
            add(set->artwork2XName(), set->original2xData(), u"Original@2x"_s);
        }
        if (set->has3XArtwork()) {
            add(set->artwork3XName(), set->original3xData(), u"Original@3x"_s);
        }
    }
    return artwork;
}

// What stands against a file of that name with that content, which came with the package; empty
// when nothing does. A file that is no picture could be anything, and so could one without a
// picture's name.
QString faultOf(const ArtworkFile& artwork) {
    const auto format = imageFormatOf(artwork.data);
    if (!format) { return u"is neither a PNG nor a JPEG image"_s; }
    const QString extension = pathExtension(artwork.name).toLower();
    const bool isNamedPng = extension == u"png";
    const bool isNamedJpeg = extension == u"jpg" || extension == u"jpeg";
    if (!isNamedPng && !isNamedJpeg) { return u"is not named as a PNG or JPEG image"_s; }
    if (isNamedPng == (*format == ImageFormat::Png)) { return {}; }
    return isNamedPng ? u"is a JPEG image, though it is named as a PNG"_s
                      : u"is a PNG image, though it is named as a JPEG"_s;
}

// The file has to go where nothing else of this export goes.
QString reasonAgainst(const ArtworkFile& artwork,
                      const std::multimap<QString, QString>& setsByFile) {
    const auto [first, last] = setsByFile.equal_range(artwork.name);
    for (auto other = first; other != last; ++other) {
        if (other->second == artwork.imageSet) { continue; }
        return u"is what the image sets %1 and %2 would both write; it is not written"_s.arg(
            std::min(artwork.imageSet, other->second), std::max(artwork.imageSet, other->second));
    }
    const QString fault = faultOf(artwork);
    return fault.isEmpty() ? fault : u"is not written: %1 %2"_s.arg(artwork.entry, fault);
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

void exportArtwork(const std::vector<std::shared_ptr<PCImageSet>>& sets, const OutputFolder& folder,
                   bool clean, WrittenFiles& files, const ArtworkProgress& progress) {
    if (clean) { files.removedFilesCount = folder.remove(kImagesDirectory); }
    const std::vector<ArtworkFile> artwork = artworkOf(sets);
    std::multimap<QString, QString> setsByFile;
    for (const ArtworkFile& file : artwork) {
        setsByFile.emplace(file.name, file.imageSet);
    }
    try {
        const OutputFolder images = folder.subfolder(kImagesDirectory);
        size_t count = 0;
        for (const ArtworkFile& file : artwork) {
            files.isStopped = progress && !progress(count++, artwork.size());
            if (files.isStopped) { return; }
            const QString path = kImagesDirectory + u'/' + file.name;
            const QString reason = reasonAgainst(file, setsByFile);
            if (reason.isEmpty()) {
                writeExportedFile(images, file.name, {file.data}, path, files);
            } else {
                files.failures.push_back({path, reason});
            }
        }
    } catch (const InputError& error) {
        files.failures.push_back({kImagesDirectory, error.reason()});
    }
}

size_t oldImagesCount(const QString& directory) {
    return OutputFolder::countFiles(directory, kImagesDirectory);
}

void writeExportedFile(const OutputFolder& folder, const QString& name,
                       const QByteArrayList& pieces, const QString& path, WrittenFiles& files) {
    try {
        folder.write(name, pieces);
        files.paths << path;
    } catch (const InputError& error) { files.failures.push_back({path, error.reason()}); }
}

}  // namespace tweenery
