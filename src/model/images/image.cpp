#include "model/images/image.h"

#include "base/errors.h"
#include "base/path_name.h"
#include "storage/image_header.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

const QString kDataKey = u"PCImage_Data"_s;
const QString kFilenameKey = u"PCImage_Filename"_s;
constexpr qsizetype kDensitySuffixLength = 3;

}  // namespace

const QString PCImage::pasteboardType = u"com.lumenfold.tweenery.pasteboardpcimage"_s;

std::shared_ptr<PCImage> PCImage::pcimageWithData(const QByteArray& data, const QString& filename) {
    const Artwork artwork = decodeArtwork(data, filename);
    auto image = std::make_shared<PCImage>(artwork.image, filename);
    image->m_encoded = artwork.encoded;
    return image;
}

PCImage::PCImage(const QImage& image, const QString& filename)
    : m_artwork(image), m_image(imageForDrawing(image)), m_filename(lastPathComponent(filename)) {}

std::shared_ptr<PCImage> PCImage::imageByScalingImage(const PCImage& image, QSizeF size,
                                                      const QString& filename) {
    return std::make_shared<PCImage>(imageFitted(image.m_artwork, size), filename);
}

QStringList PCImage::suppertedFileTypes() {
    return {u"png"_s, u"PNG"_s, u"jpeg"_s, u"jpg"_s, u"JPEG"_s, u"JPG"_s};
}

void PCImage::setFilename(const QString& filename) {
    m_filename = lastPathComponent(filename);
}

bool PCImage::is2X() const {
    return withoutPathExtension(m_filename).endsWith(u"@2x", Qt::CaseInsensitive);
}

bool PCImage::is3X() const {
    return withoutPathExtension(m_filename).endsWith(u"@3x", Qt::CaseInsensitive);
}

QString PCImage::basename() const {
    const QString name = withoutPathExtension(m_filename);
    return is2X() || is3X() ? name.chopped(kDensitySuffixLength) : name;
}

QString PCImage::extension() const {
    QString extension = pathExtension(m_filename);
    const QString lower = extension.toLower();
    if (lower == u"png") { return u"png"_s; }
    if (lower == u"jpg" || lower == u"jpeg") { return u"jpg"_s; }
    return extension;
}

QString PCImage::keyname() const {
    return basename() + u'.' + extension();
}

std::optional<ImageFormat> PCImage::format() const {
    const QString text = extension();
    if (text == u"png") { return ImageFormat::Png; }
    if (text == u"jpg") { return ImageFormat::Jpeg; }
    return std::nullopt;
}

QByteArray PCImage::dataRepresentation() const {
    const auto imageFormat = format();
    if (!imageFormat) { return {}; }
    return imageFormatOf(m_encoded) == imageFormat ? m_encoded
                                                   : encodeImage(m_artwork, *imageFormat);
}

QVariantMap PCImage::pasteboardPropertyListForType(const QString& type) const {
    if (type != pasteboardType) { return {}; }
    return {{kDataKey, dataRepresentation()}, {kFilenameKey, m_filename}};
}

std::shared_ptr<PCImage> PCImage::imageWithPasteboardPropertyList(const QVariantMap& list,
                                                                  const QString& type) {
    const QVariant data = list.value(kDataKey);
    const QVariant filename = list.value(kFilenameKey);
    if (type != pasteboardType || data.typeId() != QMetaType::QByteArray ||
        filename.typeId() != QMetaType::QString) {
        throw InputError(u"pasteboard"_s, u"holds no image with a name"_s);
    }
    return pcimageWithData(data.toByteArray(), filename.toString());
}

QStringList PCImage::writableTypesForPasteboard() {
    return {pasteboardType};
}

QStringList PCImage::readableTypesForPasteboard() {
    return {pasteboardType};
}

}  // namespace tweenery
