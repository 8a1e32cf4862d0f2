// What the documents promise: every example runs as it stands, and every option is told.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <filesystem>

#include "support/test_paths.h"
#include "tweenc_runner.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

QString document() {
    return QString::fromUtf8(contentsOf(sourcePath(u"docs/tweenc.md"_s)));
}

QStringList examples() {
    static const QRegularExpression block(u"```sh\n(.*?)```"_s,
                                          QRegularExpression::DotMatchesEverythingOption);
    QStringList lines;
    for (const QRegularExpressionMatch& match : block.globalMatch(document())) {
        lines += match.captured(1).split(u'\n', Qt::SkipEmptyParts);
    }
    return lines;
}

TEST(Documents, HaveExamplesThatRun) {
    Workshop shop;
    const QString samples = shop.path(u"samples"_s);
    std::filesystem::copy(sourcePath(u"samples"_s).toStdString(), samples.toStdString(),
                          std::filesystem::copy_options::recursive);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString folder = QFileInfo(QStringLiteral(TWEENERY_TWEENC)).path();
    environment.insert(u"PATH"_s, folder + u':' + environment.value(u"PATH"_s));
    const QStringList commands = examples();
    ASSERT_GE(commands.size(), 15);
    for (const QString& command : commands) {
        QProcess shell;
        shell.setProcessEnvironment(environment);
        shell.setWorkingDirectory(samples);
        shell.start(u"sh"_s, {u"-c"_s, command});
        ASSERT_TRUE(shell.waitForFinished(60'000));
        EXPECT_EQ(shell.exitCode(), 0) << qPrintable(command) << '\n'
                                       << shell.readAllStandardError().toStdString();
    }
    for (const char* file : {"objc/BounceView.h", "objc/BounceView.m", "swift/BounceView.swift",
                             "pictures/300.png", "pictures/bounce.json", "pictures/idle.apng",
                             "pictures/bounce.gif", "Sky.tweenery/version"}) {
        EXPECT_TRUE(QFileInfo::exists(samples + u'/' + QString::fromLatin1(file))) << file;
    }
    // What the lines for an app call is there.
    const QByteArray header = contentsOf(samples + u"/objc/BounceView.h"_s);
    EXPECT_TRUE(header.contains("addBounceAnimationWithCompletion:(void (^)(BOOL finished))"));
    const QByteArray swift = contentsOf(samples + u"/swift/BounceView.swift"_s);
    EXPECT_TRUE(
        swift.contains("func addBounceAnimation(completion: (@MainActor (Bool) -> Void)?)"));
}

TEST(Documents, TellEveryOptionAndItsVerbs) {
    static const QRegularExpression option(u"--[a-z-]+"_s);
    const QString text = document();
    for (const QString& verb : {u"info"_s, u"check"_s, u"export"_s, u"render"_s, u"values"_s,
                                u"describe"_s, u"dump"_s, u"copy"_s, u"update"_s, u"new"_s}) {
        const QString help =
            QString::fromStdString(tweenc({verb, u"--help"_s}).out).section(u"Options:"_s, 1);
        for (const QString& line : help.split(u'\n', Qt::SkipEmptyParts)) {
            const QString name = option.match(line).captured();
            const QRegularExpression row(
                u"\\| .*%1\\b.*\\| .*`%2`"_s.arg(QRegularExpression::escape(name), verb));
            EXPECT_TRUE(text.contains(row)) << qPrintable(verb + u' ' + name);
        }
    }
}

}  // namespace
}  // namespace tweenery::test
