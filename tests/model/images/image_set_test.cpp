#include <gtest/gtest.h>

#include "base/errors.h"
#include "model/images/image_set_manager.h"
#include "support/artwork_files.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

std::shared_ptr<PCImage> named(const QString& filename, int width = 30, int height = 30) {
    return std::make_shared<PCImage>(quartered(width, height), filename);
}

std::shared_ptr<PCImage> imported(const QByteArray& data, const QString& filename) {
    return PCImage::pcimageWithData(data, filename);
}

class ImageSetTest : public testing::Test {
 protected:
    /// The files of a set with the sizes that their bytes hold. All must show what was imported.
    QStringList filesOf(const QString& name) const {
        QStringList files;
        for (const auto& [file, node] : root->child(u"images"_s)->child(name)->fileWrappers()) {
            const QSize size = encodedImageSize(node->contents(), file);
            files << u"%1 %2x%3"_s.arg(file).arg(size.width()).arg(size.height());
            const QImage shown = decodeImage(node->contents(), file);
            EXPECT_EQ(quartersOf(shown), u"rgbw"_s) << qPrintable(file);
            EXPECT_EQ(node->contents().startsWith("\x89PNG"), file.endsWith(u".png"_s));
        }
        return files;
    }
    QByteArray bytesOf(const QString& name, const QString& file) const {
        return root->child(u"images"_s)->child(name)->child(file)->contents();
    }
    FileWrapper::Ptr addDirectory(const QString& name) {
        return root->child(u"images"_s)->pc_ensureSubfileWrapperDirectoryExistsWithName(name);
    }

    FileWrapper::Ptr root = FileWrapper::directory();
    PCImageSetManager manager{root};
};

