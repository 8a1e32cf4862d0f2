#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include "support/test_paths.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

const QString kId = u"org.tweenery.Tweenery"_s;

QString desktopFile(const QString& suffix) {
    return sourcePath(u"resources/desktop/"_s + kId + suffix);
}

QString textOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

TEST(DesktopFiles, AreSoundForTheDesktopsOwnCheckers) {
    const std::vector<QStringList> checks = {
        {u"desktop-file-validate"_s, desktopFile(u".desktop"_s)},
        {u"appstreamcli"_s, u"validate"_s, u"--no-net"_s, desktopFile(u".metainfo.xml"_s)},
    };
    for (const QStringList& check : checks) {
        if (QStandardPaths::findExecutable(check.first()).isEmpty()) {
            GTEST_SKIP() << check.first().toStdString() << " is not installed";
        }
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(check.first(), check.mid(1));
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitCode(), 0) << process.readAll().constData();
    }
}

// The desktop finds icon and name of a window by this id, and says nothing when it differs.
TEST(DesktopFiles, AgreeWithTheProgramOnItsId) {
    EXPECT_TRUE(textOf(sourcePath(u"src/app/main.cpp"_s))
                    .contains(u"setDesktopFileName(u\"%1\"_s)"_s.arg(kId)));
    EXPECT_TRUE(textOf(desktopFile(u".desktop"_s)).contains(u"\nIcon=%1\n"_s.arg(kId)));
    const QString metainfo = textOf(desktopFile(u".metainfo.xml"_s));
    EXPECT_TRUE(metainfo.contains(u"<id>%1</id>"_s.arg(kId)));
    EXPECT_TRUE(metainfo.contains(u">%1.desktop</launchable>"_s.arg(kId)));
    EXPECT_TRUE(metainfo.contains(u"version=\"%1\""_s.arg(QStringLiteral(TWEENERY_VERSION))));
}

}  // namespace
}  // namespace tweenery::test
