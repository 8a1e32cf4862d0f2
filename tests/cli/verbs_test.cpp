// What the verbs do to files: copies, updates, new projects, exports.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QImage>

#include "codegen/project_exporter.h"
#include "model/project.h"
#include "storage/package_store.h"
#include "support/archived.h"
#include "support/test_paths.h"
#include "tweenc_runner.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const QStringList packages = {u"Bounce"_s, u"Card"_s, u"Minimal"_s, u"Tags"_s};

QString writePicture(const QString& path, QSize size = {30, 60}) {
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::red);
    EXPECT_TRUE(image.save(path));
    return path;
}

TEST(Copy, HoldsAllThatTheOriginalHolds) {
    for (const QString& package : packages) {
        Workshop shop;
        const QString original = shop.copyOf(package);
        replaceContents(original + u"/notes.txt"_s, "kept");
        QDir(original).mkpath(u"animations/Unknown/deep"_s);
        replaceContents(original + u"/images/stray"_s, "kept too");
        const DirectorySnapshot before = snapshotOf(original);

        const Outcome run = tweenc({u"copy"_s, original, shop.path(u"Q.tweenery"_s)});
        EXPECT_EQ(run.code, 0) << run.err;
        EXPECT_EQ(run.out + run.err, "");
        EXPECT_THAT(differences(snapshotOf(original), before), IsEmpty());
        const Outcome dump = tweenc({u"dump"_s, original});
        EXPECT_THAT(dump.out, HasSubstr("notes.txt"));
        EXPECT_THAT(dump.out, HasSubstr("images/stray"));
        EXPECT_EQ(tweenc({u"dump"_s, shop.path(u"Q.tweenery"_s)}).out, dump.out);
    }
}

TEST(Copy, WritesEveryPartAnew) {
    Workshop shop;
    const QString copy = shop.path(u"Q.tweenery"_s);
    ASSERT_EQ(tweenc({u"copy"_s, packagePath(u"Bounce"_s), copy}).code, 0);
    DirectorySnapshot written = snapshotOf(copy);
    // Written by this program's archiver, whose bytes differ from those of the other writer.
    for (const auto& [path, entry] : snapshotOf(packagePath(u"Bounce"_s))) {
        if (!entry.content.starts_with("bplist00")) { continue; }
        EXPECT_NE(written[path].content, entry.content) << path;
    }
}

TEST(NewPackages, AreNotWrittenOverOthers) {
    Workshop shop;
    const QString original = shop.copyOf(u"Card"_s);
    const QString other = shop.copyOf(u"Minimal"_s, u"Q.tweenery"_s);
    const QString folder = shop.path(u"F.tweenery"_s);
    QDir().mkpath(folder);
    replaceContents(folder + u"/letter.txt"_s, "dear");
    const DirectorySnapshot otherBefore = snapshotOf(other);
    const DirectorySnapshot folderBefore = snapshotOf(folder);

    EXPECT_EQ(tweenc({u"copy"_s, original, other}).err,
              "tweenc: " + other.toStdString() + ": is already there; --force replaces it\n");
    EXPECT_EQ(tweenc({u"new"_s, other}).code, 1);
    EXPECT_THAT(differences(snapshotOf(other), otherBefore), IsEmpty());
    EXPECT_THAT(tweenc({u"copy"_s, original, folder, u"--force"_s}).err,
                HasSubstr("is no package that could be replaced"));
    EXPECT_THAT(differences(snapshotOf(folder), folderBefore), IsEmpty());
    EXPECT_THAT(tweenc({u"copy"_s, original, original + u"/images/Q.tweenery"_s}).err,
                HasSubstr("which would be changed"));

    EXPECT_EQ(tweenc({u"copy"_s, original, other, u"--force"_s}).code, 0);
    EXPECT_EQ(tweenc({u"dump"_s, other}).out, tweenc({u"dump"_s, original}).out);
}

