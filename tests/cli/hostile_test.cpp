// Damaged and hostile packages, through the whole program: an exit code, an error that names the
// entry, and the package as it was.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QElapsedTimer>
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

/// The verbs that read a package, on this one.
std::vector<QStringList> readingCommands(const Workshop& shop, const QString& package) {
    return {{u"check"_s, package},
            {u"info"_s, package},
            {u"describe"_s, package},
            {u"dump"_s, package},
            {u"values"_s, package, u"--at"_s, u"0,100"_s, u"--json"_s, u"--animation"_s,
             u"6E5DD218-3E41-4086-8EB9-22670A476421"_s},
            {u"copy"_s, package, shop.path(u"Copy.tweenery"_s), u"--force"_s},
            {u"export"_s, package, u"--out"_s, shop.path(u"out"_s)}};
}

/// Runs all verbs; `entry` is what is wrong, and every error has to name it.
void expectCleanAnswers(const Workshop& shop, const QString& package, const std::string& entry) {
    const DirectorySnapshot before = snapshotOf(package);
    for (const QStringList& command : readingCommands(shop, package)) {
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

/// Writes the keys that every element needs.
void encodeElement(KeyedEncoder& coder, const QString& identifier, const QString& name) {
    coder.encodeString("identifier", identifier);
    coder.encodeString("name", name);
    for (const char* key : {"xScale", "yScale", "opacity"}) {
        coder.encodeFloat(key, 1);
    }
    coder.encodePoint("position", {10, 10});
    coder.encodePoint("anchorPoint", {0.5, 0.5});
    coder.encodeSize("size", {20, 20});
    coder.encodeBool("group", true);
}

/// An element with the keys that a function writes, and children.
struct TestElement : Archivable {
    std::function<void(KeyedEncoder&)> encode;
    std::vector<const Archivable*> children;

    ArchiveClass archiveClass() const override { return {"PCElement"}; }
    void encodeWithCoder(KeyedEncoder& coder) const override {
        encode(coder);
        coder.encodeObjects("subelements", children);
    }
};

QByteArray canvasWith(const std::vector<std::function<void(KeyedEncoder&)>>& children) {
    std::vector<TestElement> elements(children.size());
    TestElement canvas;
    canvas.encode = [](KeyedEncoder& coder) { encodeElement(coder, u"C"_s, u"Canvas"_s); };
    for (size_t i = 0; i < children.size(); ++i) {
        elements[i].encode = children[i];
        canvas.children.push_back(&elements[i]);
    }
    return KeyedArchiver::archivedDataWithRootObject(canvas);
}

QByteArray nestedCanvas(size_t depth) {
    std::vector<TestElement> elements(depth);
    for (size_t i = 0; i < depth; ++i) {
        elements[i].encode = [i](KeyedEncoder& coder) {
            encodeElement(coder, QString::number(i), u"E"_s);
        };
        if (i + 1 < depth) { elements[i].children.push_back(&elements[i + 1]); }
    }
    return KeyedArchiver::archivedDataWithRootObject(elements.front());
}

std::function<void(KeyedEncoder&)> elementNamed(const QString& name,
                                                const QString& identifier = u"E"_s) {
    return [=](KeyedEncoder& coder) { encodeElement(coder, identifier, name); };
}

QByteArray canvasWithText(const char* key, const QString& text) {
    return canvasWith({[=](KeyedEncoder& coder) {
        coder.encodeString("name", u"E"_s);
        coder.encodeString(key, text);
    }});
}

TEST(HostileCanvas, IsRefusedOrRead) {
    struct Case {
        const char* what;
        QByteArray canvas;
        const char* reason;  // null: it is read
    };
    const std::vector<Case> cases = {
        {"a size beyond numbers", canvasWithText("size", u"{1e999, 1}"_s), "size"},
        {"10,000 levels", nestedCanvas(10'000), "levels deep"},
        {"1,000 levels", nestedCanvas(1000), nullptr},
        {"one identifier twice", canvasWith({elementNamed(u"A"_s), elementNamed(u"B"_s)}), nullptr},
        {"an identifier that climbs", canvasWith({elementNamed(u"A"_s, u"../../../tmp/x"_s)}),
         nullptr},
        {"names that climb",
         canvasWith({elementNamed(u"../../evil"_s), elementNamed(u".."_s, u"F"_s),
                     elementNamed(u"a/b\\\"\n*/"_s, u"G"_s)}),
         nullptr},
        {"a name with NUL", canvasWith({elementNamed(u"a\0b"_s)}), nullptr},
        {"10 MB of text", canvasWith({elementNamed(QString(10'000'000, u'x'))}),
         "characters of a name: 10000000, more than the 500 that are allowed"},
        {"half a surrogate pair", canvasWith({elementNamed(QString(QChar(0xd800)))}), nullptr},
        {"an image from elsewhere", canvasWithText("imageName", u"../../../../etc/passwd"_s),
         nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Workshop shop;
        const QString package = shop.copyOf(u"Bounce"_s);
        replaceContents(package + u"/canvas"_s, c.canvas);
        const Outcome check = tweenc({u"check"_s, package});
        EXPECT_EQ(check.code, c.reason ? 1 : 0) << check.err;
        if (c.reason) {
            EXPECT_THAT(check.err, StartsWith("tweenc: " + package.toStdString() + "/canvas: "));
            EXPECT_THAT(check.err, HasSubstr(c.reason));
        }
        expectCleanAnswers(shop, package, "canvas");
        for (const auto& [path, entry] : snapshotOf(shop.path({}))) {
            const bool isExpected = path == "." || path.starts_with("P.") ||
                                    path.starts_with("Copy.") || path.starts_with("out");
            EXPECT_TRUE(isExpected) << path;
        }
    }
}

TEST(HostileCanvas, WithOneIdentifierTwiceIsTold) {
    Workshop shop;
    const QString package = shop.copyOf(u"Minimal"_s);
    replaceContents(package + u"/canvas"_s,
                    canvasWith({elementNamed(u"A"_s), elementNamed(u"B"_s)}));
    EXPECT_THAT(tweenc({u"check"_s, package}).out,
                HasSubstr("/canvas: the elements 'A' and 'B' have one identifier"));
}

TEST(HostileTimeline, IsRefusedOrRead) {
    const auto timeline = [](const std::function<void(size_t, KeyedEncoder&)>& keyframe,
                             size_t count) {
        return archiveOf("PCKeyedPropertyTimeline", [=](KeyedEncoder& coder) {
            coder.encodeString("property_type", u"opacity"_s);
            coder.encodeRecords("keyframes", {"PCPropertyKeyframe"}, count, keyframe);
        });
    };
    struct Case {
        const char* what;
        QByteArray archive;
        const char* reason;  // null: it is read
    };
    const std::vector<Case> cases = {
        {"a time that is text",
         timeline([](size_t, KeyedEncoder& coder) { coder.encodeString("time", u"now"_s); }, 1),
         "time"},
        {"a negative time",
         timeline([](size_t, KeyedEncoder& coder) { coder.encodeInt("time", -5); }, 1), nullptr},
        {"a value of another kind",
         timeline([](size_t, KeyedEncoder& coder) { coder.encodeString("imageName", u"x.png"_s); },
                  1),
         nullptr},
        {"many keyframes at one time",
         timeline([](size_t, KeyedEncoder& coder) { coder.encodeInt("time", 5); }, 20'000),
         nullptr},
        {"pairs of keyframes at one time",
         timeline([](size_t i,
                     KeyedEncoder& coder) { coder.encodeInt("time", static_cast<int32_t>(i / 2)); },
                  200'000),
         nullptr},
    };
    const QString entry =
        u"animations/6E5DD218-3E41-4086-8EB9-22670A476421/77375579-B3C0-4DF6-947D-BC939720E7EB/opacity.data"_s;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Workshop shop;
        const QString package = shop.copyOf(u"Bounce"_s);
        replaceContents(package + u'/' + entry, c.archive);
        QElapsedTimer timer;
        timer.start();
        const Outcome check = tweenc({u"check"_s, package});
        EXPECT_LT(timer.elapsed(), 10'000);
        EXPECT_EQ(check.code, c.reason ? 1 : 0) << check.err;
        if (c.reason) {
            EXPECT_THAT(check.err,
                        StartsWith("tweenc: " + (package + u'/' + entry).toStdString() + ": "));
            EXPECT_THAT(check.err, HasSubstr(c.reason));
        }
        expectCleanAnswers(shop, package, entry.toStdString());
    }
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
        {"canvas",
         [](const QString& path) {
             QFile::rename(path, path + u".real"_s);
             QFile::link(path + u".real"_s, path);
         },
         "is not a regular file"},
        {"preferences",
         [](const QString& path) {
             clear(path);
             QFile::link(u"/dev/zero"_s, path);
         },
         "is not a regular file"},
        {"canvas",
         [](const QString& path) {
             clear(path);
             ::mkfifo(QFile::encodeName(path), 0600);
         },
         "is a named pipe, which has no place in a package"},
        {"images/ball.png/Original.png",
         [](const QString& path) {
             clear(path);
             ::mkfifo(QFile::encodeName(path), 0600);
         },
         "is a named pipe, which has no place in a package"},
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
