#include "codegen/project_exporter.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "base/errors.h"
#include "codegen/export_error.h"
#include "codegen/scene.h"
#include "support/directory_snapshot.h"
#include "support/files.h"
#include "support/test_paths.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

ExportOptions options(bool includesImages, bool cleans = false) {
    return {.includesImages = includesImages,
            .cleansImageDirectory = cleans,
            .stamp = {"1.0", "1/2/20"}};
}

class ProjectExporter : public testing::Test {
 protected:
    QString path(const QString& name) const { return m_directory.filePath(name); }
    ExportResult run(const Scene& scene, const ExportOptions& options, const QString& folder) {
        return exportCodeToDirectory(scene.project(), path(folder), true, options);
    }
    void writeFile(const QString& name, const QByteArray& contents) {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path(name)).path()));
        replaceContents(path(name), contents);
    }

 private:
    QTemporaryDir m_directory;
};

TEST_F(ProjectExporter, CopiesTheArtworkInUseOnce) {
    Scene scene;
    for (const char* name : {"b@3x.png", "a.jpg", "shown@2x.png", "unused.png", "ofGroup.png"}) {
        scene.addImage(QString::fromLatin1(name));
    }
    for (int i = 0; i < 3; ++i) {
        scene.add(u"element %1"_s.arg(i))->setImageName(u"b.png"_s);
    }
    scene.add(u"photo"_s)->setImageName(u"a.jpg"_s);
    scene.add(u"lost"_s)->setImageName(u"lost.png"_s);
    const auto group = scene.add(u"group"_s);
    group->setGroup(true);
    group->setImageName(u"ofGroup.png"_s);
    // Animations that are left out, and elements that are gone, count as well.
    scene.store(scene.addAnimation(u"_ignore_me"_s), u"GONE"_s, PCPropertyTypeImageContents,
                {{0, u"shown.png"_s}});
    const auto project =
        PCProject::projectForReadingWithFileWrapper(scene.project()->fileWrapper());
    project->setProjectName(u"Scene"_s);

    const ExportResult result =
        exportCodeToDirectory(project, path(u"out/deep"_s), true, options(true));
    EXPECT_EQ(result.files.paths,
              QStringList({u"SceneView.swift"_s, u"images/a.jpg"_s, u"images/b.png"_s,
                           u"images/b@2x.png"_s, u"images/b@3x.png"_s, u"images/shown.png"_s,
                           u"images/shown@2x.png"_s}));
    EXPECT_TRUE(result.files.failures.empty());
    const auto files = snapshotOf(path(u"out/deep"_s));
    EXPECT_EQ(files.size(), 9U);  // with two directories
    EXPECT_EQ(QByteArray::fromStdString(files.at("images/b@2x.png").content),
              project->imageSetManager().imageSetWithName(u"b.png"_s)->original2xData());
}

TEST_F(ProjectExporter, TouchesImagesOnlyWhenAsked) {
    Scene scene;
    scene.add(u"a"_s);
    struct Case {
        ExportOptions options;
        bool keepsOldFile, makesFolder;
    };
    const Case cases[] = {{options(false, true), true, false},
                          {options(true), true, true},
                          {options(true, true), false, true}};
    int number = 0;
    for (const Case& c : cases) {
        const QString folder = u"out%1"_s.arg(++number);
        writeFile(folder + u"/images/old/old.png"_s, "old");
        run(scene, c.options, folder);
        EXPECT_EQ(QFile::exists(path(folder) + u"/images/old/old.png"_s), c.keepsOldFile);
        const QString fresh = u"fresh%1"_s.arg(number);
        run(scene, c.options, fresh);
        EXPECT_EQ(QDir(path(fresh) + u"/images"_s).exists(), c.makesFolder);
    }
}