struct VersionTest : testing::Test {
    Home shop;
    QString package = shop.copyOf(u"Card"_s, u"Old.tweenery"_s);

    void storeVersion(int32_t version) {
        replaceContents(package + u"/version"_s, versionArchive(version));
    }
};

// The verbs but update() read what is older as it stands, and refuse what is newer.
TEST_F(VersionTest, AnotherVersionIsReadAsItIsOrRefused) {
    const std::string name = "tweenc: " + package.toStdString();
    const std::string older =
        name +
        "/version: the project counts as one of model version 13, older than 14; it is "
        "read as it is and nothing in it is changed";
    const std::string newer =
        name +
        ": Tweenery Cannot Open This Project: Old.tweenery was created by a newer version "
        "of Tweenery. Please upgrade Tweenery to use the project.";
    for (const int32_t version : {13, 15}) {
        storeVersion(version);
        const DirectorySnapshot before = snapshotOf(package);
        for (const QStringList& command : readingCommands(shop, package)) {
            const Outcome run = tweenc(command);
            EXPECT_EQ(run.code, version == 13 ? 0 : 1) << run.err;
            EXPECT_EQ(run.firstErrorLine(), version == 13 ? older : newer);
            if (version == 15 && !command.contains(u"--json"_s)) { EXPECT_EQ(run.out, ""); }
        }
        EXPECT_THAT(differences(snapshotOf(package), before), IsEmpty());
        EXPECT_FALSE(QDir(shop.backups()).exists());
    }
    EXPECT_EQ(tweenc({u"update"_s, package, u"--yes"_s}).err, newer + '\n');
    EXPECT_THAT(tweenc({u"info"_s, shop.path(u"Copy.tweenery"_s)}).out,
                HasSubstr("model version 13"));
}

TEST_F(VersionTest, AnUpdateAsksFirst) {
    struct Case {
        const char* answer;  // null: nobody can be asked
        QStringList options;
        int code;
        const char* error;
    };
    const std::vector<Case> cases = {
        {nullptr, {}, 1, "Nobody can be asked here; --yes says so."},
        {"no\n", {}, 1, "Do you want to do that now? [y/N] "},
        {"", {}, 1, "was not updated, as you decided"},
        {"Yes\n", {}, 0, "Updating Model of Old.tweenery (From v13 to v14)"},
        {nullptr, {u"--yes"_s}, 0, "Updating Model of Old.tweenery (From v13 to v14)"},
    };
    for (const Case& c : cases) {
        storeVersion(13);
        QDir(shop.backups()).removeRecursively();
        const DirectorySnapshot before = snapshotOf(package);
        const Outcome run = tweenc(QStringList{u"update"_s, package} + c.options, c.answer);
        EXPECT_EQ(run.code, c.code);
        EXPECT_THAT(run.err, HasSubstr(c.error));
        EXPECT_EQ(differences(snapshotOf(package), before).empty(), c.code != 0);
        const QStringList kept = shop.backupNames();
        ASSERT_EQ(kept.size(), c.code == 0 ? 1 : 0);
        if (kept.isEmpty()) { continue; }
        EXPECT_THAT(differences(snapshotOf(shop.backups() + u'/' + kept.front()), before),
                    IsEmpty());
        EXPECT_THAT(run.out, HasSubstr(kept.front().toStdString()));
        EXPECT_THAT(tweenc({u"update"_s, package}).out, HasSubstr("has model version 14 already"));
    }
}

