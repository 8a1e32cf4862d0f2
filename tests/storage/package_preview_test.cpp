#include "storage/package_preview.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <functional>

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

QByteArray jpegOfSize(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::green);
    QBuffer buffer;
    image.save(&buffer, "JPEG");
    return buffer.data();
}

void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(path);
    file.write(bytes);
}

TEST(PackagePreview, IsARegularPictureOfTheRightSizeOrNone) {
    struct Case {
        const char* what;
        std::function<void(const QString& file)> make;
        QSize size;
    };
    const QTemporaryDir elsewhere;
    const QString real = elsewhere.filePath(u"real.jpg"_s);
    write(real, jpegOfSize(200, 150));
    const std::vector<Case> cases = {
        {"a picture", [](const QString& file) { write(file, jpegOfSize(200, 150)); }, {200, 150}},
        {"none", [](const QString&) {}, {0, 0}},
        {"too wide", [](const QString& file) { write(file, jpegOfSize(1025, 10)); }, {0, 0}},
        {"garbage", [](const QString& file) { write(file, "no picture"); }, {0, 0}},
        {"cut", [](const QString& file) { write(file, jpegOfSize(200, 150).first(300)); }, {0, 0}},
        {"too many bytes",
         [](const QString& file) { write(file, jpegOfSize(200, 150) + QByteArray(2 << 20, '\0')); },
         {0, 0}},
        {"a link", [&real](const QString& file) { QFile::link(real, file); }, {0, 0}},
        {"a pipe", [](const QString& file) { ::mkfifo(QFile::encodeName(file), 0600); }, {0, 0}},
        {"a folder", [](const QString& file) { QDir().mkpath(file); }, {0, 0}},
    };
    for (const Case& c : cases) {
        const QTemporaryDir package;
        QDir(package.path()).mkdir(u"QuickLook"_s);
        c.make(package.filePath(u"QuickLook/Preview_Thumbnail@2x.jpg"_s));
        EXPECT_EQ(packagePreview(package.path()).size(), c.size) << c.what;
    }
    EXPECT_TRUE(packagePreview(u"/does/not/exist"_s).isNull());
}

TEST(PackagePreview, IsNotReadThroughALinkInsideThePackage) {
    const QTemporaryDir elsewhere;
    write(elsewhere.filePath(u"Preview_Thumbnail@2x.jpg"_s), jpegOfSize(20, 20));
    const QTemporaryDir package;
    QFile::link(elsewhere.path(), package.filePath(u"QuickLook"_s));
    EXPECT_TRUE(packagePreview(package.path()).isNull());
    const QString link = elsewhere.filePath(u"Link.tweenery"_s);
    QFile::remove(package.filePath(u"QuickLook"_s));
    QDir(package.path()).mkdir(u"QuickLook"_s);
    write(package.filePath(u"QuickLook/Preview_Thumbnail@2x.jpg"_s), jpegOfSize(20, 20));
    QFile::link(package.path(), link);
    EXPECT_EQ(packagePreview(link).size(), QSize(20, 20)) << "the package itself may be a link";
}

}  // namespace
}  // namespace tweenery::test
