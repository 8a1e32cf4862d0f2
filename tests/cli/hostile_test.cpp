// Damaged and hostile packages, through the whole program: an exit code, an error that names the
// entry, and the package as it was.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <filesystem>
#include <random>

#include "model/animation.h"
#include "support/test_paths.h"
#include "tweenc_runner.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

/// Runs all verbs; `entry` is what is wrong, and every error has to name it.
void expectCleanAnswers(const Workshop& shop, const QString& package, const std::string& entry) {
    const DirectorySnapshot before = snapshotOf(package);
    const QStringList ofAnimation{u"--animation"_s, u"6E5DD218-3E41-4086-8EB9-22670A476421"_s};
    for (const QStringList& command : readingCommands(shop, package, ofAnimation)) {
        std::filesystem::remove_all(shop.path(u"Copy.tweenery"_s).toStdString());
        const Outcome run = tweenc(command);
        const std::string name = command.front().toStdString() + " with a bad " + entry;
        EXPECT_TRUE(run.code == 0 || run.code == 1) << name << ": " << run.code;
        EXPECT_THAT(run.err, Not(HasSubstr("internal error"))) << name;
        if (run.code == 0) { continue; }
        EXPECT_THAT(run.err, StartsWith("tweenc: ")) << name;
        EXPECT_THAT(run.err, HasSubstr(entry)) << name;
    }
    EXPECT_THAT(differences(snapshotOf(package), before), IsEmpty()) << entry;
}

QStringList filesOf(const QString& package) {
    QStringList files;
    for (const auto& [path, entry] : snapshotOf(package)) {
        if (entry.kind == 'f') { files << QString::fromStdString(path); }
    }
    return files;
}

QByteArray noise(qsizetype size) {
    std::minstd_rand random(7);
    QByteArray bytes(size, Qt::Uninitialized);
    for (char& byte : bytes) {
        byte = static_cast<char>(random());
    }
    return bytes;
}

class DamagedEntries : public testing::TestWithParam<int> {};

// Each entry in turn; what `check` must find is found, and no verb falls over any.
TEST_P(DamagedEntries, AreNamed) {
    Workshop shop;
    const QString package = shop.copyOf(u"Bounce"_s);
    for (const QString& entry : filesOf(package)) {
        const QString path = package + u'/' + entry;
        const QByteArray whole = contentsOf(path);
        const qsizetype flipped = whole.size() * GetParam() / 8;
        QByteArray oneByteOff = whole;
        oneByteOff[flipped] = static_cast<char>(oneByteOff[flipped] ^ 0x55);
        struct Damage {
            QByteArray contents;
            bool isAlwaysFound;
        };
        std::vector<Damage> damages = {{oneByteOff, false}};
        if (GetParam() == 0) {
            const bool isText = entry.endsWith(kAnimationNameFile);  // any text is a name
            damages.push_back({whole.first(whole.size() / 2), !isText});
            damages.push_back({{}, !isText});
            damages.push_back({noise(whole.size()), true});
        }
        for (const Damage& damage : damages) {
            replaceContents(path, damage.contents);
            const Outcome check = tweenc({u"check"_s, package});
            if (damage.isAlwaysFound) { EXPECT_EQ(check.code, 1) << qPrintable(entry); }
            expectCleanAnswers(shop, package, entry.toStdString());
        }
        replaceContents(path, whole);
    }
}

INSTANTIATE_TEST_SUITE_P(FlippedAtEighths, DamagedEntries, testing::Values(0, 1, 3, 5, 7));

TEST(HostileEntries, OfOneIdentifierAreTold) {
    Workshop shop;
    const QString package = shop.copyOf(u"Bounce"_s);
    QByteArray canvas = contentsOf(package + u"/canvas"_s);
    canvas.replace("77375579-B3C0-4DF6-947D-BC939720E7EB", "1AD391AD-CE1F-4D2D-9151-A84EB5CBF531");
    replaceContents(package + u"/canvas"_s, canvas);
    EXPECT_THAT(tweenc({u"check"_s, package}).out, HasSubstr("have one identifier"));
}

