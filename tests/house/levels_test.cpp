#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <map>
#include <set>

#include "support/test_paths.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

/// The rooms of src/ and how high each lies. An include points to a lower room or stays in its own.
const QMap<QString, int> levels = {
    {u"base"_s, 0},
    {u"storage"_s, 10},
    {u"scene"_s, 10},
    {u"model/properties"_s, 20},
    {u"model/images"_s, 20},
    {u"model/preferences"_s, 21},
    {u"model"_s, 22},
    {u"codegen/language"_s, 30},
    {u"codegen"_s, 31},
    {u"certify"_s, 32},
    {u"editor/layers"_s, 30},
    {u"editor/canvas"_s, 31},
    {u"editor/timeline"_s, 32},
    {u"editor/inspector"_s, 32},
    {u"editor/documents"_s, 30},
    {u"editor"_s, 33},
    {u"publish"_s, 34},
    {u"ui/widgets"_s, 40},
    {u"ui/canvas"_s, 41},
    {u"ui/timeline"_s, 41},
    {u"ui/inspector"_s, 41},
    {u"ui/navigators"_s, 41},
    {u"ui/export"_s, 41},
    {u"ui/start"_s, 41},
    {u"ui/window"_s, 42},
    {u"app"_s, 50},
    {u"cli/support"_s, 50},
    {u"cli/pictures"_s, 51},
    {u"cli"_s, 52},
};

/// Below this one, nobody knows of widgets.
constexpr int kWidgetLevel = 40;

/// Neighbours that do without each other, whatever their heights.
bool knowsNothingOf(const QString& room, const QString& target) {
    if (room == u"codegen/language") { return target != u"base"; }
    const QString wing = room.section(u'/', 0, 0);
    const QString targetWing = target.section(u'/', 0, 0);
    if (wing == u"codegen") { return targetWing == u"editor"; }
    if (wing == u"editor") { return targetWing == u"codegen"; }
    if (wing == u"cli") { return targetWing == u"ui" || targetWing == u"app"; }
    return false;
}

QString roomOf(const QString& path) {
    return path.section(u'/', 0, -2);
}

struct SourceFile {
    QString path;  // relative to src/
    QString text;

    QString room() const { return roomOf(path); }

    /// The files included in quotes, which are this project's own.
    QStringList includes() const {
        static const QRegularExpression pattern(u"^\\s*#\\s*include\\s*\"([^\"]*)\""_s,
                                                QRegularExpression::MultilineOption);
        QStringList found;
        for (const auto& match : pattern.globalMatch(text)) {
            found << match.captured(1);
        }
        return found;
    }
};

/// What is wrong with `include` in a file of `room`; empty when nothing is.
QString faultOfInclude(const QString& room, const QString& include) {
    const QString target = roomOf(include);
    if (!levels.contains(target)) { return u"names no room of src/"_s; }
    if (target == room) { return {}; }
    if (levels[target] >= levels[room]) { return u"does not point to a lower room"_s; }
    if (knowsNothingOf(room, target)) { return u"points to a room that this one does without"_s; }
    return {};
}

