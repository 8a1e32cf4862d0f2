#pragma once

#include <atomic>
#include <functional>
#include <memory>

#include "base/media_clock.h"
#include "base/ports.h"
#include "editor/documents/disk_thread.h"
#include "publish/export_job.h"
#include "publish/export_preview.h"
#include "publish/export_toggles.h"

namespace tweenery {

/// The export of one project from its window, from the sheet's opening to its end: what may be
/// chosen, what would be written, the scene that plays beside it, and the run itself. All that asks
/// a disk, or reads the project, happens on a thread of its own, on a snapshot. Needs an event
/// loop.
class ExportSession {
 public:
    /// What is exported. The project keeps the choices; the rest is as it was at the snapshot.
    struct Subject {
        PCProject::Ptr project;
        DocumentSnapshot snapshot;
        QString path;  // of the package; empty for a project that was never saved
    };
    /// What the session asks of its surroundings. None is owned.
    struct Ports {
        AlertPort& alerts;
        OpenPanelPort& openPanel;
        const MediaClock& clock;
    };
    struct Hooks {
        std::function<void()> didChange;  // anything that is shown
        std::function<void(size_t written, size_t all)> didProgress;
        /// The export was written, perhaps with failures that the user was told.
        std::function<void(const ExportOutcome& outcome)> didEnd;
    };

    /// Begins to read the preview.
    ExportSession(Subject subject, const Ports& ports, ExportHistory history, Hooks hooks);
    ~ExportSession();

    const QString& projectName() const { return m_name; }
    /// Null until it has been read, and when it cannot be.
    ExportPreview* preview() { return m_preview.get(); }
    /// Tells the preview's layers what time it is.
    void tick();
    /// A click on an animation's row: plays it, or stops it.
    void toggleAnimation(size_t index);

    bool isOn(const ExportToggle& toggle) const { return toggle.isOn(preferences()); }
    bool isAvailable(const ExportToggle& toggle) const { return toggle.isAvailable(preferences()); }
    void press(const ExportToggle& toggle);
    ExportChoices choices() const { return ExportChoices::fromPreferences(*m_project); }

    /// Of the choices as they are; empty until it is known.
    const ExportForecast& forecast() const { return m_forecast; }
    /// Something went on without a result: "Stopped. …"; the project cannot be read. Mostly empty.
    const QString& message() const { return m_message; }

    /// With an element to export, and no run under way.
    bool canExport() const;
    bool isRunning() const { return m_isRunning; }
    /// Asks for the folder and, where files would be deleted, for leave; then writes.
    void beginExport();
    /// Ends a run after the file that is being written.
    void stop() { m_stop->store(true); }

 private:
    const PCProject::Ptr m_project;
    const QString m_name;
    const QString m_path;
    const Ports m_ports;
    const Hooks m_hooks;
    const std::shared_ptr<ExportJob> m_job;  // the thread's
    std::unique_ptr<ExportPreview> m_preview;
    ExportForecast m_forecast;
    QString m_message;
    double m_openedAt = 0;
    bool m_isForecastUnderWay = false;
    bool m_isForecastStale = false;
    bool m_isRunning = false;
    const std::shared_ptr<std::atomic_bool> m_stop = std::make_shared<std::atomic_bool>(false);
    const std::shared_ptr<bool> m_life = std::make_shared<bool>(true);  // ends with this
    DiskThread m_thread;

    PCProjectPreferences& preferences() const { return m_project->preferences(); }
    void readPreview(const DocumentSnapshot& snapshot);
    void updateForecast();
    void askThenRun(const QString& directory, size_t oldImages);
    void run(const QString& directory);
    void didRun(const ExportOutcome& outcome);
    AlertAnswer ask(const Alert& alert, bool& isGone);
};

}  // namespace tweenery
