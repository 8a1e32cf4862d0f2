#pragma once

#include <QImage>
#include <QString>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "model/images/image_set.h"
#include "storage/file_wrapper.h"

namespace tweenery {

/// The image sets of a project, by name. Adding and deleting go straight into the package's tree;
/// there is no undo.
class PCImageSetManager {
 public:
    using ImageSet = std::shared_ptr<PCImageSet>;

    /// A set for each directory in `images` of the package, which is made when absent; decodes
    /// nothing. Throws InputError when `images` is no directory.
    explicit PCImageSetManager(const FileWrapper::Ptr& projectFileWrapper);

    /// Makes the set that the image's keyname names. A set of that name must not exist
    /// (AssertionFailure). Throws InputError, and changes nothing, when the file name gives no
    /// name for a set or has an extension other than those of PNG and JPEG.
    ImageSet addImageSetWithPCImage(const std::shared_ptr<const PCImage>& image);
    /// The same in place of a set that exists.
    ImageSet addOrReplaceImageSetWithPCImage(const std::shared_ptr<const PCImage>& image);
    /// The same for several. Throws InputError, and changes nothing, when one of them cannot be a
    /// set.
    std::vector<ImageSet> addOrReplaceImageSetsWithPCImages(
        const std::vector<std::shared_ptr<PCImage>>& images);
    /// A set in no package yet, from one image for each density that there is artwork of its own
    /// for; all have one keyname. Throws InputError like addImageSetWithPCImage().
    ImageSet makeImageSet(const std::vector<std::shared_ptr<const PCImage>>& images) const;
    /// Puts a set that is in no package into this one. Returns the set of its name that it takes
    /// the place of; null when there was none.
    ImageSet putImageSet(const ImageSet& set);
    /// Takes the set out of the package and returns it; null when there is none. Elements that name
    /// it are not touched.
    ImageSet deleteImageSetWithName(const QString& name);

    /// Sorted by name.
    std::vector<ImageSet> allImageSets() const;
    bool imageSetExistsWithName(const QString& name) const { return m_imageSets.contains(name); }
    /// Null when there is none.
    ImageSet imageSetWithName(const QString& name) const;

    /// The bitmap for a screen: 2x artwork at a scale of exactly 2 when the set has it, else the 1x
    /// artwork. Null when there is no such set. Throws InputError when it is damaged.
    QImage imageWithName(const QString& name, double backingScale) const;
    /// Another number after every set that was added, replaced or deleted.
    uint64_t revision() const { return m_revision; }

    /// Throws InputError when an image's header is damaged.
    QString debugDescription() const;

 private:
    ImageSet store(const ImageSet& set);

    FileWrapper::Ptr m_imagesFileWrapper;
    std::map<QString, ImageSet> m_imageSets;
    uint64_t m_revision = 0;
};

}  // namespace tweenery