TEST_F(ProjectExporter, NeverWritesThroughALink) {
    Scene scene;
    scene.addImage(u"a.png"_s);
    scene.add(u"a"_s)->setImageName(u"a.png"_s);
    writeFile(u"outside/keep.png"_s, "keep");
    writeFile(u"outside.swift"_s, "keep");
    const auto outside = snapshotOf(path(u"outside"_s));
    for (const bool cleans : {false, true}) {
        const QString folder = cleans ? u"cleaned"_s : u"kept"_s;
        ASSERT_TRUE(QDir().mkpath(path(folder)));
        ASSERT_TRUE(QFile::link(path(u"outside"_s), path(folder + u"/images"_s)));
        ASSERT_TRUE(QFile::link(path(u"outside.swift"_s), path(folder + u"/SceneView.swift"_s)));
        const ExportResult result = run(scene, options(true, cleans), folder);
        EXPECT_EQ(snapshotOf(path(u"outside"_s)), outside);
        // A link in the place of the folder is refused, or cleaned away itself.
        EXPECT_EQ(result.files.failures.size(), cleans ? 0U : 1U);
        EXPECT_EQ(result.files.paths.contains(u"images/a.png"_s), cleans);
        EXPECT_EQ(contentsOf(path(u"outside.swift"_s)), "keep");
    }
}

// What a package calls an image may be anything, and be called anything.
TEST_F(ProjectExporter, WritesPicturesOnlyAndEachOfThemOnce) {
    Scene scene;
    scene.addImage(u"good.png"_s);
    scene.addImage(u"twin@2x.png"_s);
    const QByteArray png =
        scene.project()->imageSetManager().imageSetWithName(u"good.png"_s)->originalData();
    const auto store = [&](const QString& name, const QByteArray& data) {
        scene.project()
            ->packageRoot()
            ->child(u"images"_s)
            ->pc_ensureSubfileWrapperDirectoryExistsWithName(name)
            ->pc_replaceSubFileWrapperNamed(u"Original.png"_s, data);
    };
    store(u"authorized_keys"_s, "ssh-ed25519 AAAA");
    store(u".bashrc"_s, png);
    store(u"-rf"_s, png);
    store(u"text.png"_s, "no picture");
    store(u"photo.jpg"_s, png);
    store(u"twin@2x.png"_s, png);
    const char* const names[] = {"good.png", "twin.png", "authorized_keys", ".bashrc",
                                 "-rf",      "text.png", "photo.jpg",       "twin@2x.png"};
    for (const char* name : names) {
        scene.add(QString::fromLatin1(name))->setImageName(QString::fromLatin1(name));
    }
    const auto project =
        PCProject::projectForReadingWithFileWrapper(scene.project()->fileWrapper());
    project->setProjectName(u"Scene"_s);
    const ExportResult result = exportCodeToDirectory(project, path(u"out"_s), true, options(true));
    EXPECT_EQ(result.files.paths,
              QStringList({u"SceneView.swift"_s, u"images/good.png"_s, u"images/twin.png"_s}));
    std::map<QString, QString> reasons;
    for (const ExportFailure& failure : result.files.failures) {
        reasons[failure.path] = failure.reason;
    }
    EXPECT_EQ(reasons.size(), 6U);
    EXPECT_EQ(reasons[u"images/authorized_keys"_s],
              u"is not written: images/authorized_keys/Original.png is neither a PNG nor a JPEG "
              u"image"_s);
    EXPECT_EQ(reasons[u"images/.bashrc"_s],
              u"is not written: images/.bashrc/Original.png is not named as a PNG or JPEG image"_s);
    EXPECT_EQ(
        reasons[u"images/photo.jpg"_s],
        u"is not written: images/photo.jpg/Original.png is a PNG image, though it is named as "
        u"a JPEG"_s);
    EXPECT_EQ(
        reasons[u"images/twin@2x.png"_s],
        u"is what the image sets twin.png and twin@2x.png would both write; it is not written"_s);
}

TEST_F(ProjectExporter, NotesFailuresAndGoesOn) {
    Scene scene;
    const QString longName = QString(250, u'n');
    scene.addImage(longName + u"@2x.png"_s);  // "@2x" no longer fits in a file name
    scene.addImage(u"z.png"_s);
    scene.add(u"a"_s)->setImageName(longName + u".png"_s);
    scene.add(u"b"_s)->setImageName(u"z.png"_s);
    ASSERT_TRUE(QDir().mkpath(path(u"out/SceneView.swift/in the way"_s)));
    const ExportResult result = run(scene, options(true), u"out"_s);
    ASSERT_EQ(result.files.failures.size(), 2U);
    EXPECT_EQ(result.files.failures[0].path, u"SceneView.swift"_s);
    EXPECT_EQ(result.files.failures[1].path, u"images/"_s + longName + u"@2x.png"_s);
    EXPECT_EQ(result.files.paths,
              QStringList({u"images/"_s + longName + u".png"_s, u"images/z.png"_s}));

    writeFile(u"file"_s, "in the way");
    const ExportResult nowhere = run(scene, options(true), u"file/out"_s);
    EXPECT_TRUE(nowhere.files.paths.isEmpty());
    ASSERT_EQ(nowhere.files.failures.size(), 1U);
    EXPECT_FALSE(nowhere.files.failures[0].reason.isEmpty());
}

