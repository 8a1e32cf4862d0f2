#include "cli/pictures/picture_run.h"

#include <QPainter>
#include <QSet>
#include <algorithm>
#include <cmath>
#include <numeric>

#include "base/errors.h"
#include "base/limits.h"
#include "base/parallel_for.h"
#include "base/path_name.h"
#include "cli/pictures/movie_format.h"
#include "cli/support/json_writer.h"
#include "cli/support/verb.h"
#include "storage/bitmap.h"
#include "storage/output_folder.h"
#include "storage/package_entries.h"
#include "storage/package_store.h"
#include "storage/system_names.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// Of the frames of an animated picture that wait for their turn.
constexpr int64_t kPixelsAtOnce = 64'000'000;

void requireSize(int64_t width, int64_t height, const QString& what) {
    // This program reads back what it writes.
    if (width > limits::kSideOfPicture || height > limits::kSideOfPicture ||
        width * height > limits::kPixelsOfPicture) {
        throw InputError(what, u"would be too large: %1 by %2 pixels"_s.arg(width).arg(height));
    }
}

int64_t areaOf(const QRect& pixels) {
    return int64_t{pixels.width()} * pixels.height();
}

int64_t paintedPixels(const DisplayList& list) {
    const std::vector<DisplayItem>& items = list.items();
    return std::accumulate(
        items.begin(), items.end(), int64_t{0},
        [](int64_t sum, const DisplayItem& item) { return sum + areaOf(item.pixels); });
}

}  // namespace

void PictureTargets::takeSheet(const QString& path) {
    if (!path.endsWith(u".png"_s, Qt::CaseInsensitive)) {
        throw UsageError{u"--sheet takes the name of a PNG file, not '%1'"_s.arg(path)};
    }
    sheetPath = path;
    sheetJsonPath = path.chopped(4) + u".json"_s;
}

QStringList PictureTargets::paths() const {
    QStringList paths;
    for (const PictureFrame& frame : frames) {
        if (!frame.path.isNull()) { paths += frame.path; }
    }
    if (!sheetPath.isNull()) { paths << sheetPath << sheetJsonPath; }
    if (!moviePath.isNull()) { paths << moviePath; }
    return paths;
}

static QString folderOf(const QString& path) {
    const qsizetype slash = path.lastIndexOf(u'/');
    return slash < 0 ? u"."_s : path.left(slash + 1);
}

void PictureTargets::requireFree(bool replaces) const {
    QSet<QString> taken;
    for (const QString& path : paths()) {
        if (taken.contains(path)) {
            throw InputError(path,
                             u"would hold several pictures; %d, %t or %a in --out tells them "
                             u"apart"_s);
        }
        taken.insert(path);
        const PathKind present = kindOfPath(path);
        if (!replaces && present != PathKind::Nothing) {
            throw InputError(path, u"is already there; --force replaces it"_s);
        }
        if (present == PathKind::Directory) { throw InputError(path, u"is a directory"_s); }
        OutputFolder::make(folderOf(path));
    }
}

void PictureRun::run() {
    measure();
    if (!m_targets.sheetPath.isNull()) { makeSheet(); }
    try {
        m_targets.moviePath.isNull() ? drawAll() : makeMovie();
    } catch (...) {
        endProgress();
        throw;
    }
    if (!m_sheet.isNull()) { writeSheet(); }
    endProgress();
}

void PictureRun::drawAll() {
    parallelFor(m_targets.frames.size(), [this](size_t index) {
        draw(index, [&path = m_targets.frames[index].path](const QImage& picture) {
            if (!path.isNull()) { writeFileAtomically(path, encodePngQuickly(picture)); }
        });
    });
}

// Some frames at a time are drawn and prepared on all cores, then written in their order.
void PictureRun::makeMovie() {
    const auto atOnce =
        static_cast<size_t>(std::clamp<int64_t>(kPixelsAtOnce / areaOf(m_pixels), 1, 16));
    const auto encoder = movieEncoderFor(m_targets.moviePath, m_targets.timing);
    FileInTheMaking file(m_targets.moviePath);
    for (size_t first = 0; first < m_targets.frames.size(); first += atOnce) {
        std::vector<PreparedFrame> prepared(std::min(atOnce, m_targets.frames.size() - first));
        parallelFor(prepared.size(), [&](size_t i) {
            draw(first + i,
                 [&](const QImage& picture) { prepared[i] = encoder->prepare(picture); });
        });
        for (const PreparedFrame& frame : prepared) {
            file.write({encoder->append(frame)});
        }
    }
    file.write({encoder->end()});
    file.commit();
}

void PictureRun::setScene(const PictureFrame& frame) {
    if (!m_hasSelected || frame.animation.get() != m_selected) {
        m_scene.select(frame.animation);
        m_selected = frame.animation.get();
        m_hasSelected = true;
    }
    m_scene.setTime(frame.timeInMS);
}

// Counts what takes as long as to paint so many pixels. Throws InputError when the package asks for
// more than it may.
void PictureRun::spend(int64_t pixels) {
    m_spentPixels += pixels;
    const auto pictures = static_cast<int64_t>(m_targets.frames.size());
    const int64_t most = limits::kPixelsPainted * (m_targets.hasTimesOfUser ? pictures : 1);
    if (m_spentPixels > most) {
        const QString what = pictures == 1 ? u"pixels to paint for the picture"_s
                                           : u"pixels to paint for %1 pictures (--to and --at "
                                             u"allow as many for each)"_s.arg(pictures);
        throw InputError(kCanvasEntry, beyondLimit(what, m_spentPixels, most));
    }
}

