#include "cli/pictures/picture_run.h"

#include <QPainter>
#include <QSet>
#include <cmath>

#include "base/errors.h"
#include "base/parallel_for.h"
#include "base/path_name.h"
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

// The sizes that this program reads back.
constexpr int64_t kLongestSide = 16384;
constexpr int64_t kMostPixels = 64'000'000;

void requireSize(int64_t width, int64_t height, const QString& what) {
    if (width > kLongestSide || height > kLongestSide || width * height > kMostPixels) {
        throw InputError(what, u"would be too large: %1 by %2 pixels"_s.arg(width).arg(height));
    }
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
        parallelFor(m_targets.frames.size(), [this](size_t index) { draw(index); });
    } catch (...) {
        endProgress();
        throw;
    }
    if (!m_sheet.isNull()) { writeSheet(); }
    endProgress();
}

void PictureRun::setScene(const PictureFrame& frame) {
    if (!m_hasSelected || frame.animation.get() != m_selected) {
        m_scene.select(frame.animation);
        m_selected = frame.animation.get();
        m_hasSelected = true;
    }
    m_scene.setTime(frame.timeInMS);
}

// All pictures show the same part of the scene: what shows in any of them.
void PictureRun::measure() {
    for (const PictureFrame& frame : m_targets.frames) {
        setScene(frame);
        m_pixels |= m_scene.pixels();
    }
    if (m_pixels.isEmpty()) {
        throw InputError(kCanvasEntry,
                         u"has no size, and nothing shows that a picture could hold"_s);
    }
    requireSize(m_pixels.width(), m_pixels.height(), u"a picture"_s);
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

void PictureRun::draw(size_t index) {
    const PictureFrame& frame = m_targets.frames[index];
    std::unique_ptr<Easel> easel;
    {
        const std::lock_guard lock(m_mutex);
        easel = takeEasel();
        setScene(frame);
        m_scene.list(m_pixels, easel->list);
        if (!m_sheet.isNull()) {
            const QRect cell = cellOf(index);
            easel->picture =
                QImage(m_sheet.bits() + cell.y() * m_sheet.bytesPerLine() + qsizetype{cell.x()} * 4,
                       cell.width(), cell.height(), m_sheet.bytesPerLine(), m_sheet.format());
        }
    }
    easel->renderer.paint(easel->list, easel->picture);
    if (!frame.path.isNull()) { writeFileAtomically(frame.path, encodePngQuickly(easel->picture)); }
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
