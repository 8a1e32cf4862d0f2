// What comes from outside and is no good: the user is told, nothing is lost, the window goes on.

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QMimeData>

#include "ui/window/window_scene.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

// As chunks of a PNG end with it (CRC-32).
quint32 checksum(const QByteArray& bytes) {
    quint32 sum = ~0U;
    for (const char byte : bytes) {
        sum ^= static_cast<uchar>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum >> 1) ^ ((sum & 1) ? 0xedb88320U : 0U);
        }
    }
    return ~sum;
}

// Signature and header of a PNG of that size, and no pixels.
QByteArray pngHeader(quint32 width, quint32 height) {
    QByteArray chunk("IHDR");
    for (const quint32 number : {width, height}) {
        for (const int shift : {24, 16, 8, 0}) {
            chunk += static_cast<char>(number >> shift);
        }
    }
    chunk += QByteArray("\x08\x06\0\0\0", 5);
    QByteArray file("\x89PNG\r\n\x1a\n\0\0\0\x0d", 12);
    file += chunk;
    for (const int shift : {24, 16, 8, 0}) {
        file += static_cast<char>(checksum(chunk) >> shift);
    }
    return file;
}

class WindowFaults : public testing::Test {
 protected:
    WindowScene scene{"A"};

    QString write(const QString& name, const QByteArray& bytes) const {
        QFile file(scene.folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        return file.fileName();
    }
    QString writePicture(const QString& name) const {
        QImage picture(8, 8, QImage::Format_ARGB32);
        picture.fill(Qt::blue);
        return write(name, encodeImage(picture, ImageFormat::Png));
    }
    // As a drag from a file manager ends.
    void drop(const QStringList& paths) {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& path : paths) {
            urls << QUrl::fromLocalFile(path);
        }
        data.setUrls(urls);
        QWidget* canvas = scene.window->canvas().viewport();
        const QPoint place = canvas->rect().center();
        QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(canvas, &enter);
        if (!enter.isAccepted()) { return; }
        QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(canvas, &event);
        QCoreApplication::processEvents();
    }
    std::string tree() { return treeText(*scene.project().canvas()); }
};

TEST_F(WindowFaults, FilesThatAreNoPicturesAreNamedAndLeaveNothing) {
    const struct {
        const char* what;
        QString path;
    } cases[] = {
        {"0 bytes", write(u"empty@2x.png"_s, {})},
        {"no picture", write(u"text@2x.png"_s, "This is no picture.")},
        {"30,000 by 30,000", write(u"huge@2x.png"_s, pngHeader(30'000, 30'000))},
        {"cut off", write(u"cut@2x.png"_s, pngHeader(10, 10))},
        {"gone", scene.folder.filePath(u"gone@2x.png"_s)},
        {"a folder", scene.folder.filePath(u"folder@2x.png"_s)},
    };
    QDir(scene.folder.path()).mkdir(u"folder@2x.png"_s);
    for (const auto& [what, path] : cases) {
        SCOPED_TRACE(what);
        scene.alerts.shown.clear();
        scene.alerts.answers = {0};
        QElapsedTimer time;
        time.start();
        drop({path});
        EXPECT_LT(time.elapsed(), 1000);
        ASSERT_EQ(scene.alerts.shown.size(), 1U);
        EXPECT_EQ(scene.alerts.shown[0].message, u"An Image Could Not Be Imported");
        EXPECT_TRUE(
            scene.alerts.shown[0].informativeText.startsWith(QFileInfo(path).fileName() + u' '))
            << scene.alerts.shown[0].informativeText.toStdString();
        EXPECT_EQ(tree(), "A");
        EXPECT_FALSE(scene.project().undoManager().canUndo());
    }
}

TEST_F(WindowFaults, GoodPicturesComeInBesideBadOnes) {
    scene.alerts.answers = {0};
    drop({writePicture(u"one@2x.png"_s), write(u"bad@2x.png"_s, "bad"),
          writePicture(u"two@2x.png"_s)});
    EXPECT_EQ(scene.project().canvas()->children().size(), 3U);
    ASSERT_EQ(scene.alerts.shown.size(), 1U);
    EXPECT_TRUE(scene.alerts.shown[0].informativeText.startsWith(u"bad@2x.png "));
    scene.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(tree(), "A");
}

TEST_F(WindowFaults, FoldersAreNotTaken) {
    QDir(scene.folder.path()).mkdir(u"artwork"_s);
    drop({scene.folder.filePath(u"artwork"_s)});
    EXPECT_EQ(tree(), "A");
    EXPECT_TRUE(scene.opened.isEmpty());
    EXPECT_FALSE(scene.project().undoManager().canUndo());
}

TEST_F(WindowFaults, FiveHundredFilesAreOneStep) {
    QStringList files;
    for (int i = 0; i < 500; ++i) {
        files << writePicture(u"picture %1@2x.png"_s.arg(i));
    }
    drop(files);
    EXPECT_EQ(scene.project().canvas()->children().size(), 501U);
    scene.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(tree(), "A");
    EXPECT_FALSE(scene.project().undoManager().canUndo());
}

TEST_F(WindowFaults, GarbageOnTheClipboardIsRefused) {
    const QString type = PCElement::pasteboardType();
    const std::string before = exactState(*scene.project().canvas());
    const QVariantList garbage[] = {
        {QVariant(u"no list"_s)},
        {QVariant(QByteArray("bplist00 and then nothing"))},
        {QVariant(QVariantMap{{u"name"_s, 12}, {u"$objects"_s, QVariantList{1, 2, 3}}})},
        {QVariant(), QVariant(QByteArray(100'000, '\xff'))},
    };
    for (const QVariantList& lists : garbage) {
        std::vector<PasteboardItem> items;
        for (const QVariant& list : lists) {
            items.push_back({type, list});
        }
        scene.clipboard.write(items);
        scene.alerts.shown.clear();
        scene.alerts.answers = {0};
        scene.key(Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(exactState(*scene.project().canvas()), before);
        EXPECT_FALSE(scene.project().undoManager().canUndo());
        EXPECT_EQ(scene.alerts.shown.size(), 1U) << "never silence";
    }
}

}  // namespace
}  // namespace tweenery::test
