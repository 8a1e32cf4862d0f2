#pragma once

#include <QRect>
#include <QString>
#include <QStringList>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "cli/pictures/movie_timing.h"
#include "cli/pictures/scene_pictures.h"
#include "cli/support/console.h"
#include "scene/layer_renderer.h"

namespace tweenery {

/// One picture of a run.
struct PictureFrame {
    PCAnimation::Ptr animation;  // null: the setup state
    int32_t timeInMS = 0;
    QString path;  // null when one file holds all frames
};

/// What a run writes.
struct PictureTargets {
    std::vector<PictureFrame> frames;
    QString sheetPath;  // null: no sheet
    QString sheetJsonPath;
    int columns = 0;    // of the sheet; 0: about as many as rows
    QString moviePath;  // null: no animated picture
    MovieTiming timing;
    bool hasTimesOfUser = false;  // and not as many frames as the package makes them

    /// Throws UsageError unless it is the path of a PNG file.
    void takeSheet(const QString& path);
    /// All files, in the order in which they are named to the user.
    QStringList paths() const;
    /// Makes the folders of all files. Throws InputError when a file is there that may not be
    /// replaced, or two have one path.
    void requireFree(bool replaces) const;
};

/// Draws and writes all pictures of a run on all cores: the scene is set to a time and listed by
/// one thread at a time; painting, encoding and writing go on beside that.
class PictureRun {
 public:
    PictureRun(ScenePictures& scene, const PictureTargets& targets, Console& console)
        : m_scene(scene), m_targets(targets), m_console(console) {}

    /// Throws InputError: what has been written by then is whole.
    void run();

 private:
    // What one thread paints with; kept from frame to frame.
    struct Easel {
        LayerRenderer renderer{1};
        DisplayList list;
        QImage picture;
    };

    void setScene(const PictureFrame& frame);
    void spend(int64_t pixels);
    void spendAtScale(int64_t pixels);
    void measure();
    void makeSheet();
    QRect cellOf(size_t index) const;
    void drawAll();
    void makeMovie();
    void draw(size_t index, const std::function<void(const QImage&)>& use);
    void writeSheet();
    QByteArray sheetJson() const;
    void tellProgress();
    void endProgress();
    std::unique_ptr<Easel> takeEasel();

    ScenePictures& m_scene;
    const PictureTargets& m_targets;
    Console& m_console;
    QRect m_pixels;  // of the scene, in every picture
    int m_columns = 1;
    QImage m_sheet;
    std::mutex m_mutex;  // of all below and the scene
    const PCAnimation* m_selected = nullptr;
    bool m_hasSelected = false;
    std::vector<std::unique_ptr<Easel>> m_easels;
    size_t m_doneCount = 0;
    int64_t m_spentPixels = 0;
    std::chrono::steady_clock::time_point m_lastTold = std::chrono::steady_clock::now();
    bool m_isTold = false;
};

}  // namespace tweenery