TEST(HostileEntries, AreNamed) {
    struct Case {
        const char* entry;
        void (*damage)(const QString& path);
        const char* reason;
    };
    static const auto clear = [](const QString& path) {
        std::filesystem::remove_all(path.toStdString());
    };
    const std::vector<Case> cases = {
        {"canvas", [](const QString& path) { clear(path); }, "is missing from the package"},
        {"preferences", [](const QString& path) { clear(path); }, "is missing from the package"},
        {"canvas", [](const QString& path) { clear(path), QDir().mkpath(path); },
         "is not a regular file"},
        {"preferences",
         [](const QString& path) {
             clear(path);
             QFile::link(u"/dev/zero"_s, path);
         },
         "is not a regular file"},
        {"images", [](const QString& path) { clear(path), replaceContents(path, "x"); },
         "is not a directory"},
        {"animations", [](const QString& path) { clear(path), replaceContents(path, "x"); },
         "is not a directory"},
        {"images/sky.jpg/Original.jpg",
         [](const QString& path) {
             replaceContents(
                 path, contentsOf(packagePath(u"Minimal"_s) + u"/images/tile.png/Original.png"_s));
         },
         "is a PNG image, though it is named as a JPEG"},
        {"images/ball.png/Original.png",
         [](const QString& path) {
             QByteArray image = contentsOf(path);
             image.replace(16, 8, QByteArray::fromHex("000186a0000186a0"));  // 100,000 a side
             replaceContents(path, image);
         },
         "images/ball.png/Original.png"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.entry) + " " + c.reason);
        Workshop shop;
        const QString package = shop.copyOf(u"Bounce"_s);
        c.damage(package + u'/' + QString::fromLatin1(c.entry));
        const Outcome check = tweenc({u"check"_s, package});
        EXPECT_EQ(check.code, 1);
        EXPECT_THAT(check.err,
                    StartsWith("tweenc: " + package.toStdString() + '/' + c.entry + ": "));
        EXPECT_THAT(check.err, HasSubstr(c.reason));
        expectCleanAnswers(shop, package, c.entry);
    }
}

TEST(HostilePaths, AreNoPackages) {
    Workshop shop;
    const QString file = shop.path(u"file.tweenery"_s);
    replaceContents(file, "no directory");
    const QString pipe = shop.path(u"pipe.tweenery"_s);
    ::mkfifo(QFile::encodeName(pipe), 0600);
    const QString loop = shop.path(u"loop.tweenery"_s);
    QFile::link(loop, loop);
    const QString odd = shop.path(u"a\n\x1b[2Jb"_s);
    struct Case {
        QString path;
        const char* reason;
    };
    const std::vector<Case> cases = {{file, "is not a directory"},
                                     {pipe, "is not a directory"},
                                     {loop, "could not be opened: "},
                                     {odd, "does not exist"},
                                     {shop.path(u"gone"_s), "does not exist"}};
    for (const Case& c : cases) {
        for (const char* verb : {"info", "check", "copy", "describe"}) {
            QStringList command{QString::fromLatin1(verb), c.path};
            if (command.front() == u"copy"_s) { command << shop.path(u"Copy.tweenery"_s); }
            const Outcome run = tweenc(command);
            EXPECT_EQ(run.code, 1);
            EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
            EXPECT_THAT(run.err, HasSubstr(c.reason));
            EXPECT_THAT(run.err, Not(HasSubstr("\x1b")));
            EXPECT_EQ(run.out, "");
        }
    }
    EXPECT_EQ(tweenc({u"dump"_s, file}).err,
              "tweenc: " + file.toStdString() + ": this is no binary property list\n");
}

}  // namespace
}  // namespace tweenery::test
