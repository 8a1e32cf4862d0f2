#pragma once

#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "model/images/image.h"
#include "storage/file_wrapper.h"
#include "storage/pixel_allowance.h"

namespace tweenery {

/// One imported picture with its renditions: the artwork at up to three pixel densities and four
/// small previews. All of it lies as files in the set's directory node; a rendition is decoded on
/// its first use and kept.
///
/// Readers of a rendition give null when its file is absent and throw InputError when it is
/// damaged. Only regular files count.
class PCImageSet {
 public:
    /// A set over a directory node; reads nothing. The node stays readable as long as the set
    /// lives, also when it has been taken out of its package. What is decoded counts against
    /// `allowance` (null: without limit), which the sets of a package share.
    explicit PCImageSet(FileWrapper::Ptr fileWrapper,
                        std::shared_ptr<PixelAllowance> allowance = nullptr);

    /// Writes all renditions of `image` into `fileWrapper`, an empty directory node, and gives the
    /// set. Artwork for lower densities is drawn from a 2x or 3x image, never for higher ones.
    /// `image` must have a format. Nothing has been written when it throws.
    static std::shared_ptr<PCImageSet> createImageSetWithFileWrapper(
        FileWrapper::Ptr fileWrapper, const std::shared_ptr<const PCImage>& image);
    /// The same from one image for each density that there is artwork of its own for, at least one.
    static std::shared_ptr<PCImageSet> createImageSetWithFileWrapper(
        FileWrapper::Ptr fileWrapper, std::vector<std::shared_ptr<const PCImage>> images);

    const FileWrapper::Ptr& fileWrapper() const { return m_fileWrapper; }
    /// The name that elements refer to: the node's file name, such as "logo.png".
    QString name() const;
    /// The size of the 1x artwork in pixels, from its header alone; (0, 0) without one. Throws
    /// InputError when the header is damaged.
    QSize size() const;

    using Rendition = std::shared_ptr<const PCImage>;
    Rendition smallImage() const { return rendition(Small); }        // fits in 44 by 44 pixels
    Rendition small2xImage() const { return rendition(Small2x); }    // 88 by 88
    Rendition mediumImage() const { return rendition(Medium); }      // 100 by 100
    Rendition medium2xImage() const { return rendition(Medium2x); }  // 200 by 200
    Rendition originalImage() const { return rendition(Original); }
    Rendition original2xImage() const { return rendition(Original2x); }
    Rendition original3xImage() const { return rendition(Original3x); }

    bool has2XArtwork() const;
    bool has3XArtwork() const;

    /// The bitmap of originalImage(); null without one.
    QImage originalImageWithAppropriateScaling() const;

    /// File names of exported artwork: "logo.png", "logo@2x.png", "logo@3x.png".
    QString artworkName() const { return artworkNameWithSuffix({}); }
    QString artwork2XName() const { return artworkNameWithSuffix(QStringLiteral("@2x")); }
    QString artwork3XName() const { return artworkNameWithSuffix(QStringLiteral("@3x")); }

    /// True for the name of a file that can be one of the seven renditions.
    static bool isRenditionFile(const QString& filename);

    /// The bytes of the artwork files; null for one that is absent.
    QByteArray originalData() const { return dataForIndex(Original); }
    QByteArray original2xData() const { return dataForIndex(Original2x); }
    QByteArray original3xData() const { return dataForIndex(Original3x); }

 private:
    enum Index { Small, Small2x, Medium, Medium2x, Original, Original2x, Original3x, Count };
    static const std::array<QString, Count>& basenames();

    Rendition rendition(Index index) const;
    FileWrapper::Ptr fileForIndex(Index index) const;
    QByteArray dataForIndex(Index index) const;
    bool hasArtwork(Index index) const;
    QString entryOf(const FileWrapper& file) const;
    QString artworkNameWithSuffix(const QString& suffix) const;
    void makeArtwork(const std::shared_ptr<const PCImage>& image);
    void makePreviews();
    void writeAll();

    FileWrapper::Ptr m_fileWrapper;
    std::shared_ptr<PixelAllowance> m_allowance;
    mutable std::array<Rendition, Count> m_renditions;
    mutable std::optional<QSize> m_size;
};

}  // namespace tweenery
