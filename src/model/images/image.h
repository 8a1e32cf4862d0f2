#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <memory>
#include <optional>

#include "storage/bitmap.h"

namespace tweenery {

/// One bitmap with a file name. The name tells the pixel density ("logo@2x.png"), the format, and
/// the image set that the bitmap belongs in. It is kept with all samples and in the colour space
/// that it came with, to be scaled and encoded, and as it is drawn.
class PCImage {
 public:
    static const QString pasteboardType;

    /// Decodes PNG or JPEG bytes, by content, whatever the name's extension, and turns a photo the
    /// way its camera was held. Throws InputError.
    static std::shared_ptr<PCImage> pcimageWithData(const QByteArray& data,
                                                    const QString& filename);
    PCImage(const QImage& image, const QString& filename);
    /// `image` drawn to fit `size` in pixels, keeping its proportions (fittedSize()).
    static std::shared_ptr<PCImage> imageByScalingImage(const PCImage& image, QSizeF size,
                                                        const QString& filename);

    /// The extensions that can be imported.
    static QStringList suppertedFileTypes();

    /// Always one path component: what stands before the last slash is cut off.
    const QString& filename() const { return m_filename; }
    void setFilename(const QString& filename);

    /// The name without its extension ends in "@2x" or "@3x", in either case.
    bool is2X() const;
    bool is3X() const;
    /// The name without extension and density.
    QString basename() const;
    /// "png" or "jpg" for the known extensions in any case, any other as it stands.
    QString extension() const;
    /// basename() and extension(): the name of the image set that the image belongs in.
    QString keyname() const;
    /// The format of extension(); nullopt when that is neither "png" nor "jpg".
    std::optional<ImageFormat> format() const;

    /// For drawing: ARGB32_Premultiplied in sRGB.
    const QImage& image() const { return m_image; }
    /// In pixels.
    QSize size() const { return m_image.size(); }

    /// The bitmap encoded by format(); null without one. The very bytes that it was decoded from
    /// when they have that format and show the bitmap upright, row by row.
    QByteArray dataRepresentation() const;

    /// The keys "PCImage_Data" and "PCImage_Filename"; empty for another type.
    QVariantMap pasteboardPropertyListForType(const QString& type) const;
    /// Throws InputError when the map does not hold a readable image.
    static std::shared_ptr<PCImage> imageWithPasteboardPropertyList(const QVariantMap& list,
                                                                    const QString& type);
    static QStringList writableTypesForPasteboard();
    static QStringList readableTypesForPasteboard();

 private:
    QImage m_artwork;      // with all samples, in its own colour space
    QImage m_image;        // shares the pixels of m_artwork when they can be drawn as they are
    QByteArray m_encoded;  // null unless it can be stored as it is
    QString m_filename;
};

}  // namespace tweenery