TEST(Image, ItsNameTellsDensityFormatAndSet) {
    struct Case {
        QString given, filename, basename, extension, keyname;
        int density;
    };
    const std::vector<Case> cases = {
        {u"Logo@2X.PNG"_s, u"Logo@2X.PNG"_s, u"Logo"_s, u"png"_s, u"Logo.png"_s, 2},
        {u"photo.jpeg"_s, u"photo.jpeg"_s, u"photo"_s, u"jpg"_s, u"photo.jpg"_s, 1},
        {u"a/b/c@3x.JPG"_s, u"c@3x.JPG"_s, u"c"_s, u"jpg"_s, u"c.jpg"_s, 3},
        {u"../../etc/x.png/"_s, u"x.png"_s, u"x"_s, u"png"_s, u"x.png"_s, 1},
        {u"pic.GIF"_s, u"pic.GIF"_s, u"pic"_s, u"GIF"_s, u"pic.GIF"_s, 1},
        {u"two.dots@2x.png"_s, u"two.dots@2x.png"_s, u"two.dots"_s, u"png"_s, u"two.dots.png"_s, 2},
        {u"no2x.png"_s, u"no2x.png"_s, u"no2x"_s, u"png"_s, u"no2x.png"_s, 1},
        {u"@2x.png"_s, u"@2x.png"_s, u""_s, u"png"_s, u".png"_s, 2},
        {u".png"_s, u".png"_s, u".png"_s, u""_s, u".png."_s, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(qPrintable(c.given));
        const auto image = named(c.given);
        EXPECT_EQ(image->filename(), c.filename);
        EXPECT_EQ(image->basename(), c.basename);
        EXPECT_EQ(image->extension(), c.extension);
        EXPECT_EQ(image->keyname(), c.keyname);
        EXPECT_EQ(image->is2X(), c.density == 2);
        EXPECT_EQ(image->is3X(), c.density == 3);
    }
    EXPECT_TRUE(named(u"pic.gif"_s)->dataRepresentation().isNull());
}

TEST(Image, TravelsOverThePasteboard) {
    const auto image = named(u"logo@2x.png"_s, 7, 5);
    const QVariantMap list = image->pasteboardPropertyListForType(PCImage::pasteboardType);
    EXPECT_EQ(list.keys(), QStringList({u"PCImage_Data"_s, u"PCImage_Filename"_s}));
    const auto pasted = PCImage::imageWithPasteboardPropertyList(list, PCImage::pasteboardType);
    EXPECT_EQ(pasted->filename(), u"logo@2x.png"_s);
    EXPECT_EQ(pasted->image(), image->image());

    EXPECT_TRUE(image->pasteboardPropertyListForType(u"public.png"_s).isEmpty());
    QVariantMap noName = list;
    noName.remove(u"PCImage_Filename"_s);
    QVariantMap noImage = list;
    noImage[u"PCImage_Data"_s] = QByteArray("noise");
    for (const QVariantMap& bad : {QVariantMap(), noName, noImage}) {
        EXPECT_THROW(PCImage::imageWithPasteboardPropertyList(bad, PCImage::pasteboardType),
                     InputError);
    }
}

TEST_F(ImageSetTest, AnImportWritesTheRenditionsOfItsDensity) {
    struct Case {
        std::shared_ptr<PCImage> image;
        QString name;
        QStringList files;
    };
    const std::vector<Case> cases = {
        {named(u"a.png"_s, 300, 150),
         u"a.png"_s,
         {u"100x100.png 100x50"_s, u"100x100@2x.png 200x100"_s, u"44x44.png 44x22"_s,
          u"44x44@2x.png 88x44"_s, u"Original.png 300x150"_s}},
        {named(u"b@2x.jpeg"_s, 301, 601),
         u"b.jpg"_s,
         {u"100x100.jpg 50x100"_s, u"100x100@2x.jpg 100x200"_s, u"44x44.jpg 22x44"_s,
          u"44x44@2x.jpg 44x88"_s, u"Original.jpg 150x300"_s, u"Original@2x.jpg 301x601"_s}},
        {named(u"c@3x.png"_s, 300, 300),
         u"c.png"_s,
         {u"100x100.png 100x100"_s, u"100x100@2x.png 200x200"_s, u"44x44.png 44x44"_s,
          u"44x44@2x.png 88x88"_s, u"Original.png 100x100"_s, u"Original@2x.png 200x200"_s,
          u"Original@3x.png 300x300"_s}},
        {named(u"d@3x.png"_s, 100, 98),
         u"d.png"_s,
         {u"100x100.png 100x96"_s, u"100x100@2x.png 200x193"_s, u"44x44.png 44x42"_s,
          u"44x44@2x.png 88x85"_s, u"Original.png 33x32"_s, u"Original@2x.png 66x65"_s,
          u"Original@3x.png 100x98"_s}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(qPrintable(c.name));
        const auto set = manager.addImageSetWithPCImage(c.image);
        EXPECT_EQ(set->name(), c.name);
        EXPECT_EQ(filesOf(c.name), c.files);
        EXPECT_EQ(set->has2XArtwork(), c.image->is2X() || c.image->is3X());
        EXPECT_EQ(set->has3XArtwork(), c.image->is3X());
        EXPECT_EQ(set->size(), set->originalImage()->size());
        EXPECT_EQ(quartersOf(set->originalImage()->image()), u"rgbw"_s);
    }
    const QImage stored = decodeImage(bytesOf(u"a.png"_s, u"Original.png"_s), u"a"_s);
    EXPECT_EQ(stored, quartered(300, 150)) << "to the pixel";
}

TEST_F(ImageSetTest, ArtworkThatIsStoredAsItCameKeepsItsBytes) {
    const QByteArray png = encodeImage(quartered(60, 30), ImageFormat::Png);
    const QByteArray deep = encodeImage(deepArtwork(60, 30), ImageFormat::Png);
    const QByteArray jpeg = encodeImage(quartered(60, 30), ImageFormat::Jpeg, 80);
    struct Case {
        const char* what;
        QByteArray data;
        QString filename, set, artwork;
        bool keeps;
    };
    const std::vector<Case> cases = {
        {"png", png, u"a.png"_s, u"a.png"_s, u"Original.png"_s, true},
        {"16 bits", deep, u"b@2x.PNG"_s, u"b.png"_s, u"Original@2x.png"_s, true},
        {"jpeg", jpeg, u"c@3x.jpeg"_s, u"c.jpg"_s, u"Original@3x.jpg"_s, true},
        {"jpeg with a name of a png", jpeg, u"d.png"_s, u"d.png"_s, u"Original.png"_s, false},
        {"turned photo", withOrientation(jpeg, 6), u"e.jpg"_s, u"e.jpg"_s, u"Original.jpg"_s,
         false},
        {"interlaced", interlacedPng(Qt::red), u"f.png"_s, u"f.png"_s, u"Original.png"_s, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const auto image = imported(c.data, c.filename);
        manager.addImageSetWithPCImage(image);
        const QByteArray stored = bytesOf(c.set, c.artwork);
        EXPECT_EQ(stored == c.data, c.keeps);
        EXPECT_EQ(imported(stored, c.artwork)->size(), image->size());
        const QVariantMap list = image->pasteboardPropertyListForType(PCImage::pasteboardType);
        EXPECT_EQ(list[u"PCImage_Data"_s].toByteArray(), stored);
    }
    EXPECT_EQ(manager.imageSetWithName(u"e.jpg"_s)->size(), QSize(30, 60)) << "upright";
    EXPECT_EQ(quartersOf(manager.imageWithName(u"e.jpg"_s, 1)), u"brwg"_s);
}

TEST_F(ImageSetTest, ArtworkOf16BitsKeepsThemInAllDensities) {
    QImage flat(90, 60, QImage::Format_RGBA64);
    flat.fill(QColor::fromRgba64(0x1234, 0x5678, 0x9abc));
    manager.addImageSetWithPCImage(imported(encodeImage(flat, ImageFormat::Png), u"deep@3x.png"_s));
    for (const QString& file : {u"Original.png"_s, u"Original@2x.png"_s, u"Original@3x.png"_s}) {
        const QImage stored = decodeArtwork(bytesOf(u"deep.png"_s, file), file).image;
        EXPECT_EQ(stored.pixelColor(5, 5), flat.pixelColor(5, 5)) << qPrintable(file);
    }
    EXPECT_EQ(manager.imageWithName(u"deep.png"_s, 2).format(),
              QImage::Format_ARGB32_Premultiplied);
}

TEST_F(ImageSetTest, ScreensGetTwoDensitiesAndNeverTheThird) {
    manager.addImageSetWithPCImage(named(u"three@3x.png"_s, 30, 30));
    manager.addImageSetWithPCImage(named(u"one.png"_s, 30, 30));
    struct Case {
        QString name;
        double scale;
        QSize size;
    };
    const std::vector<Case> cases = {
        {u"three.png"_s, 1, {10, 10}}, {u"three.png"_s, 2, {20, 20}},
        {u"three.png"_s, 3, {10, 10}}, {u"three.png"_s, 1.5, {10, 10}},
        {u"one.png"_s, 2, {30, 30}},   {u"none.png"_s, 1, {0, 0}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(manager.imageWithName(c.name, c.scale).size(), c.size)
            << qPrintable(c.name) << " at " << c.scale;
    }
}

TEST_F(ImageSetTest, AddsReplacesAndDeletesInTheTree) {
    manager.addImageSetWithPCImage(named(u"logo.png"_s));
    manager.addImageSetWithPCImage(named(u"logo.jpg"_s));
    EXPECT_THROW(manager.addImageSetWithPCImage(named(u"logo@2x.png"_s)), AssertionFailure);
    const auto old = manager.imageSetWithName(u"logo.png"_s);

    manager.addOrReplaceImageSetWithPCImage(named(u"logo@2x.png"_s, 40, 40));
    EXPECT_NE(manager.imageSetWithName(u"logo.png"_s), old);
    EXPECT_EQ(manager.imageSetWithName(u"logo.png"_s)->size(), QSize(20, 20));
    EXPECT_EQ(old->size(), QSize(30, 30)) << "a replaced set stays readable";
    EXPECT_EQ(manager.allImageSets().size(), 2);
    EXPECT_EQ(manager.allImageSets().front()->name(), u"logo.jpg"_s);

    const auto deleted = manager.deleteImageSetWithName(u"logo.png"_s);
    EXPECT_EQ(deleted->artwork2XName(), u"logo@2x.png"_s);
    EXPECT_FALSE(manager.imageSetExistsWithName(u"logo.png"_s));
    EXPECT_EQ(root->child(u"images"_s)->child(u"logo.png"_s), nullptr);
    EXPECT_EQ(manager.deleteImageSetWithName(u"logo.png"_s), nullptr);
}

TEST_F(ImageSetTest, RefusesNamesThatGiveNoSetAndChangesNothing) {
    root->child(u"images"_s)->pc_replaceSubFileWrapperNamed(u"file.png"_s, "in the way");
    const QStringList refused = {u"pic.gif"_s,
                                 u"noextension"_s,
                                 u"@2x.png"_s,
                                 u""_s,
                                 u".png"_s,
                                 u"file.png"_s,
                                 QString(300, u'x') + u".png"_s,
                                 u"nul\0l.png"_s};
    for (const QString& filename : refused) {
        EXPECT_THROW(manager.addImageSetWithPCImage(named(filename)), InputError)
            << qPrintable(filename);
        EXPECT_THROW(manager.addOrReplaceImageSetWithPCImage(named(filename)), InputError);
    }
    EXPECT_EQ(root->child(u"images"_s)->fileWrappers().size(), 1);
    EXPECT_TRUE(manager.allImageSets().empty());
}

TEST_F(ImageSetTest, ReadsWhatADirectoryHoldsAndDecodesOnDemand) {
    const QByteArray png = encodeImage(quartered(8, 4), ImageFormat::Png);
    const auto directory = addDirectory(u"odd.png"_s);
    directory->pc_replaceSubFileWrapperNamed(u"Original.png"_s, png.chopped(20));
    directory->pc_replaceSubFileWrapperNamed(u"Original@2x.jpg"_s, png);
    directory->pc_replaceSubFileWrapperNamed(u"100x100.png"_s, png);
    directory->addFileWrapper(FileWrapper::symbolicLink("/etc/passwd", u"44x44.png"_s));
    directory->addFileWrapper(FileWrapper::directory(u"Original@3x.png"_s));
    addDirectory(u"empty.png"_s);
    root->child(u"images"_s)->pc_replaceSubFileWrapperNamed(u"loose.png"_s, png);

    PCImageSetManager reopened(root);
    ASSERT_EQ(reopened.allImageSets().size(), 2) << "files are no sets";
    const auto odd = reopened.imageSetWithName(u"odd.png"_s);
    EXPECT_EQ(odd->size(), QSize(8, 4)) << "the header is there, the pixels are not asked for";
    EXPECT_EQ(odd->mediumImage()->size(), QSize(8, 4));
    EXPECT_EQ(odd->mediumImage(), odd->mediumImage()) << "decoded once";
    EXPECT_FALSE(odd->has2XArtwork()) << "another format than the 1x artwork";
    EXPECT_FALSE(odd->original2xData().isNull());
    EXPECT_EQ(odd->smallImage(), nullptr) << "a link is not followed";
    EXPECT_FALSE(odd->has3XArtwork());
    try {
        odd->originalImage();
        ADD_FAILURE() << "a damaged image was decoded";
    } catch (const InputError& error) {
        EXPECT_EQ(error.entry(), u"images/odd.png/Original.png"_s);
    }

    const auto empty = reopened.imageSetWithName(u"empty.png"_s);
    EXPECT_EQ(empty->size(), QSize(0, 0));
    EXPECT_TRUE(empty->originalData().isNull());
    EXPECT_TRUE(reopened.imageWithName(u"empty.png"_s, 2).isNull());
    EXPECT_EQ(reopened.debugDescription(),
              u"<PCImageManager (imagesCount:2)>"
              "\n\tempty.png (size:<0.00x0.00>, empty.png)"
              "\n\todd.png (size:<8.00x4.00>, odd.png)"
              "\n/PCImageManager>"_s);
}

}  // namespace
}  // namespace tweenery::test
