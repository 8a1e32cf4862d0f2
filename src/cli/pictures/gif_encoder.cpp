#include "cli/pictures/gif_encoder.h"

#include <gif_lib.h>

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include "cli/pictures/gif_palette.h"

namespace tweenery {
namespace {

constexpr int kMostColors = 256;

int writeTo(GifFileType* gif, const GifByteType* bytes, int length) {
    static_cast<QByteArray*>(gif->UserData)->append(reinterpret_cast<const char*>(bytes), length);
    return length;
}

// It writes into memory, so that only too little of that makes it fail.
void require(int result) {
    if (result != GIF_OK) { throw std::bad_alloc(); }
}

}  // namespace

GifEncoder::GifEncoder(std::vector<int> delays, bool loops)
    : m_delays(std::move(delays)), m_loops(loops) {
    int error = 0;
    m_gif = EGifOpen(&m_bytes, writeTo, &error);
    if (!m_gif) { throw std::bad_alloc(); }
}

GifEncoder::~GifEncoder() {
    if (m_gif) { EGifCloseFile(m_gif, nullptr); }
}

// The last number stands for what does not show.
PreparedFrame GifEncoder::prepare(const QImage& frame) const {
    constexpr uchar hole = kMostColors - 1;
    const QImage pixels = frame.convertToFormat(QImage::Format_ARGB32);
    const GifPalette palette(pixels, kMostColors - 1);
    PreparedFrame prepared;
    prepared.indexed = QImage(pixels.size(), QImage::Format_Indexed8);
    if (prepared.indexed.isNull()) { throw std::bad_alloc(); }
    prepared.indexed.setColorTable(palette.colors());
    for (int y = 0; y < pixels.height(); ++y) {
        const auto* from = reinterpret_cast<const QRgb*>(pixels.constScanLine(y));
        std::transform(from, from + pixels.width(), prepared.indexed.scanLine(y), [&](QRgb pixel) {
            return GifPalette::shows(pixel) ? palette.indexOf(pixel) : hole;
        });
    }
    return prepared;
}

QByteArray GifEncoder::append(const PreparedFrame& frame) {
    if (m_frameCount == 0) { begin(frame.indexed.size()); }
    putControl();
    putPixels(frame.indexed);
    ++m_frameCount;
    return take();
}

QByteArray GifEncoder::end() {
    require(EGifCloseFile(std::exchange(m_gif, nullptr), nullptr));
    return take();
}

void GifEncoder::begin(const QSize& size) {
    EGifSetGifVersion(m_gif, true);
    require(EGifPutScreenDesc(m_gif, size.width(), size.height(), 8, 0, nullptr));
    if (!m_loops) { return; }
    constexpr char name[] = "NETSCAPE2.0";
    constexpr GifByteType forever[] = {1, 0, 0};
    require(EGifPutExtensionLeader(m_gif, APPLICATION_EXT_FUNC_CODE));
    require(EGifPutExtensionBlock(m_gif, sizeof name - 1, name));
    require(EGifPutExtensionBlock(m_gif, sizeof forever, forever));
    require(EGifPutExtensionTrailer(m_gif));
}

// Each frame is taken away before the next, which would otherwise show it where it is transparent.
void GifEncoder::putControl() {
    const GraphicsControlBlock control{DISPOSE_BACKGROUND, false, m_delays[m_frameCount],
                                       kMostColors - 1};
    GifByteType bytes[4];
    const size_t length = EGifGCBToExtension(&control, bytes);
    require(EGifPutExtension(m_gif, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(length), bytes));
}

void GifEncoder::putPixels(const QImage& indexed) {
    const QList<QRgb> colors = indexed.colorTable();
    const std::unique_ptr<ColorMapObject, void (*)(ColorMapObject*)> palette(
        GifMakeMapObject(kMostColors, nullptr), GifFreeMapObject);
    if (!palette) { throw std::bad_alloc(); }
    for (qsizetype i = 0; i < colors.size(); ++i) {
        palette->Colors[i] = {static_cast<GifByteType>(qRed(colors[i])),
                              static_cast<GifByteType>(qGreen(colors[i])),
                              static_cast<GifByteType>(qBlue(colors[i]))};
    }
    require(EGifPutImageDesc(m_gif, 0, 0, indexed.width(), indexed.height(), false, palette.get()));
    std::vector<GifPixelType> line(static_cast<size_t>(indexed.width()));
    for (int y = 0; y < indexed.height(); ++y) {
        std::copy_n(indexed.constScanLine(y), line.size(), line.begin());
        require(EGifPutLine(m_gif, line.data(), indexed.width()));
    }
}

QByteArray GifEncoder::take() {
    return std::exchange(m_bytes, {});
}

}  // namespace tweenery
