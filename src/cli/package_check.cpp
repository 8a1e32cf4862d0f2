#include "cli/package_check.h"

#include <QHash>
#include <QStringDecoder>
#include <optional>
#include <unordered_map>

#include "base/parallel_for.h"
#include "base/path_name.h"
#include "cli/support/packages.h"
#include "model/element.h"
#include "model/preferences/project_preferences.h"
#include "model/preferences/project_version.h"
#include "storage/image_header.h"
#include "storage/package_entries.h"
#include "storage/pixel_allowance.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

void requireUtf8(const PackageEntry& entry) {
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decode(entry.node->contents());
    if (decode.hasError()) { throw InputError(entry.path, u"is not UTF-8 text"_s); }
}

void requireImage(const PackageEntry& entry, PixelAllowance& allowance) {
    const QByteArray& contents = entry.node->contents();
    allowance.take(contents, entry.path);
    decodeImage(contents, entry.path);
    const bool isNamedPng = pathExtension(entry.path) == u"png";
    if ((imageFormatOf(contents) == ImageFormat::Png) == isNamedPng) { return; }
    throw InputError(entry.path, isNamedPng ? u"is a JPEG image, though it is named as a PNG"_s
                                            : u"is a PNG image, though it is named as a JPEG"_s);
}

// Reads entries as the model does it, and then all the rest of each archive too. Timelines that
// belong to an element of an animation stay in the project.
class EntryReader {
 public:
    // `project` may be null.
    explicit EntryReader(PCProject* project) {
        if (!project) { return; }
        for (const PCAnimation::Ptr& animation : project->animationsManager().animations()) {
            m_animations.insert(animation->identifier(), animation);
        }
    }

    // Throws InputError. May be called for several entries at once.
    void read(const PackageEntry& entry) const;

 private:
    QHash<QString, PCAnimation::Ptr> m_animations;  // by the names of their directories
    mutable PixelAllowance m_allowance;

    void decodeTimeline(const PackageEntry& entry, const KeyedUnarchiver& archive) const;
    template <typename Decode>
    static void requireArchive(const PackageEntry& entry, const Decode& decode) {
        const KeyedUnarchiver archive(entry.node->contents(), entry.path);
        decode(archive);
        archive.verifyEverything();
    }
};

void EntryReader::read(const PackageEntry& entry) const {
    switch (entry.kind) {
        case EntryKind::Version:
            return requireArchive(
                entry, [](const auto& archive) { PCProjectVersion::decode(archive.root()); });
        case EntryKind::Preferences:
            return requireArchive(
                entry, [](const auto& archive) { PCProjectPreferences::decode(archive.root()); });
        case EntryKind::Canvas:
            return requireArchive(entry,
                                  [](const auto& archive) { PCElement::initWithArchive(archive); });
        case EntryKind::Timeline:
            return requireArchive(entry,
                                  [&](const auto& archive) { decodeTimeline(entry, archive); });
        case EntryKind::Rendition:
        case EntryKind::Preview:
            return requireImage(entry, m_allowance);
        case EntryKind::AnimationName:
            return requireUtf8(entry);
        case EntryKind::Unknown:
            return;
    }
}

void EntryReader::decodeTimeline(const PackageEntry& entry, const KeyedUnarchiver& archive) const {
    const QStringList names = entry.path.split(u'/');  // animations/ANIMATION/ELEMENT/FILE
    const PCAnimation::Ptr animation = m_animations.value(names[1]);
    const auto group = animation ? animation->timelineGroup(Identifier(names[2])) : nullptr;
    if (group) {
        group->timeline(timelineTypeOfFilename(names.last()).value());
    } else {
        PCKeyedPropertyTimeline::initWithArchive(archive);
    }
}

// What is wrong with each entry; the checks run side by side, each with a place of its own.
std::vector<std::optional<InputError>> errorsOf(const std::vector<PackageEntry>& entries,
                                                const EntryReader& reader) {
    std::vector<std::optional<InputError>> errors(entries.size());
    parallelFor(entries.size(), [&](size_t i) {
        try {
            reader.read(entries[i]);
        } catch (const InputError& error) { errors[i] = error; }
    });
    return errors;
}

PCProject::Ptr projectIfReadable(const FileWrapper::Ptr& root) {
    try {
        return projectOf(root);
    } catch (const InputError&) { return nullptr; }
}

void requireEntries(const FileWrapper& root, PackageCheck& check) {
    for (const QString& name : {kCanvasEntry, kPreferencesEntry}) {
        const FileWrapper::Ptr node = root.child(name);
        if (!node) { check.errors.emplace_back(name, u"is missing from the package"_s); }
        if (node && !node->isRegularFile()) { check.errors.emplace_back(name, kIsNoRegularFile); }
    }
    if (!root.child(kVersionEntry)) { check.notes.push_back({kVersionEntry, u"is missing"_s}); }
}

void noteOldTimelines(const PCAnimation& animation, const QString& path, PackageCheck& check) {
    for (const auto& [identifier, group] : animation.timelineGroups()) {
        for (const PCKeyedPropertyTimeline::Ptr& timeline : group->loadedTimelines()) {
            if (!timeline->isOfOlderVersion()) { continue; }
            check.notes.push_back(
                {u"%1/%2/%3"_s.arg(path, identifier.toString(),
                                   filenameOfTimelineType(timeline->propertyType())),
                 u"names a property of an older version; it is read as '%1', by its file's name"_s
                     .arg(stringFromPropertyType(timeline->propertyType()))});
        }
    }
}

}  // namespace

PackageCheck checkPackage(const FileWrapper::Ptr& root) {
    const std::vector<PackageEntry> entries = inventoryOf(*root);
    PackageCheck check;
    check.entriesCount = entries.size();
    requireEntries(*root, check);
    check.project = projectIfReadable(root);
    for (auto& error : errorsOf(entries, EntryReader(check.project.get()))) {
        if (error) { check.errors.push_back(std::move(*error)); }
    }
    for (const PackageEntry& entry : entries) {
        if (entry.kind != EntryKind::Unknown) { continue; }
        check.notes.push_back({entry.path, u"is no entry of a project; it is carried along"_s});
    }
    return check;
}

void noteOddities(PackageCheck& check) {
    PCProject& project = *check.project;
    std::unordered_map<Identifier, QString> names;
    for (const PCElement::Ptr& element : project.canvas()->elementAndAllDescendants()) {
        const auto [first, isNew] = names.emplace(element->identifier(), element->name());
        if (isNew) { continue; }
        check.notes.push_back({kCanvasEntry,
                               u"the elements '%1' and '%2' have one identifier; only "
                               u"the first is found by it"_s.arg(first->second, element->name())});
    }
    for (const PCAnimation::Ptr& animation : project.animationsManager().animations()) {
        const QString path = animation->path();
        if (animation->name().isNull()) { check.notes.push_back({path, u"has no name"_s}); }
        noteOldTimelines(*animation, path, check);
    }
}

}  // namespace tweenery