TEST_F(VersionTest, ABackupGoesWhereItIsToldAndAnUpdateGoesOnWithoutOne) {
    storeVersion(13);
    const QString elsewhere = shop.path(u"deep/elsewhere"_s);
    EXPECT_EQ(tweenc({u"update"_s, package, u"--yes"_s, u"--backup"_s, package + u"/in"_s}).code,
              1);
    EXPECT_EQ(tweenc({u"update"_s, package, u"--yes"_s, u"--backup"_s, elsewhere}).code, 0);
    EXPECT_EQ(QDir(elsewhere).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 1);
    EXPECT_FALSE(QDir(shop.backups()).exists());

    storeVersion(13);
    replaceContents(shop.path(u"Documents"_s), "a file where the directory should be");
    const Outcome run = tweenc({u"update"_s, package, u"--yes"_s});
    EXPECT_EQ(run.code, 0);
    EXPECT_THAT(run.err, StartsWith("The backup " + shop.backups().toStdString()));
    EXPECT_THAT(run.err, HasSubstr("Not a directory). The project is updated without one."));
    EXPECT_THAT(tweenc({u"info"_s, package}).out, HasSubstr("model version 14"));
}

TEST_F(VersionTest, EveryBackupIsKept) {
    for (const char* note : {"first", "second", "third"}) {
        storeVersion(13);
        replaceContents(package + u"/note"_s, note);
        EXPECT_EQ(tweenc({u"update"_s, package, u"--yes"_s}).code, 0);
    }
    std::vector<QByteArray> notes;
    for (const QString& backup : shop.backupNames()) {
        notes.push_back(contentsOf(shop.backups() + u'/' + backup + u"/note"_s));
    }
    EXPECT_THAT(notes, testing::UnorderedElementsAre("first", "second", "third"));
}

TEST_F(VersionTest, WithoutAHomeAnUpdateGoesOnWithoutABackupAndSaysWhy) {
    storeVersion(13);
    qunsetenv("HOME");
    const Outcome run = tweenc({u"update"_s, package, u"--yes"_s});
    EXPECT_EQ(run.code, 0);
    EXPECT_THAT(run.err, HasSubstr("there is no home folder, as the variable HOME is not set). The "
                                   "project is updated without one."));
    EXPECT_THAT(run.out, Not(HasSubstr("Backup")));
    EXPECT_THAT(tweenc({u"info"_s, package}).out, HasSubstr("model version 14"));
}

TEST(New, MakesAnElementForEachPicture) {
    Workshop shop;
    const QString package = shop.path(u"N.tweenery"_s);
    const Outcome run =
        tweenc({u"new"_s, package, u"--canvas"_s, u"200x100"_s,
                writePicture(shop.path(u"sun@3x.png"_s), {90, 45}),
                writePicture(shop.path(u"sun.jpeg"_s)), writePicture(shop.path(u"Big@2X.PNG"_s))});
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(tweenc({u"info"_s, package}).out,
              "N\n  model version 14\n  canvas 200 x 100\n  3 elements (0 groups)\n"
              "  0 animations\n  3 image sets\n    Big.png  15 x 30 @2x\n    sun.jpg  30 x 60\n"
              "    sun.png  30 x 15 @2x @3x\n");
    const auto project = PCProject::projectForReadingWithFileWrapper(readPackage(package));
    QStringList names;
    for (const PCElement::Ptr& element : project->canvas()->children()) {
        names << element->name();
        EXPECT_EQ(element->position().x(), 100);
        EXPECT_EQ(element->position().y(), 50);
        EXPECT_EQ(element->size(),
                  project->imageSetManager().imageSetWithName(element->imageName())->size());
    }
    EXPECT_EQ(names, (QStringList{u"sun"_s, u"sun 1"_s, u"Big"_s}));
    EXPECT_EQ(tweenc({u"check"_s, package}).code, 0);
}