TEST_F(ProjectExporter, WritesNothingWhenTheRunStops) {
    Scene sliced;
    const auto hero = sliced.add(u"hero"_s);
    sliced.store(sliced.addAnimation(u"walk_sliced_3"_s), hero, PCPropertyTypeImageContents,
                 {{9, u"b.png"_s}});
    EXPECT_THROW(exportCodeToDirectory(sliced.project(), path(u"out"_s), false, options(true)),
                 ExportError);
    Scene damaged;
    const auto animation = damaged.addAnimation(u"walk"_s);
    animation->fileWrapper()
        ->pc_ensureSubfileWrapperDirectoryExistsWithName(
            damaged.add(u"a"_s)->identifier().toString())
        ->pc_replaceSubFileWrapperNamed(u"opacity.data"_s, "noise");
    EXPECT_THROW(run(damaged, options(true), u"out"_s), InputError);
    ExportOptions desktop = options(true);
    desktop.generateForMac = true;
    EXPECT_THROW(run(Scene(), desktop, u"out"_s), ExportError);
    EXPECT_FALSE(QDir(path(u"out"_s)).exists());
}

// Names that would end a literal, a comment or a section mark, through a real compiler.
TEST_F(ProjectExporter, HostileNamesCompile) {
    const QString clang = QStandardPaths::findExecutable(u"clang"_s);
    if (clang.isEmpty()) { GTEST_SKIP() << "there is no clang"; }
    Scene scene;
    int number = 0;
    for (const QString& name :
         {u"quote \" and \\"_s, u"line\nbreak"_s, u"ends in \\"_s, u"blank after \\ "_s,
          u"/* comment */ // \u0001\u0085"_s, u"%@ %d \\u0041"_s, u"three \?\?/\"];abort();//z"_s,
          u"end \?\?/"_s, QString(u"nul \0 nul"_s), u"日本語 🎈"_s, u"² ½ ① ⅷ ١٢٣"_s}) {
        ++number;
        const auto element = scene.add(name + u" e%1"_s.arg(number));
        element->setImageName(name + u".png"_s);
        for (const QString& tag : {QString(), u"_sliced_3"_s}) {
            const auto animation = scene.addAnimation(u"%1 a%2"_s.arg(name).arg(number) + tag);
            scene.store(animation, element, PCPropertyTypeOpacity, {{9, 0.5F}});
            if (tag.isEmpty()) {
                scene.store(animation, element, PCPropertyTypeImageContents, {{9, name}});
            }
        }
        scene.addAnimation(name);  // the awkward character ends the comment
    }
    exportCodeToDirectory(scene.project(), path(u"out"_s), false, options(false));
    const QString standIns = sourcePath(u"resources/certify/headers"_s);
    QProcess compiler;
    compiler.setProcessChannelMode(QProcess::MergedChannels);
    compiler.start(clang,
                   {u"-fsyntax-only"_s, u"-fobjc-arc"_s, u"-fblocks"_s, u"-Wall"_s, u"-Wextra"_s,
                    u"-Werror"_s, u"-Wno-sign-compare"_s, u"-nostdinc"_s, u"-x"_s, u"objective-c"_s,
                    u"-target"_s, u"arm64-apple-ios15"_s, u"-isystem"_s, standIns + u"/common"_s,
                    u"-isystem"_s, standIns + u"/ios"_s, path(u"out/SceneView.m"_s)});
    ASSERT_TRUE(compiler.waitForFinished());
    EXPECT_EQ(compiler.exitCode(), 0) << compiler.readAll().toStdString();
}

}  // namespace
}  // namespace tweenery::test
