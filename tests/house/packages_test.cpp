// The Debian packages of what is built here.

#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "support/test_paths.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

struct Answer {
    int code = -1;
    QString text;
};

Answer run(const QStringList& command, const QString& folder) {
    QProcess process;
    process.setWorkingDirectory(folder);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(command.first(), command.mid(1));
    constexpr int kLongest = 240'000;  // ms
    if (!process.waitForFinished(kLongest)) { return {}; }
    return {process.exitCode(), QString::fromUtf8(process.readAll())};
}

#ifdef __SANITIZE_ADDRESS__
TEST(Packages, DISABLED_HoldWhatIsInstalledWithoutAnErrorOfThePolicy) {
#else
TEST(Packages, HoldWhatIsInstalledWithoutAnErrorOfThePolicy) {
#endif
    if (QStandardPaths::findExecutable(u"lintian"_s).isEmpty()) {
        GTEST_SKIP() << "lintian is not installed";
    }
    const QTemporaryDir folder;
    const Answer made =
        run({u"cpack"_s, u"--config"_s, QStringLiteral(TWEENERY_BINARY_DIR "/CPackConfig.cmake"),
             u"-B"_s, folder.path()},
            folder.path());
    ASSERT_EQ(made.code, 0) << made.text.toStdString();
    const QDir packages(folder.filePath(u"packages"_s));
    const QStringList files = packages.entryList({u"*.deb"_s}, QDir::Files, QDir::Name);
    ASSERT_EQ(files.size(), 2) << made.text.toStdString();

    const Answer opinion =
        run(QStringList{u"lintian"_s, u"--fail-on"_s, u"error"_s} + files, packages.path());
    EXPECT_EQ(opinion.code, 0) << opinion.text.toStdString();
    struct Case {
        const char* package;
        const char* entry;
    };
    const Case entries[] = {
        {"tweenc_", "./usr/bin/tweenc\n"},
        {"tweenc_", "./usr/share/man/man1/tweenc.1.gz\n"},
        {"tweenc_", "./usr/share/bash-completion/completions/tweenc\n"},
        {"tweenc_", "./usr/share/zsh/vendor-completions/_tweenc\n"},
        {"tweenc_", "./usr/share/fish/vendor_completions.d/tweenc.fish\n"},
        {"tweenery_", "./usr/bin/tweenery\n"},
        {"tweenery_", "./usr/share/applications/org.tweenery.Tweenery.desktop\n"},
        {"tweenery_", "./usr/share/doc/tweenery/guide/index.html\n"},
        {"tweenery_", "./usr/share/man/man1/tweenery.1.gz\n"},
    };
    for (const Case& item : entries) {
        const QString file = files.filter(QLatin1StringView(item.package)).value(0);
        EXPECT_TRUE(run({u"dpkg-deb"_s, u"--contents"_s, file}, packages.path())
                        .text.contains(QLatin1StringView(item.entry)))
            << item.entry;
    }
    // The tool comes without the libraries of windows.
    const QString tool = files.filter(u"tweenc_"_s).value(0);
    const QString needs =
        run({u"dpkg-deb"_s, u"--field"_s, tool, u"Depends"_s}, packages.path()).text;
    EXPECT_TRUE(needs.contains(u"libqt6core6"_s)) << needs.toStdString();
    EXPECT_FALSE(needs.contains(u"libqt6widgets6"_s)) << needs.toStdString();
}

}  // namespace
}  // namespace tweenery::test
