#include "cli/package_check.h"

#include <QStringDecoder>
#include <optional>
#include <unordered_map>

#include "model/element.h"
#include "model/project_preferences.h"
#include "model/project_version.h"
#include "platform/image_header.h"
#include "platform/parallel_for.h"
#include "platform/path_name.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

void requireUtf8(const PackageEntry& entry) {
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decode(entry.node->contents());
    if (decode.hasError()) throw InputError(entry.path, u"is not UTF-8 text"_s);
}

void requireImage(const PackageEntry& entry) {
    const QByteArray& contents = entry.node->contents();
    decodeImage(contents, entry.path);
    const bool isNamedPng = pathExtension(entry.path) == u"png";
    if ((imageFormatOf(contents) == ImageFormat::Png) == isNamedPng) return;
    throw InputError(entry.path, isNamedPng ? u"is a JPEG image, though it is named as a PNG"_s
                                            : u"is a PNG image, though it is named as a JPEG"_s);
}

// Decoded as the model does it; then all the rest of the archive is read too.
template <typename Decode>
void requireArchive(const PackageEntry& entry, const Decode& decode) {
    const KeyedUnarchiver archive(entry.node->contents(), entry.path);
    decode(archive);
    archive.verifyEverything();
}

void requireReadable(const PackageEntry& entry) {
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
            return requireArchive(entry, [](const auto& archive) {
                PCKeyedPropertyTimeline::initWithArchive(archive);
            });
        case EntryKind::Rendition:
        case EntryKind::Preview:
            return requireImage(entry);
        case EntryKind::AnimationName:
            return requireUtf8(entry);
        case EntryKind::Unknown:
            return;
    }
}

/// What is wrong with each entry; the checks run side by side, each with a place of its own.
std::vector<std::optional<InputError>> errorsOf(const std::vector<PackageEntry>& entries) {
    std::vector<std::optional<InputError>> errors(entries.size());
    parallelFor(entries.size(), [&](size_t i) {
        try {
            requireReadable(entries[i]);
        } catch (const InputError& error) {
            errors[i] = error;
        }
    });
    return errors;
}

void requireEntries(const FileWrapper& root, PackageCheck& check) {
    for (const QString& name : {u"canvas"_s, u"preferences"_s}) {
        const FileWrapper::Ptr node = root.child(name);
        if (!node) check.errors.emplace_back(name, u"is missing from the package"_s);
        if (node && !node->isRegularFile()) {
            check.errors.emplace_back(name, u"is not a regular file"_s);
        }
    }
    if (!root.child(u"version"_s)) check.notes.push_back({u"version"_s, u"is missing"_s});
}

}  // namespace

PackageCheck checkPackage(const FileWrapper& root) {
    const std::vector<PackageEntry> entries = inventoryOf(root);
    PackageCheck check{.entriesCount = entries.size(), .errors = {}, .notes = {}};
    requireEntries(root, check);
    for (auto& error : errorsOf(entries)) {
        if (error) check.errors.push_back(std::move(*error));
    }
    for (const PackageEntry& entry : entries) {
        if (entry.kind != EntryKind::Unknown) continue;
        check.notes.push_back({entry.path, u"is no entry of a project; it is carried along"_s});
    }
    return check;
}

void noteOddities(PCProject& project, PackageCheck& check) {
    std::unordered_map<Identifier, QString> names;
    for (const PCElement::Ptr& element : project.canvas()->elementAndAllDescendants()) {
        const auto [first, isNew] = names.emplace(element->identifier(), element->name());
        if (isNew) continue;
        check.notes.push_back({u"canvas"_s,
                               u"the elements '%1' and '%2' have one identifier; only "
                               u"the first is found by it"_s.arg(first->second, element->name())});
    }
    for (const PCAnimation::Ptr& animation : project.animationsManager().animations()) {
        if (!animation->name().isNull()) continue;
        check.notes.push_back({u"animations/"_s + animation->identifier(), u"has no name"_s});
    }
}

}  // namespace tweenery
