#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include "support/test_paths.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

/// An include points to a lower level or stays in its folder.
const QMap<QString, int> levels = {
    {u"platform"_s, 0}, {u"model"_s, 1},  {u"codegen"_s, 2}, {u"canvas"_s, 2},
    {u"timeline"_s, 3}, {u"panels"_s, 4}, {u"app"_s, 5},     {u"cli"_s, 5},
};

struct SourceFile {
    QString path;  // relative to src/
    QString text;

    QString folder() const { return path.section(u'/', 0, 0); }

    /// The files included in quotes, which are this project's own.
    QStringList includes() const {
        static const QRegularExpression pattern(u"^\\s*#\\s*include\\s*\"([^\"]*)\""_s,
                                                QRegularExpression::MultilineOption);
        QStringList found;
        for (const auto& match : pattern.globalMatch(text))
            found << match.captured(1);
        return found;
    }
};

/// What is wrong with `include` in a file of `folder`; empty when nothing is.
QString faultOfInclude(const QString& folder, const QString& include) {
    const QString target = include.section(u'/', 0, 0);
    if (!include.contains(u'/') || !levels.contains(target)) {
        return u"names no folder of src/"_s;
    }
    if (target == folder || levels[target] < levels[folder]) return {};
    return u"does not point to a lower level"_s;
}

std::vector<SourceFile> sourceFiles() {
    const QDir root(sourcePath(u"src"_s));
    std::vector<SourceFile> files;
    QDirIterator paths(root.path(), {u"*.h"_s, u"*.cpp"_s}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (paths.hasNext()) {
        QFile file(paths.next());
        if (!file.open(QIODevice::ReadOnly)) ADD_FAILURE() << qPrintable(file.fileName());
        files.push_back(
            {root.relativeFilePath(file.fileName()), QString::fromUtf8(file.readAll())});
    }
    return files;
}

TEST(Levels, AnIncludePointsDownwardOrStays) {
    struct Case {
        QString folder;
        QString include;
        bool isAllowed;
    };
    const std::vector<Case> cases = {
        {u"model"_s, u"platform/bitmap.h"_s, true}, {u"model"_s, u"model/image.h"_s, true},
        {u"platform"_s, u"model/image.h"_s, false}, {u"codegen"_s, u"canvas/layer.h"_s, false},
        {u"canvas"_s, u"app/style.h"_s, false},     {u"cli"_s, u"codegen/identifiers.h"_s, true},
        {u"model"_s, u"image.h"_s, false},          {u"model"_s, u"../model/image.h"_s, false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(faultOfInclude(c.folder, c.include).isEmpty(), c.isAllowed)
            << qPrintable(c.folder) << " includes " << qPrintable(c.include);
    }
}

TEST(Levels, EverySourceFileKeepsThem) {
    const auto files = sourceFiles();
    ASSERT_FALSE(files.empty());
    size_t includeCount = 0;
    for (const SourceFile& file : files) {
        EXPECT_TRUE(levels.contains(file.folder())) << qPrintable(file.path);
        for (const QString& include : file.includes()) {
            ++includeCount;
            const QString fault = faultOfInclude(file.folder(), include);
            EXPECT_TRUE(fault.isEmpty()) << qPrintable(file.path) << ": \"" << qPrintable(include)
                                         << "\" " << qPrintable(fault);
        }
    }
    EXPECT_GT(includeCount, files.size() / 2) << "the includes are no longer recognised";
}

TEST(Headers, AreGuardedByPragmaOnce) {
    for (const SourceFile& file : sourceFiles()) {
        if (!file.path.endsWith(u".h")) continue;
        EXPECT_EQ(file.text.count(u"\n#pragma once\n"_s) + file.text.startsWith(u"#pragma once\n"),
                  1)
            << qPrintable(file.path);
    }
}

}  // namespace
}  // namespace tweenery::test
