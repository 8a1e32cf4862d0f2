// What the tool never touches, whoever plays tricks while it works.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <QDir>
#include <QImage>
#include <csignal>

#include "cli/support/signal_watch.h"
#include "model/project.h"
#include "storage/interference.h"
#include "storage/package_store.h"
#include "storage/temporaries.h"
#include "support/test_paths.h"
#include "tweenc_runner.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// Does `action` once, at the moment, in the place of another program.
class Intruder {
 public:
    Intruder(Moment moment, const std::function<void()>& action) {
        setInterference([moment, action, isDone = false](Moment now) mutable {
            if (now == moment && !std::exchange(isDone, true)) { action(); }
        });
    }
    ~Intruder() { setInterference(nullptr); }
};

QString folderWith(const QString& path, const QString& file) {
    QDir().mkpath(path);
    replaceContents(path + u'/' + file, "of the user");
    return path;
}

TEST(Export, CleansAFolderOnlyWhenTold) {
    Workshop shop;
    const QString package = shop.copyOf(u"Card"_s);
    const FileWrapper::Ptr root = readPackage(package);
    const auto project = PCProject::projectForReadingWithFileWrapper(root);
    project->preferences().setGeneratedCodeIncludesImages(true);
    project->preferences().setGeneratedCodeCleansImageDirectory(true);
    savePackage(*project->fileWrapper(), package);
    const QString out = shop.path(u"v"_s);
    const QString images = folderWith(out + u"/images"_s, u"holiday.jpg"_s);
    folderWith(images + u"/deep"_s, u"second.jpg"_s);

    EXPECT_EQ(tweenc({u"export"_s, package, u"--out"_s, out}).code, 0);
    EXPECT_TRUE(QFile::exists(images + u"/holiday.jpg"_s));
    EXPECT_EQ(
        tweenc({u"export"_s, package, u"--out"_s, out, u"--clean-images"_s, u"--no-images"_s}).code,
        2);
    EXPECT_TRUE(QFile::exists(images + u"/deep/second.jpg"_s));
    QFile::remove(images + u"/x"_s);
    const int there = static_cast<int>(QDir(images).entryList(QDir::Files).size());
    const Outcome clean = tweenc({u"export"_s, package, u"--out"_s, out, u"--clean-images"_s});
    EXPECT_THAT(clean.err, HasSubstr("tweenc: " + images.toStdString() + ": " +
                                     std::to_string(there + 1) + " files removed"));
    EXPECT_FALSE(QFile::exists(images + u"/holiday.jpg"_s));
}

TEST(Export, StaysInItsFolderWhateverItsPathBecomes) {
    Workshop shop;
    const QString package = shop.copyOf(u"Card"_s);
    const QString out = shop.path(u"v"_s);
    const QString elsewhere = folderWith(shop.path(u"elsewhere"_s), u"kept"_s);
    ASSERT_EQ(tweenc({u"export"_s, package, u"--out"_s, out, u"--images"_s}).code, 0);
    const DirectorySnapshot before = snapshotOf(elsewhere);
    const Intruder intruder(Moment::FileIsWritten, [&] {
        QDir().rename(out, out + u" moved"_s);
        QFile::link(elsewhere, out);
        QDir().rename(out + u" moved/images"_s, out + u" moved/pictures"_s);
        QFile::link(elsewhere, out + u" moved/images"_s);
    });
    const Outcome run = tweenc({u"export"_s, package, u"--out"_s, out, u"--images"_s});
    EXPECT_EQ(run.code, 1);
    EXPECT_THAT(run.err, HasSubstr("images: is a link or a file, and no directory"));
    EXPECT_THAT(differences(snapshotOf(elsewhere), before), IsEmpty());
}