TEST(New, MakesOneSetOfTheDensitiesOfAPicture) {
    Workshop shop;
    const QString package = shop.path(u"N.tweenery"_s);
    const QString low = writePicture(shop.path(u"a.png"_s), {10, 20});
    const QString high = writePicture(shop.path(u"a@3x.png"_s), {33, 66});  // not just three times
    ASSERT_EQ(tweenc({u"new"_s, package, high, low}).code, 0);
    const auto project = PCProject::projectForReadingWithFileWrapper(readPackage(package));
    ASSERT_EQ(project->canvas()->children().size(), 1U);
    EXPECT_EQ((*project->canvas()->children().begin())->size(), QSizeF(10, 20));
    const auto set = project->imageSetManager().imageSetWithName(u"a.png"_s);
    EXPECT_EQ(set->originalImage()->size(), QSize(10, 20));
    EXPECT_EQ(set->original2xImage()->size(), QSize(22, 44));
    EXPECT_EQ(set->original3xImage()->size(), QSize(33, 66));
}

TEST(New, RefusesArtworkThatItCannotUse) {
    Workshop shop;
    const QString picture = writePicture(shop.path(u"a.png"_s));
    QDir().mkpath(shop.path(u"other"_s));
    const QString twice = writePicture(shop.path(u"other/a.png"_s));
    const QString text = shop.path(u"b.png"_s);
    const QString misnamed = shop.path(u"c.tiff"_s);
    replaceContents(text, "no picture");
    replaceContents(misnamed, contentsOf(picture));
    struct Case {
        QString path;
        const char* reason;
    };
    const std::vector<Case> cases = {
        {twice, "is the same picture of the image set a.png as "},
        {text, "is neither a PNG nor a JPEG image"},
        {misnamed, "is not named as a PNG or JPEG image"},
        {u"/dev/zero"_s, "is not a regular file"},
        {shop.path({}), "is not a regular file"},
        {shop.path(u"gone.png"_s), "could not be opened: No such file or directory"},
    };
    for (const Case& c : cases) {
        const Outcome run = tweenc({u"new"_s, shop.path(u"N.tweenery"_s), picture, c.path});
        EXPECT_EQ(run.code, 1);
        EXPECT_THAT(run.err, StartsWith("tweenc: " + c.path.toStdString() + ": " + c.reason));
        EXPECT_FALSE(QDir(shop.path(u"N.tweenery"_s)).exists());
    }
}

TEST(Export, TakesItsChoicesFromTheOptionsAndThePreferences) {
    struct Case {
        QString package;
        QStringList options;
        bool usesSwift;
        ExportOptions choices;
    };
    const std::vector<Case> cases = {
        {u"Card"_s, {}, false, {false, true, true, false, false, {}}},
        {u"Card"_s,
         {u"--lang"_s, u"objc"_s, u"--platform"_s, u"mac"_s, u"--clip"_s, u"--no-images"_s},
         false,
         {true, true, false, false, false, {}}},
        {u"Tags"_s,
         {u"--lang=swift"_s, u"--platform=ios"_s, u"--clip"_s, u"--images"_s},
         true,
         {false, true, true, false, false, {}}},
        {u"Bounce"_s,
         {u"--no-clip"_s, u"--clean-images"_s, u"--images"_s, u"--lang=objc"_s},
         false,
         {false, false, true, true, false, {}}},
    };
    for (const Case& c : cases) {
        Workshop shop;
        const QString out = shop.path(u"tool/deep"_s);
        const QString expected = shop.path(u"model"_s);
        const Outcome run = tweenc(QStringList{u"export"_s, packagePath(c.package), u"--out"_s, out,
                                               u"--date"_s, u"1/2/20"_s} +
                                   c.options);
        EXPECT_EQ(run.code, 0) << run.err;
        ExportOptions choices = c.choices;
        choices.stamp = {TWEENERY_VERSION, "1/2/20"};
        const auto project =
            PCProject::projectForReadingWithFileWrapper(readPackage(packagePath(c.package)));
        project->setProjectName(c.package);
        const auto result = exportCodeToDirectory(project, expected, c.usesSwift, choices);
        EXPECT_THAT(differences(snapshotOf(out), snapshotOf(expected)), IsEmpty());
        std::string listed;
        for (const QString& path : result.files.paths) {
            listed += (out + u'/' + path).toStdString() + '\n';
        }
        EXPECT_EQ(run.out, listed);
    }
}

