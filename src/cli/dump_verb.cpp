// tweenc dump: the whole package as one stable JSON, for people to compare and for git to show.

#include <QCryptographicHash>
#include <QHash>
#include <algorithm>

#include "cli/model_json.h"
#include "cli/package_inventory.h"
#include "cli/support/json_writer.h"
#include "cli/support/packages.h"
#include "cli/verbs.h"
#include "storage/input_file.h"
#include "storage/package_entries.h"
#include "storage/system_names.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// The entries that lie in each animation's and each image set's directory, by its path, and the
// others by a null one.
using Entries = QHash<QString, std::vector<PackageEntry>>;

Entries entriesByDirectory(const FileWrapper& root) {
    Entries entries;
    for (PackageEntry& entry : inventoryOf(root)) {
        const bool isInDirectory =
            entry.kind == EntryKind::Timeline || entry.kind == EntryKind::Rendition;
        const QString directory = isInDirectory ? entry.path.section(u'/', 0, 1) : QString();
        entries[directory].push_back(std::move(entry));
    }
    return entries;
}

void writeFile(const PackageEntry& entry, const QString& nameInJson, JsonWriter& json) {
    const QByteArray& contents = entry.node->contents();
    const QByteArray digest = QCryptographicHash::hash(contents, QCryptographicHash::Sha256);
    json.key("name").string(nameInJson);
    json.key("sha256").string(QString::fromLatin1(digest.toHex()));
    json.key("size").integer(contents.size());
}

void writeTimelines(const QString& directory, const Entries& entries, JsonWriter& json) {
    json.key("timelines").beginArray();
    for (const PackageEntry& entry : entries.value(directory)) {
        json.beginObject();
        json.key("file").string(entry.path.sliced(directory.size() + 1));
        writeTimelineFields(KeyedUnarchiver(entry.node->contents(), entry.path), json);
        json.endObject();
    }
    json.endArray();
}

// By identifier, so that a new name moves nothing.
void writeAnimations(PCProject& project, const Entries& entries, JsonWriter& json) {
    auto animations = project.animationsManager().animations();
    std::sort(animations.begin(), animations.end(),
              [](const auto& a, const auto& b) { return a->identifier() < b->identifier(); });
    json.key("animations").beginArray();
    for (const PCAnimation::Ptr& animation : animations) {
        json.beginObject();
        json.key("identifier").string(animation->identifier());
        json.key("name").string(animation->name());
        writeTimelines(animation->path(), entries, json);
        json.endObject();
    }
    json.endArray();
}

void writeImageSets(PCProject& project, const Entries& entries, JsonWriter& json) {
    json.key("imageSets").beginArray();
    for (const auto& set : project.imageSetManager().allImageSets()) {
        const QString directory = u"images/%1"_s.arg(set->name());
        json.beginObject();
        json.key("name").string(set->name());
        json.key("renditions").beginArray();
        for (const PackageEntry& entry : entries.value(directory)) {
            json.beginObject(JsonWriter::Layout::OneLine);
            writeFile(entry, entry.path.sliced(directory.size() + 1), json);
            json.endObject();
        }
        json.endArray().endObject();
    }
    json.endArray();
}

const char* kindName(const FileWrapper& node) {
    if (node.isDirectory()) { return "directory"; }
    return node.isRegularFile() ? "file" : "link";
}

// What the model does not read.
void writeOtherEntries(const Entries& entries, JsonWriter& json) {
    json.key("otherEntries").beginArray();
    for (const PackageEntry& entry : entries.value({})) {
        if (entry.kind != EntryKind::Unknown && entry.kind != EntryKind::Preview) { continue; }
        json.beginObject(JsonWriter::Layout::OneLine);
        json.key("kind").string(QString::fromLatin1(kindName(*entry.node)));
        writeFile(entry, entry.path, json);
        json.endObject();
    }
    json.endArray();
}

void dumpPackage(Report& report) {
    const PCProject::Ptr project = openForReading(report);
    const Entries entries = entriesByDirectory(*project->packageRoot());
    JsonWriter json(JsonWriter::Keys::Sorted);
    json.beginObject();
    writeAnimations(*project, entries, json);
    json.key("elements");
    writeElements({project->packageRoot()->child(kCanvasEntry)->contents(), kCanvasEntry}, json);
    writeImageSets(*project, entries, json);
    json.key("modelVersion").integer(project->version().modelVersion());
    writeOtherEntries(entries, json);
    json.key("preferences");
    writePreferences(project->preferences(), json);
    report.print(json.endObject().take());
}

// One entry of a package on its own, which is what git hands to a text converter.
void dumpArchive(Report& report) {
    const QString& path = report.packagePath();
    const KeyedUnarchiver archive(readInputFile(path), path);
    const QString type = archive.root().className();
    JsonWriter json(JsonWriter::Keys::Sorted);
    json.beginObject();
    if (type == u"PCElement") {
        writeElements(archive, json.key("elements"));
    } else if (type == u"PCKeyedPropertyTimeline") {
        writeTimelineFields(archive, json);
    } else if (type == u"PCProjectPreferences") {
        writePreferences(*PCProjectPreferences::decode(archive.root()), json.key("preferences"));
    } else if (type == u"PCProjectVersion") {
        const int32_t version = PCProjectVersion::decode(archive.root())->modelVersion();
        json.key("modelVersion").integer(version);
    } else {
        throw InputError(path, u"is no archive of a project"_s);
    }
    report.print(json.endObject().take());
}

ExitCode run(const Invocation& invocation, Console& console) {
    const QString path = invocation.operands().first();
    return runOnPackage(invocation, console,
                        kindOfPath(path) == PathKind::File ? dumpArchive : dumpPackage);
}

}  // namespace

const Verb& dumpVerb() {
    static const Verb verb{
        "dump",
        "PKG",
        1,
        1,
        "Prints everything in a package, or in one archive of it, as JSON that stays the same: to "
        "compare, and for git's textconv.",
        {},
        run};
    return verb;
}

}  // namespace tweenery