TEST(Force, ReplacesPackagesOnly) {
    Workshop shop;
    const QString package = shop.copyOf(u"Card"_s);
    const QString real = shop.copyOf(u"Minimal"_s, u"Real.tweenery"_s);
    const QString project = folderWith(shop.path(u"proj"_s), u"canvas"_s);
    const QString renamed = shop.copyOf(u"Minimal"_s, u"renamed"_s);
    const QString named = folderWith(shop.path(u"Named.tweenery"_s), u"version"_s);
    struct Case {
        QString target;
        bool isReplaced;
    };
    for (const Case& c :
         {Case{project, false}, Case{renamed, false}, Case{named, false}, Case{real, true}}) {
        const QString link = shop.path(u"X.tweenery"_s);
        QFile::remove(link);
        ASSERT_TRUE(QFile::link(c.target, link));
        const DirectorySnapshot before = snapshotOf(c.target);
        for (const QStringList& command :
             {QStringList{u"copy"_s, package, link}, QStringList{u"new"_s, link}}) {
            const Outcome run = tweenc(command + QStringList{u"--force"_s});
            EXPECT_EQ(run.code, c.isReplaced ? 0 : 1) << qPrintable(c.target);
            EXPECT_EQ(differences(snapshotOf(c.target), before).empty(), !c.isReplaced);
            if (!c.isReplaced) {
                EXPECT_THAT(run.err, HasSubstr("is no package that could be replaced"));
            }
        }
    }
}

TEST(RenderedNames, StayBelowTheirPattern) {
    const std::pair<const char*, const char*> cases[] = {
        {"..", "_."},   {".", "_"}, {"a/../../b", "a_.._.._b"},
        {"-rf", "_rf"}, {"", "_"},  {"Flip \u202e", "Flip _"}};
    for (const auto& [name, folder] : cases) {
        Workshop shop;
        const QString package = shop.copyOf(u"Card"_s);
        const QDir animations(package + u"/animations"_s);
        const QString first = animations.entryList(QDir::Dirs | QDir::NoDotAndDotDot).front();
        replaceContents(animations.filePath(first + u"/name.data"_s), name);
        const QString expected = shop.path(u"fr/"_s) + QString::fromUtf8(folder);
        QDir().mkpath(expected);
        const Outcome run = tweenc({u"render"_s, package, u"--animation"_s, first, u"--at"_s,
                                    u"0"_s, u"--out"_s, shop.path(u"fr/%a/p%d.png"_s)});
        EXPECT_EQ(run.code, 0) << run.err;
        EXPECT_TRUE(QFile::exists(expected + u"/p0.png"_s)) << name;
    }
}

TEST(Names, ReachNoTerminalRaw) {
    Workshop shop;
    const QString package = shop.copyOf(u"Card"_s);
    const QDir animations(package + u"/animations"_s);
    const QString first = animations.entryList(QDir::Dirs | QDir::NoDotAndDotDot).front();
    replaceContents(animations.filePath(first + u"/name.data"_s),
                    "a\u202eb\u200bc\u2028d\u009be\u3164f");
    for (const QStringList& command :
         {QStringList{u"info"_s}, QStringList{u"describe"_s}, QStringList{u"dump"_s},
          QStringList{u"info"_s, u"--json"_s}, QStringList{u"check"_s}}) {
        const Outcome run = tweenc(command + QStringList{package});
        for (const char* hidden : {"\u202e", "\u200b", "\u2028", "\u009b", "\u3164"}) {
            EXPECT_THAT(run.out + run.err, Not(HasSubstr(hidden))) << command.front().toStdString();
        }
    }
    EXPECT_THAT(tweenc({u"info"_s, package}).out, HasSubstr("a\\u{202e}b\\u{200b}c"));
}

// A save that is interrupted takes its folders along, and the program still dies of the signal.
TEST(SignalsDeathTest, LeaveNoTemporaries) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    Workshop shop;
    // The program that dies runs this test from its beginning, in the place of the first one.
    const char* const variable = "TWEENERY_TEST_PLACE";
    const QString place = qEnvironmentVariable(variable, shop.path({}));
    ::qputenv(variable, place.toUtf8());
    const QString package = packagePath(u"Card"_s);
    const QString copy = place + u"/Copy.tweenery"_s;
    EXPECT_EXIT(
        {
            watchSignals();
            const Intruder intruder(Moment::PackageIsBuilt, [] {
                ::kill(::getpid(), SIGTERM);
                ::sleep(1);
            });
            tweenc({u"copy"_s, package, copy});
            ::sleep(20);
        },
        testing::KilledBySignal(SIGTERM), "");
    EXPECT_THAT(hiddenEntriesIn(place), IsEmpty());
    EXPECT_FALSE(QDir(copy).exists());
    ::qunsetenv(variable);
}

}  // namespace
}  // namespace tweenery::test
