#include "publish/export_session.h"

#include <QElapsedTimer>
#include <QFileInfo>

#include "base/errors.h"
#include "publish/export_words.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kProgressInterval = 30;  // milliseconds

// Tells now and then how far a run is, and ends it when it is to stop.
struct RunWatch {
    std::shared_ptr<std::atomic_bool> stop;
    std::shared_ptr<DiskThread::Channel> channel;
    std::function<void(size_t written, size_t all)> tell;
    QElapsedTimer sinceTold;

    bool goesOn(size_t written, size_t all) {
        if (!sinceTold.isValid() || sinceTold.elapsed() >= kProgressInterval) {
            sinceTold.start();
            channel->deliver([tell = tell, written, all] { tell(written, all); });
        }
        return !stop->load();
    }
};

struct PreviewReading {
    std::unique_ptr<ExportPreview> preview;
    QString failure;
};

PreviewReading readingOf(const DocumentSnapshot& snapshot, double backingScale) {
    try {
        return {ExportPreview::read(snapshot, backingScale), {}};
    } catch (const InputError& error) {
        return {nullptr, u"“%1” %2."_s.arg(error.entry(), error.reason())};
    }
}

}  // namespace

ExportSession::ExportSession(Subject subject, const Ports& ports, ExportHistory history,
                             Hooks hooks)
    : m_project(std::move(subject.project)),
      m_name(subject.snapshot.projectName),
      m_path(subject.path),
      m_ports(ports),
      m_hooks(std::move(hooks)),
      m_job(std::make_shared<ExportJob>(subject.snapshot, subject.path, std::move(history))),
      m_openedAt(ports.clock.now()) {
    readPreview(subject.snapshot);
    updateForecast();
}

ExportSession::~ExportSession() {
    stop();
}

// The preview.

void ExportSession::readPreview(const DocumentSnapshot& snapshot) {
    m_thread.run<PreviewReading>(
        [snapshot, scale = m_project->backingScale()] { return readingOf(snapshot, scale); },
        [this](PreviewReading reading) {
            m_preview = std::move(reading.preview);
            m_message = reading.failure;
            if (m_preview) {
                m_preview->show();
                m_preview->setClipsToBounds(preferences().generatedCodeClipsToBounds());
            }
            m_hooks.didChange();
        });
}

void ExportSession::tick() {
    if (m_preview) { m_preview->setTime(m_ports.clock.now() - m_openedAt); }
}

void ExportSession::toggleAnimation(size_t index) {
    if (!m_preview || index >= m_preview->animations().size()) { return; }
    tick();
    if (m_preview->animations()[index].isRunning) {
        m_preview->stop(index);
    } else {
        m_preview->start(index);
    }
    m_hooks.didChange();
}

// Choices.

void ExportSession::press(const ExportToggle& toggle) {
    if (m_isRunning) { return; }
    toggle.press(preferences());
    if (m_preview) { m_preview->setClipsToBounds(preferences().generatedCodeClipsToBounds()); }
    m_message.clear();
    updateForecast();
    m_hooks.didChange();
}

// One at a time: of the choices pressed meanwhile only the last ones count.
void ExportSession::updateForecast() {
    m_isForecastStale = true;
    if (std::exchange(m_isForecastUnderWay, true)) { return; }
    m_isForecastStale = false;
    m_thread.run<ExportForecast>(
        [job = m_job, choices = choices()] { return job->forecast(choices); },
        [this](ExportForecast forecast) {
            m_isForecastUnderWay = false;
            if (m_isForecastStale) { return updateForecast(); }
            m_forecast = std::move(forecast);
            m_hooks.didChange();
        });
}

// The run.

bool ExportSession::canExport() const {
    return !m_isRunning && m_preview && m_preview->hasElements();
}

AlertAnswer ExportSession::ask(const Alert& alert, bool& isGone) {
    const std::weak_ptr<bool> life = m_life;
    const AlertAnswer answer = m_ports.alerts.runModal(alert);
    isGone = life.expired();
    return answer;
}

void ExportSession::beginExport() {
    if (!canExport()) { return; }
    const std::weak_ptr<bool> life = m_life;
    const QString beside = m_path.isEmpty() ? QString() : QFileInfo(m_path).path();
    const QString last = m_forecast.lastDirectory;
    const QString directory = m_ports.openPanel.chooseFolder(
        {u"Export “%1”"_s.arg(m_name), u"Export"_s, last.isEmpty() ? beside : last});
    if (life.expired() || directory.isEmpty()) { return; }
    m_isRunning = true;
    m_stop->store(false);
    m_message.clear();
    m_hooks.didChange();
    const bool deletes = preferences().generatedCodeIncludesImages() &&
                         preferences().generatedCodeCleansImageDirectory();
    m_thread.run<size_t>([deletes, directory] { return deletes ? oldImagesCount(directory) : 0; },
                         [this, directory](size_t count) { askThenRun(directory, count); });
}

void ExportSession::askThenRun(const QString& directory, size_t oldImages) {
    bool mayRun = true;
    if (oldImages > 0) {
        bool isGone = false;
        mayRun = ask(alertBeforeDeletion(oldImages, directory), isGone).button == kDeleteAnswer;
        if (isGone) { return; }
    }
    if (mayRun) { return run(directory); }
    m_isRunning = false;
    m_hooks.didChange();
}

void ExportSession::run(const QString& directory) {
    const auto watch = std::make_shared<RunWatch>(
        RunWatch{m_stop, m_thread.channel(), m_hooks.didProgress, QElapsedTimer()});
    m_thread.run<ExportOutcome>(
        [job = m_job, choices = choices(), directory, watch] {
            return job->run(choices, directory, [watch](size_t written, size_t all) {
                return watch->goesOn(written, all);
            });
        },
        [this](const ExportOutcome& outcome) { didRun(outcome); });
}

void ExportSession::didRun(const ExportOutcome& outcome) {
    m_isRunning = false;
    if (!outcome.obstacle.isNull() || !outcome.files.failures.empty()) {
        bool isGone = false;
        ask(alertOfFailures(outcome, m_name), isGone);
        if (isGone) { return; }
    }
    if (outcome.files.isStopped) { m_message = wordsOfStop(outcome); }
    const bool isOver = !outcome.files.isStopped && !outcome.files.paths.isEmpty();
    if (isOver) { return m_hooks.didEnd(outcome); }
    updateForecast();
    m_hooks.didChange();
}

}  // namespace tweenery
