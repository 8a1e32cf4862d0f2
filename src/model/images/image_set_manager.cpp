#include "model/images/image_set_manager.h"

#include "base/errors.h"
#include "base/number_text.h"
#include "storage/package_entries.h"

using namespace Qt::StringLiterals;

namespace tweenery {

PCImageSetManager::PCImageSetManager(const FileWrapper::Ptr& projectFileWrapper)
    : m_imagesFileWrapper(
          projectFileWrapper->pc_ensureSubfileWrapperDirectoryExistsWithName(kImagesEntry)) {
    const auto allowance = std::make_shared<PixelAllowance>();
    for (const auto& [name, node] : m_imagesFileWrapper->fileWrappers()) {
        if (node->isDirectory()) {
            m_imageSets.emplace(name, std::make_shared<PCImageSet>(node, allowance));
        }
    }
}

PCImageSetManager::ImageSet PCImageSetManager::addImageSetWithPCImage(
    const std::shared_ptr<const PCImage>& image) {
    assertContract(!imageSetExistsWithName(image->keyname()),
                   u"Cannot create new imageSet with name %1, an imageSet with that name already "
                   u"exists"_s.arg(image->keyname()));
    return store(makeImageSet({image}));
}

PCImageSetManager::ImageSet PCImageSetManager::addOrReplaceImageSetWithPCImage(
    const std::shared_ptr<const PCImage>& image) {
    ImageSet set = makeImageSet({image});
    putImageSet(set);
    return set;
}

std::vector<PCImageSetManager::ImageSet> PCImageSetManager::addOrReplaceImageSetsWithPCImages(
    const std::vector<std::shared_ptr<PCImage>>& images) {
    std::vector<ImageSet> sets;
    for (const auto& image : images) {
        sets.push_back(makeImageSet({image}));
    }
    for (const ImageSet& set : sets) {
        putImageSet(set);
    }
    return sets;
}

PCImageSetManager::ImageSet PCImageSetManager::putImageSet(const ImageSet& set) {
    ImageSet replaced = deleteImageSetWithName(set->name());
    store(set);
    return replaced;
}

PCImageSetManager::ImageSet PCImageSetManager::makeImageSet(
    const std::vector<std::shared_ptr<const PCImage>>& images) const {
    assertContract(!images.empty(), u"an image set needs an image"_s);
    const auto& image = images.front();
    const auto refuse = [&](const QString& reason) { throw InputError(image->filename(), reason); };
    const QString name = image->keyname();
    if (!image->format()) { refuse(u"is not named as a PNG or JPEG image"_s); }
    if (image->basename().isEmpty() || !isSafeFilename(name)) {
        refuse(u"gives no name for an image set"_s);
    }
    const auto present = m_imagesFileWrapper->child(name);
    if (present && !present->isDirectory()) {
        refuse(u"cannot be stored: images/%1 is no image set"_s.arg(name));
    }
    return PCImageSet::createImageSetWithFileWrapper(FileWrapper::directory(name), images);
}

PCImageSetManager::ImageSet PCImageSetManager::store(const ImageSet& set) {
    m_imagesFileWrapper->addFileWrapper(set->fileWrapper());
    m_imageSets.emplace(set->name(), set);
    ++m_revision;
    return set;
}

PCImageSetManager::ImageSet PCImageSetManager::deleteImageSetWithName(const QString& name) {
    const auto found = m_imageSets.find(name);
    if (found == m_imageSets.end()) { return nullptr; }
    ImageSet set = found->second;
    m_imagesFileWrapper->removeFileWrapper(set->fileWrapper());
    m_imageSets.erase(found);
    ++m_revision;
    return set;
}

std::vector<PCImageSetManager::ImageSet> PCImageSetManager::allImageSets() const {
    std::vector<ImageSet> sets;
    sets.reserve(m_imageSets.size());
    for (const auto& [name, set] : m_imageSets) {
        sets.push_back(set);
    }
    return sets;
}

PCImageSetManager::ImageSet PCImageSetManager::imageSetWithName(const QString& name) const {
    const auto found = m_imageSets.find(name);
    return found == m_imageSets.end() ? nullptr : found->second;
}

QImage PCImageSetManager::imageWithName(const QString& name, double backingScale) const {
    const ImageSet set = imageSetWithName(name);
    if (!set) { return {}; }
    const bool wants2x = backingScale == 2.0 && set->has2XArtwork();
    const auto image = wants2x ? set->original2xImage() : set->originalImage();
    return image ? image->image() : QImage();
}

QString PCImageSetManager::debugDescription() const {
    QString text = u"<PCImageManager (imagesCount:%1)>"_s.arg(m_imageSets.size());
    for (const auto& [name, set] : m_imageSets) {
        const QSize size = set->size();
        text += u"\n\t%1 (size:<%2x%3>, %1)"_s.arg(
            name, QString::fromStdString(fixedText(size.width(), 2)),
            QString::fromStdString(fixedText(size.height(), 2)));
    }
    return text + u"\n/PCImageManager>"_s;
}

}  // namespace tweenery
