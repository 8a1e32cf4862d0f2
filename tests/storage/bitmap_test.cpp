#include "storage/bitmap.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QColorSpace>
#include <QImageWriter>
#include <QtEndian>

#include "base/errors.h"
#include "support/artwork_files.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

QImage picture(int width, int height) {
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    for (int x = 0; x < width / 2; ++x) {
        for (int y = 0; y < height; ++y) {
            image.setPixelColor(x, y, QColor(200, 40, 90));
        }
    }
    return image;
}

/// A PNG header that claims a size, with a right checksum and no pixels.
QByteArray pngClaiming(quint32 width, quint32 height) {
    QByteArray png = encodeImage(picture(2, 2), ImageFormat::Png);
    qToBigEndian(width, png.data() + 16);
    qToBigEndian(height, png.data() + 20);
    repairHeaderChecksum(png);
    return png;
}

TEST(Bitmap, EncodesAndDecodesBothFormats) {
    const QImage image = picture(31, 17);
    EXPECT_EQ(decodeImage(encodeImage(image, ImageFormat::Png), u"a.png"_s), image);

    const QByteArray jpeg = encodeImage(image, ImageFormat::Jpeg);
    EXPECT_EQ(encodedImageSize(jpeg, u"a.png"_s), image.size()) << "the content decides";
    const QImage decoded = decodeImage(jpeg, u"a.png"_s);
    EXPECT_EQ(decoded.format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_GT(decoded.pixelColor(30, 8).lightness(), 240) << "alpha lies over white";
    EXPECT_NEAR(decoded.pixelColor(4, 8).red(), 200, 20);
    EXPECT_LT(encodeImage(image, ImageFormat::Jpeg, 0).size(), jpeg.size());
}

TEST(Bitmap, RefusesWhatIsNoSoundImage) {
    const QByteArray png = encodeImage(picture(40, 40), ImageFormat::Png);
    const QByteArray jpeg = encodeImage(picture(40, 40), ImageFormat::Jpeg);
    QByteArray flipped = png;
    flipped[png.size() - 20] = static_cast<char>(flipped[png.size() - 20] ^ 0x55);
    struct Case {
        const char* what;
        QByteArray data;
        const char* reason;
    };
    const std::vector<Case> cases = {
        {"nothing", {}, "neither"},
        {"text", "an image, honestly", "neither"},
        {"svg", "<svg xmlns='http://www.w3.org/2000/svg' width='4' height='4'/>", "neither"},
        {"gif", QByteArray::fromHex("47494638396101000100800000ffffff0000002c"), "neither"},
        {"a png's signature alone", png.left(8), "header"},
        {"a png chunk beyond the end", png.left(33) + QByteArray(12, '\x7f'), "missing"},
        {"half a png", png.left(png.size() / 2), "damaged"},
        {"a png with a flipped byte", flipped, "damaged"},
        {"a jpeg's start alone", jpeg.left(4), "header"},
        {"half a jpeg", jpeg.left(jpeg.size() / 2), "missing"},
        {"a jpeg without its last bytes", jpeg.chopped(10), "missing"},
        {"a jpeg segment beyond the end", QByteArray::fromHex("ffd8ffe0fffe4a46"), "header"},
        {"100,000 by 100,000 pixels", pngClaiming(100000, 100000), "too large"},
        {"16,385 by 1 pixels", pngClaiming(16385, 1), "too large"},
        {"8,192 by 8,192 pixels", pngClaiming(8192, 8192), "too large"},
        {"no pixels", pngClaiming(0, 5), "header"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        try {
            decodeImage(c.data, u"images/x.png"_s);
            ADD_FAILURE() << "was decoded";
        } catch (const InputError& error) {
            EXPECT_EQ(error.entry(), u"images/x.png"_s);
            EXPECT_TRUE(error.reason().contains(QLatin1StringView(c.reason)))
                << qPrintable(error.reason());
        }
    }
}

TEST(Bitmap, KeepsAllSamplesOfArtwork) {
    QImage faint(4, 4, QImage::Format_ARGB32);
    faint.fill(QColor(10, 200, 31, 3));
    QImage gray(9, 9, QImage::Format_Grayscale16);
    gray.fill(QColor::fromRgba64(0x1234, 0x1234, 0x1234));
    QImage wide = deepArtwork(8, 8);
    wide.setColorSpace(QColorSpace::DisplayP3);
    QImage linearGray = picture(6, 6).convertToFormat(QImage::Format_Grayscale8);
    linearGray.setColorSpace(QColorSpace::SRgbLinear);
    for (const QImage& image : {faint, gray, wide, deepArtwork(31, 17)}) {
        const QByteArray png = encodeImage(image, ImageFormat::Png);
        const Artwork artwork = decodeArtwork(png, u"a.png"_s);
        EXPECT_EQ(artwork.image, image) << image.format();
        EXPECT_EQ(artwork.image.colorSpace(), image.colorSpace());
        EXPECT_EQ(artwork.encoded, png);
    }
    const QImage colored =
        decodeArtwork(encodeImage(linearGray, ImageFormat::Png), u"a.png"_s).image;
    EXPECT_EQ(colored.colorSpace().transferFunction(), QColorSpace::TransferFunction::Linear);
    EXPECT_EQ(colored.pixel(0, 0), linearGray.pixel(0, 0));

    QImage flat(40, 20, QImage::Format_RGBA64);
    flat.fill(QColor::fromRgba64(0x1234, 0x5678, 0x9abc));
    flat.setColorSpace(QColorSpace::DisplayP3);
    const QImage half = imageFitted(flat, {20, 10});
    const Artwork stored = decodeArtwork(encodeImage(half, ImageFormat::Png), u"a.png"_s);
    EXPECT_EQ(stored.image.pixelColor(9, 5), flat.pixelColor(9, 5)) << "scaled with 16 bits";
    EXPECT_EQ(stored.image.colorSpace(), flat.colorSpace());
}

TEST(Bitmap, DrawsColorsOfOtherSpacesAsSrgb) {
    struct Case {
        const char* what;
        QColorSpace space;
        QColor stored, drawn;
    };
    const Case cases[] = {
        {"of none", {}, {55, 55, 55, 100}, {55, 55, 55, 100}},
        {"sRGB", QColorSpace::SRgb, {55, 128, 200}, {55, 128, 200}},
        // 255 * (1.055 * (55 / 255)^(1 / 2.4) - 0.055) = 128
        {"linear", QColorSpace::SRgbLinear, {55, 0, 255}, {128, 0, 255}},
        {"linear with alpha", QColorSpace::SRgbLinear, {55, 0, 255, 51}, {128, 0, 255, 51}},
        // What a file says that is meant as sRGB, but cannot say so.
        {"gamma 2.2", {QColorSpace::Primaries::SRgb, 2.2F}, {12, 128, 200}, {12, 128, 200}},
        // 255 * (1.055 * (128 / 255)^(1.8 / 2.4) - 0.055) = 146
        {"gamma 1.8", {QColorSpace::Primaries::SRgb, 1.8F}, {128, 0, 255}, {146, 0, 255}},
        {"gray of a wide gamut", QColorSpace::DisplayP3, {90, 90, 90}, {90, 90, 90}},
        {"red that sRGB cannot show", QColorSpace::DisplayP3, {255, 0, 0}, {255, 0, 0}},
    };
    for (const Case& row : cases) {
        for (const auto format : {QImage::Format_ARGB32, QImage::Format_RGBA64}) {
            QImage image(3, 3, format);
            image.fill(row.stored);
            image.setColorSpace(row.space);
            const QByteArray png = encodeImage(image, ImageFormat::Png);
            const QImage drawn = decodeImage(png, u"a.png"_s);
            EXPECT_EQ(drawn.format(), QImage::Format_ARGB32_Premultiplied);
            EXPECT_FALSE(drawn.colorSpace().isValid());
            const QColor found = drawn.pixelColor(1, 1);
            EXPECT_EQ(found.alpha(), row.drawn.alpha()) << row.what;
            EXPECT_NEAR(found.red(), row.drawn.red(), 3) << row.what;
            EXPECT_NEAR(found.green(), row.drawn.green(), 3) << row.what;
            EXPECT_NEAR(found.blue(), row.drawn.blue(), 3) << row.what;
        }
    }
}

TEST(Bitmap, APhotoStandsAsItsCameraWasHeld) {
    // The quarters of a picture stored as "rgbw", once it is turned: mirrored, upside down, and
    // from 5 on with rows and columns exchanged.
    constexpr const char* kTurned[] = {"rgbw", "grwb", "wbgr", "bwrg",
                                       "rbgw", "brwg", "wgbr", "gwrb"};
    const QByteArray jpeg = encodeImage(quartered(64, 32), ImageFormat::Jpeg, 100);
    for (char orientation = 1; orientation <= 8; ++orientation) {
        SCOPED_TRACE(int{orientation});
        const QByteArray photo = withOrientation(jpeg, orientation);
        const Artwork artwork = decodeArtwork(photo, u"p.jpg"_s);
        EXPECT_EQ(artwork.image.size(), orientation >= 5 ? QSize(32, 64) : QSize(64, 32));
        EXPECT_EQ(artwork.encoded.isNull(), orientation != 1) << "the file shows it turned";
        EXPECT_EQ(quartersOf(artwork.image), QLatin1StringView(kTurned[orientation - 1]));
        EXPECT_EQ(decodeImage(photo, u"p.jpg"_s).size(), QSize(64, 32)) << "as it is stored";
    }
}

TEST(Bitmap, InterlacedArtworkIsEncodedAgain) {
    const QByteArray png = interlacedPng(QColor(1, 2, 3, 4));
    const Artwork artwork = decodeArtwork(png, u"a.png"_s);
    EXPECT_EQ(artwork.image.pixelColor(0, 0), QColor(1, 2, 3, 4));
    EXPECT_TRUE(artwork.encoded.isNull());
}

TEST(Bitmap, ReadsASizeWithoutThePixels) {
    const QByteArray png = encodeImage(picture(300, 150), ImageFormat::Png);
    EXPECT_EQ(encodedImageSize(png.left(60), u"x"_s), QSize(300, 150));
    EXPECT_THROW(encodedImageSize(pngClaiming(100000, 100000), u"x"_s), InputError);
}

TEST(Bitmap, FitsASizeKeepingProportions) {
    struct Case {
        QSize source;
        QSizeF target;
        QSize fitted;
    };
    const std::vector<Case> cases = {
        {{300, 150}, {44, 44}, {44, 22}},       {{150, 300}, {44, 44}, {22, 44}},
        {{300, 300}, {200, 200}, {200, 200}},   {{10, 10}, {44, 44}, {44, 44}},
        {{101, 101}, {50.5, 50.5}, {50, 50}},   {{300, 7}, {44, 44}, {44, 1}},
        {{3000, 10}, {44, 44}, {44, 1}},        {{100, 98}, {200 / 3.0, 196 / 3.0}, {66, 65}},
        {{1, 1}, {1 / 3.0, 1 / 3.0}, {1, 1}},   {{640, 480}, {100, 100}, {100, 75}},
        {{100, 100}, {44, 44}, {44, 44}},       {{7, 7}, {100, 100}, {100, 100}},
        {{100, 99}, {200 / 3.0, 66}, {66, 66}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(fittedSize(c.source, c.target), c.fitted)
            << c.source.width() << " by " << c.source.height();
    }
    EXPECT_THROW(fittedSize({0, 5}, {44, 44}), AssertionFailure);
}

TEST(Bitmap, DrawsSmoothly) {
    const QImage half = imageFitted(picture(60, 60), {15, 15});
    EXPECT_EQ(half.size(), QSize(15, 15));
    EXPECT_EQ(half.pixelColor(2, 7), QColor(200, 40, 90));
    EXPECT_EQ(half.pixelColor(12, 7).alpha(), 0);
    EXPECT_NEAR(half.pixelColor(7, 7).alpha(), 127, 40) << "the edge falls within this pixel";
}

}  // namespace
}  // namespace tweenery::test
