#pragma once

#include <QByteArray>
#include <QImage>

namespace tweenery {

/// A frame made ready to be appended.
struct PreparedFrame {
    QByteArray png;
    QImage indexed;  // Indexed8
};

/// Turns frames into the bytes of one animated picture, piece by piece.
class MovieEncoder {
 public:
    virtual ~MovieEncoder() = default;

    /// The costly part; on any thread.
    virtual PreparedFrame prepare(const QImage& frame) const = 0;
    /// The next bytes of the file. All frames have one size and come in their order.
    virtual QByteArray append(const PreparedFrame& frame) = 0;
    /// The bytes after the last frame.
    virtual QByteArray end() = 0;
};

}  // namespace tweenery