std::vector<SourceFile> sourceFiles() {
    const QDir root(sourcePath(u"src"_s));
    std::vector<SourceFile> files;
    QDirIterator paths(root.path(), {u"*.h"_s, u"*.cpp"_s}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (paths.hasNext()) {
        QFile file(paths.next());
        if (!file.open(QIODevice::ReadOnly)) { ADD_FAILURE() << qPrintable(file.fileName()); }
        files.push_back(
            {root.relativeFilePath(file.fileName()), QString::fromUtf8(file.readAll())});
    }
    return files;
}

TEST(Levels, AnIncludePointsDownwardOrStays) {
    struct Case {
        QString room;
        QString include;
        bool isAllowed;
    };
    const std::vector<Case> cases = {
        {u"model"_s, u"storage/bitmap.h"_s, true},
        {u"model"_s, u"model/images/image.h"_s, true},
        {u"model/images"_s, u"model/element.h"_s, false},
        {u"storage"_s, u"scene/layer.h"_s, false},
        {u"codegen"_s, u"editor/layers/element_layer.h"_s, false},
        {u"codegen/language"_s, u"model/properties/easing.h"_s, false},
        {u"editor/canvas"_s, u"ui/canvas/canvas_view.h"_s, false},
        {u"cli"_s, u"codegen/language/identifiers.h"_s, true},
        {u"cli"_s, u"ui/widgets/palette.h"_s, false},
        {u"model"_s, u"element.h"_s, false},
        {u"model"_s, u"../model/element.h"_s, false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(faultOfInclude(c.room, c.include).isEmpty(), c.isAllowed)
            << qPrintable(c.room) << " includes " << qPrintable(c.include);
    }
}

TEST(Levels, EverySourceFileKeepsThem) {
    const auto files = sourceFiles();
    ASSERT_FALSE(files.empty());
    size_t includeCount = 0;
    for (const SourceFile& file : files) {
        EXPECT_TRUE(levels.contains(file.room())) << qPrintable(file.path);
        for (const QString& include : file.includes()) {
            ++includeCount;
            const QString fault = faultOfInclude(file.room(), include);
            EXPECT_TRUE(fault.isEmpty()) << qPrintable(file.path) << ": \"" << qPrintable(include)
                                         << "\" " << qPrintable(fault);
        }
    }
    EXPECT_GT(includeCount, files.size() / 2) << "the includes are no longer recognised";
}

/// A header and the source beside it are one file here: "model/element".
using Files = std::map<QString, std::set<QString>>;

QString withoutExtension(const QString& path) {
    return path.section(u'.', 0, 0);
}

/// What each file includes, itself left out.
Files includesOfFiles() {
    Files files;
    for (const SourceFile& source : sourceFiles()) {
        const QString name = withoutExtension(source.path);
        std::set<QString>& included = files[name];
        for (const QString& include : source.includes()) {
            if (withoutExtension(include) != name) { included.insert(withoutExtension(include)); }
        }
    }
    return files;
}

Files reversed(const Files& files) {
    Files includers;
    for (const auto& [name, included] : files) {
        for (const QString& other : included) {
            if (files.contains(other)) { includers[other].insert(name); }
        }
    }
    return includers;
}

/// Takes away what leads nowhere, until nothing more can go.
void peel(Files& files) {
    for (bool hasChanged = true; hasChanged;) {
        const size_t removed = std::erase_if(files, [&files](const auto& file) {
            return std::none_of(file.second.begin(), file.second.end(),
                                [&files](const QString& name) { return files.contains(name); });
        });
        hasChanged = removed > 0;
    }
}

/// What is left when all goes that includes nothing, or is included by nothing.
Files filesInCircles(Files files) {
    peel(files);
    files = reversed(files);
    peel(files);
    return files;
}

TEST(Levels, NoFilesIncludeEachOtherInACircle) {
    EXPECT_EQ(filesInCircles({{u"a"_s, {u"b"_s}}, {u"b"_s, {u"c"_s}}, {u"c"_s, {}}}).size(), 0U);
    EXPECT_EQ(filesInCircles({{u"a"_s, {u"b"_s}}, {u"b"_s, {u"a"_s}}, {u"c"_s, {}}}).size(), 2U);
    for (const auto& [name, included] : filesInCircles(includesOfFiles())) {
        ADD_FAILURE() << qPrintable(name) << " stands in a circle of includes, or between two";
    }
}

TEST(Levels, NoWidgetStandsBelowTheRoomsOfWidgets) {
    static const QRegularExpression widget(
        u"#include <Q(Widget|Application|MainWindow|Dialog|TreeView|Menu|ToolBar|Style|LineEdit)"_s);
    for (const SourceFile& file : sourceFiles()) {
        if (levels[file.room()] >= kWidgetLevel && !file.path.startsWith(u"cli")) { continue; }
        EXPECT_FALSE(file.text.contains(widget)) << qPrintable(file.path);
    }
}

TEST(Headers, AreGuardedByPragmaOnce) {
    for (const SourceFile& file : sourceFiles()) {
        if (!file.path.endsWith(u".h")) { continue; }
        EXPECT_EQ(file.text.count(u"\n#pragma once\n"_s) + file.text.startsWith(u"#pragma once\n"),
                  1)
            << qPrintable(file.path);
    }
}

}  // namespace
}  // namespace tweenery::test