TEST(Export, EndsWithThreeForWarningsOnlyWhenStrict) {
    Workshop shop;
    const auto run = [&](const QString& package, const QStringList& options) {
        return tweenc(
            QStringList{u"export"_s, packagePath(package), u"--out"_s, shop.path(package)} +
            options);
    };
    EXPECT_EQ(run(u"Tags"_s, {}).code, 0);
    EXPECT_EQ(run(u"Tags"_s, {u"--strict"_s}).code, 3);
    EXPECT_THAT(run(u"Tags"_s, {}).err, HasSubstr("warning: element 'inner_button': "));
    EXPECT_THAT(run(u"Tags"_s, {u"--json"_s}).out, HasSubstr("\"kind\": \"colliding-names\""));
    EXPECT_EQ(run(u"Bounce"_s, {u"--strict"_s}).code, 0);  // notes alone
}

TEST(Export, SaysMuchOrLittle) {
    Workshop shop;
    const QString package = packagePath(u"Tags"_s);
    const QString out = shop.path(u"out"_s);
    const auto run = [&](const QStringList& options) {
        return tweenc(QStringList{u"export"_s, package, u"--out"_s, out} + options);
    };
    const Outcome dry = run({u"--dry-run"_s});
    EXPECT_EQ(dry.code, 0);
    EXPECT_FALSE(QDir(out).exists());
    const Outcome real = run({});
    EXPECT_EQ(dry.out, real.out);
    EXPECT_EQ(run({u"--quiet"_s}).out + run({u"--quiet"_s}).err, "");
    const Outcome all = run({u"--verbose"_s});
    const auto lines = [](const std::string& text) {
        return std::count(text.begin(), text.end(), '\n');
    };
    EXPECT_GE(lines(all.err), lines(real.err));
}

TEST(Export, DatesItsFilesAlikeEverywhere) {
    Workshop shop;
    const auto headOf = [&](const QStringList& options) {
        const QString out = shop.path(u"out"_s);
        const Outcome run = tweenc(QStringList{u"export"_s, packagePath(u"Card"_s), u"--out"_s, out,
                                               u"--lang"_s, u"swift"_s} +
                                   options);
        EXPECT_EQ(run.code, 0) << run.err;
        return contentsOf(out + u"/CardView.swift"_s).toStdString();
    };
    ::qputenv("SOURCE_DATE_EPOCH", "951782399");
    EXPECT_THAT(headOf({}), HasSubstr(" on 2/28/00."));
    EXPECT_THAT(headOf({u"--date"_s, u"today"_s}), HasSubstr(" on today."));
    ::qputenv("SOURCE_DATE_EPOCH", "yesterday");
    EXPECT_THAT(tweenc({u"export"_s, packagePath(u"Card"_s), u"--out"_s, shop.path(u"out"_s)}).err,
                HasSubstr("SOURCE_DATE_EPOCH: is no number of seconds since 1970"));
    ::qunsetenv("SOURCE_DATE_EPOCH");
}

TEST(Check, CountsWhatStopsAnExport) {
    Workshop shop;
    const QString package = shop.copyOf(u"Tags"_s);
    EXPECT_EQ(tweenc({u"check"_s, package}).code, 0);
    EXPECT_EQ(tweenc({u"check"_s, package, u"--strict"_s}).code, 3);
    EXPECT_EQ(tweenc({u"check"_s, package, u"--quiet"_s}).out, "");
    // A table of frames cannot hold a picture that changes, which only Objective-C would have.
    const QDir animations(shop.copyOf(u"Bounce"_s, u"B.tweenery"_s) + u"/animations"_s);
    for (const QString& animation : animations.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        replaceContents(animations.filePath(animation + u"/name.data"_s),
                        "Walk_sliced_2000000" + animation.left(1).toUtf8());
    }
    const QString sliced = shop.path(u"B.tweenery"_s);
    const Outcome objc = tweenc({u"check"_s, sliced, u"--lang"_s, u"objc"_s});
    EXPECT_EQ(objc.code, 1);
    EXPECT_THAT(objc.err, HasSubstr("tweenc: " + sliced.toStdString() + ": error: animation '"));
    EXPECT_EQ(tweenc({u"check"_s, sliced, u"--lang"_s, u"swift"_s}).code, 0);
}

