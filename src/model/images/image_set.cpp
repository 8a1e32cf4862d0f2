#include "model/images/image_set.h"

#include <algorithm>

#include "base/errors.h"
#include "base/path_name.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

// Without what only encoding needs.
PCImage asDrawn(const PCImage& image) {
    return {image.image(), image.filename()};
}

}  // namespace

const std::array<QString, PCImageSet::Count>& PCImageSet::basenames() {
    static const std::array<QString, Count> names = {
        u"44x44"_s,    u"44x44@2x"_s,    u"100x100"_s,    u"100x100@2x"_s,
        u"Original"_s, u"Original@2x"_s, u"Original@3x"_s};
    return names;
}

PCImageSet::PCImageSet(FileWrapper::Ptr fileWrapper, std::shared_ptr<PixelAllowance> allowance)
    : m_fileWrapper(std::move(fileWrapper)), m_allowance(std::move(allowance)) {}

bool PCImageSet::isRenditionFile(const QString& filename) {
    const QString extension = pathExtension(filename);
    const auto& names = basenames();
    return (extension == u"png"_s || extension == u"jpg"_s) &&
           std::find(names.begin(), names.end(), withoutPathExtension(filename)) != names.end();
}

std::shared_ptr<PCImageSet> PCImageSet::createImageSetWithFileWrapper(
    FileWrapper::Ptr fileWrapper, const std::shared_ptr<const PCImage>& image) {
    return createImageSetWithFileWrapper(std::move(fileWrapper), std::vector{image});
}

std::shared_ptr<PCImageSet> PCImageSet::createImageSetWithFileWrapper(
    FileWrapper::Ptr fileWrapper, std::vector<std::shared_ptr<const PCImage>> images) {
    auto set = std::make_shared<PCImageSet>(std::move(fileWrapper));
    const auto density = [](const auto& image) {
        return image->is3X() ? 3 : image->is2X() ? 2 : 1;
    };
    // The highest first: what it gives for the lower densities gives way to their own artwork.
    std::stable_sort(images.begin(), images.end(),
                     [&](const auto& a, const auto& b) { return density(a) > density(b); });
    for (const auto& image : images) {
        set->makeArtwork(image);
    }
    set->makePreviews();
    set->writeAll();
    return set;
}

void PCImageSet::makeArtwork(const std::shared_ptr<const PCImage>& image) {
    const QString extension = image->extension();
    const QSizeF size = image->size();
    const auto scaled = [&](Index index, QSizeF target) {
        m_renditions[index] =
            PCImage::imageByScalingImage(*image, target, basenames()[index] + u'.' + extension);
    };
    const auto asItIs = [&](Index index) {
        const auto artwork = std::make_shared<PCImage>(*image);
        artwork->setFilename(basenames()[index] + u'.' + extension);
        m_renditions[index] = artwork;
    };
    if (image->is3X()) {
        asItIs(Original3x);
        scaled(Original2x, size * 2 / 3);
        scaled(Original, size / 3);
    } else if (image->is2X()) {
        asItIs(Original2x);
        scaled(Original, size / 2);
    } else {
        asItIs(Original);
    }
}

void PCImageSet::makePreviews() {
    struct Preview {
        Index index;
        int side;  // of the square that it fits in, in pixels
    };
    constexpr Preview previews[] = {{Small, 44}, {Small2x, 88}, {Medium, 100}, {Medium2x, 200}};
    const PCImage original = asDrawn(*m_renditions[Original]);
    for (const auto [index, side] : previews) {
        m_renditions[index] = PCImage::imageByScalingImage(
            original, QSizeF(side, side), basenames()[index] + u'.' + original.extension());
    }
}

void PCImageSet::writeAll() {
    std::array<QByteArray, Count> encoded;
    for (size_t i = 0; i < Count; ++i) {
        if (!m_renditions[i]) { continue; }
        encoded[i] = m_renditions[i]->dataRepresentation();
        assertContract(!encoded[i].isNull(), u"an image set needs a PNG or JPEG image"_s);
    }
    for (size_t i = 0; i < Count; ++i) {
        if (!m_renditions[i]) { continue; }
        m_fileWrapper->pc_replaceSubFileWrapperNamed(m_renditions[i]->filename(), encoded[i]);
        m_renditions[i] = std::make_shared<PCImage>(asDrawn(*m_renditions[i]));
    }
}

QString PCImageSet::name() const {
    const QString& filename = m_fileWrapper->filename();
    return filename.isNull() ? m_fileWrapper->preferredFilename() : filename;
}

QSize PCImageSet::size() const {
    if (!m_size) {
        const auto file = fileForIndex(Original);
        m_size = file ? encodedImageSize(file->contents(), entryOf(*file)) : QSize(0, 0);
    }
    return *m_size;
}

bool PCImageSet::has2XArtwork() const {
    return hasArtwork(Original2x);
}

bool PCImageSet::has3XArtwork() const {
    return hasArtwork(Original3x);
}

QImage PCImageSet::originalImageWithAppropriateScaling() const {
    const auto image = originalImage();
    return image ? image->image() : QImage();
}

PCImageSet::Rendition PCImageSet::rendition(Index index) const {
    Rendition& kept = m_renditions[index];
    if (kept) { return kept; }
    if (const auto file = fileForIndex(index)) {
        if (m_allowance) { m_allowance->take(file->contents(), entryOf(*file)); }
        kept = std::make_shared<PCImage>(decodeImage(file->contents(), entryOf(*file)),
                                         file->filename());
    }
    return kept;
}

FileWrapper::Ptr PCImageSet::fileForIndex(Index index) const {
    for (const QString& extension : {u".png"_s, u".jpg"_s}) {
        auto file = m_fileWrapper->child(basenames()[index] + extension);
        if (file && file->isRegularFile()) { return file; }
    }
    return nullptr;
}

QByteArray PCImageSet::dataForIndex(Index index) const {
    const auto file = fileForIndex(index);
    return file ? file->contents() : QByteArray();
}

// Artwork of a higher density counts only in the format of the 1x artwork.
bool PCImageSet::hasArtwork(Index index) const {
    const auto original = fileForIndex(Original);
    if (!original) { return false; }
    const auto file =
        m_fileWrapper->child(basenames()[index] + u'.' + pathExtension(original->filename()));
    return file && file->isRegularFile();
}

QString PCImageSet::entryOf(const FileWrapper& file) const {
    return u"images/%1/%2"_s.arg(name(), file.filename());
}

QString PCImageSet::artworkNameWithSuffix(const QString& suffix) const {
    return withoutPathExtension(name()) + suffix + u'.' + pathExtension(name());
}

}  // namespace tweenery