// The package has no part in that pictures are larger than it says.
void PictureRun::spendAtScale(int64_t pixels) {
    const double scale = std::max(1.0, m_scene.look().scale);
    spend(std::llround(static_cast<double>(pixels) / (scale * scale)));
}

// All pictures show the same part of the scene: what shows in any of them.
void PictureRun::measure() {
    const auto count = static_cast<int64_t>(m_targets.frames.size());
    spend(count * m_scene.elementCount() * limits::kPixelsToPlaceElement);
    for (const PictureFrame& frame : m_targets.frames) {
        setScene(frame);
        m_pixels |= m_scene.pixels();
    }
    if (m_pixels.isEmpty()) {
        throw InputError(kCanvasEntry,
                         u"has no size, and nothing shows that a picture could hold"_s);
    }
    requireSize(m_pixels.width(), m_pixels.height(), u"a picture"_s);
    spendAtScale(count * areaOf(m_pixels) * limits::kPixelsToStoreOne);
}

void PictureRun::makeSheet() {
    const auto count = static_cast<int64_t>(m_targets.frames.size());
    const auto square = static_cast<int>(std::ceil(std::sqrt(static_cast<double>(count))));
    m_columns = m_targets.columns > 0 ? m_targets.columns : square;
    const int64_t columns = std::min<int64_t>(m_columns, count);
    const int64_t rows = (count + m_columns - 1) / m_columns;
    const int64_t width = columns * m_pixels.width();
    const int64_t height = rows * m_pixels.height();
    requireSize(width, height, m_targets.sheetPath);
    m_sheet = QImage(static_cast<int>(width), static_cast<int>(height),
                     QImage::Format_ARGB32_Premultiplied);
    if (m_sheet.isNull()) { throw std::bad_alloc(); }
    m_sheet.fill(Qt::transparent);
    QPainter painter(&m_sheet);
    for (int64_t free = count; free < columns * rows; ++free) {
        m_scene.paintBackground(painter, cellOf(static_cast<size_t>(free)));
    }
}

QRect PictureRun::cellOf(size_t index) const {
    const int place = static_cast<int>(index);
    const QPoint cell(place % m_columns * m_pixels.width(), place / m_columns * m_pixels.height());
    return {cell, m_pixels.size()};
}

std::unique_ptr<PictureRun::Easel> PictureRun::takeEasel() {
    if (m_easels.empty()) { return std::make_unique<Easel>(); }
    std::unique_ptr<Easel> easel = std::move(m_easels.back());
    m_easels.pop_back();
    return easel;
}

void PictureRun::draw(size_t index, const std::function<void(const QImage&)>& use) {
    const PictureFrame& frame = m_targets.frames[index];
    std::unique_ptr<Easel> easel;
    {
        const std::lock_guard lock(m_mutex);
        easel = takeEasel();
        setScene(frame);
        m_scene.list(m_pixels, easel->list);
        spendAtScale(paintedPixels(easel->list));
        if (!m_sheet.isNull()) {
            const QRect cell = cellOf(index);
            easel->picture =
                QImage(m_sheet.bits() + cell.y() * m_sheet.bytesPerLine() + qsizetype{cell.x()} * 4,
                       cell.width(), cell.height(), m_sheet.bytesPerLine(), m_sheet.format());
        }
    }
    easel->renderer.paint(easel->list, easel->picture);
    use(easel->picture);
    const std::lock_guard lock(m_mutex);
    m_easels.push_back(std::move(easel));
    ++m_doneCount;
    tellProgress();
}

void PictureRun::writeSheet() {
    m_easels.clear();  // they share the sheet's pixels
    writeFileAtomically(m_targets.sheetPath, encodePngQuickly(m_sheet));
    writeFileAtomically(m_targets.sheetJsonPath, sheetJson());
}

QByteArray PictureRun::sheetJson() const {
    const auto rectangle = [](JsonWriter& json, const QRect& rect) {
        json.key("x").integer(rect.x()).key("y").integer(rect.y());
        json.key("width").integer(rect.width()).key("height").integer(rect.height());
    };
    JsonWriter json;
    json.beginObject().key("image").string(lastPathComponent(m_targets.sheetPath));
    json.key("width").integer(m_sheet.width()).key("height").integer(m_sheet.height());
    json.key("canvas").beginObject(JsonWriter::Layout::OneLine);
    rectangle(json, m_scene.canvasPixels().translated(-m_pixels.topLeft()));
    json.endObject().key("frames").beginArray();
    for (size_t i = 0; i < m_targets.frames.size(); ++i) {
        const PictureFrame& frame = m_targets.frames[i];
        json.beginObject(JsonWriter::Layout::OneLine);
        json.key("animation").string(frame.animation ? frame.animation->name() : QString());
        json.key("time").integer(frame.timeInMS);
        rectangle(json, cellOf(i));
        json.endObject();
    }
    return QByteArray::fromStdString(json.endArray().endObject().take());
}

void PictureRun::tellProgress() {
    constexpr auto kQuietTime = std::chrono::milliseconds(200);
    const auto now = std::chrono::steady_clock::now();
    if (!m_console.showsProgress || now - m_lastTold < kQuietTime) { return; }
    m_lastTold = now;
    m_isTold = true;
    m_console.err << "\rtweenc: " << m_doneCount << " of " << m_targets.frames.size()
                  << " frames done" << std::flush;
}

void PictureRun::endProgress() {
    constexpr std::string_view kEraseLine = "\r\033[K";
    if (m_isTold) { m_console.err << kEraseLine << std::flush; }
}

}  // namespace tweenery