TEST(Check, TellsEveryBadEntry) {
    Workshop shop;
    const QString package = shop.copyOf(u"Card"_s);
    replaceContents(package + u"/canvas"_s, "noise");
    replaceContents(package + u"/preferences"_s, "noise");
    QFile::remove(package + u"/version"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(package + u"/version"_s), 0600), 0);
    const Outcome run = tweenc({u"check"_s, package});
    EXPECT_EQ(run.code, 1);
    for (const char* entry : {"/canvas: ", "/preferences: ", "/version: is a named pipe"}) {
        EXPECT_THAT(run.err, HasSubstr("tweenc: " + package.toStdString() + entry));
    }
}

TEST(Values, ComeAsATableToo) {
    const Outcome run = tweenc({u"values"_s, packagePath(u"Card"_s), u"--at"_s, u"0"_s});
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_THAT(run.out, StartsWith("at 0 ms\n  element"));
    EXPECT_THAT(run.out, HasSubstr("rotation"));
}

TEST(Export, FailsWhereItCannotWrite) {
    Workshop shop;
    replaceContents(shop.path(u"file"_s), "in the way");
    const QString package = shop.copyOf(u"Card"_s);
    const DirectorySnapshot before = snapshotOf(package);
    for (const QString& out : {shop.path(u"file"_s), package, package + u"/images/new"_s}) {
        const Outcome run = tweenc({u"export"_s, package, u"--out"_s, out});
        EXPECT_EQ(run.code, 1);
        EXPECT_THAT(run.err, StartsWith("tweenc: " + out.toStdString()));
    }
    EXPECT_THAT(differences(snapshotOf(package), before), IsEmpty());
}

TEST(SeveralPackages, AreReportedInTheirOrderEachWithItsErrors) {
    Workshop shop;
    const QString good = shop.copyOf(u"Minimal"_s, u"Good.tweenery"_s);
    const QString bad = shop.copyOf(u"Card"_s, u"Bad.tweenery"_s);
    const QString gone = shop.path(u"Gone.tweenery"_s);
    QFile::remove(bad + u"/canvas"_s);
    const std::string errors = "tweenc: " + bad.toStdString() +
                               "/canvas: is missing from the package\n"
                               "tweenc: " +
                               gone.toStdString() + ": does not exist\n";

    const Outcome info = tweenc({u"info"_s, bad, gone, good, packagePath(u"Card"_s)});
    EXPECT_EQ(info.code, 1);
    EXPECT_EQ(info.err, errors);
    EXPECT_EQ(info.out,
              tweenc({u"info"_s, good}).out + tweenc({u"info"_s, packagePath(u"Card"_s)}).out);

    const QString out = shop.path(u"out"_s);
    const Outcome run = tweenc({u"export"_s, u"--out"_s, out, bad, gone, good});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.err, errors);
    EXPECT_EQ(QDir(out).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList{u"Good"_s});

    EXPECT_THAT(tweenc({u"export"_s, u"--out"_s, out, good, good + u"/"_s}).err,
                HasSubstr("as another package does"));
    const QString upward = shop.copyOf(u"Minimal"_s, u"...tweenery"_s);
    EXPECT_THAT(tweenc({u"export"_s, u"--out"_s, out, good, upward}).err,
                StartsWith("tweenc: " + upward.toStdString() + ": has no name for a folder"));
}

}  // namespace
}  // namespace tweenery::test
