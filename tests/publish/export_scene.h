#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include "model/document.h"
#include "publish/export_session.h"
#include "storage/bitmap.h"
#include "support/model_builder.h"
#include "support/model_recorders.h"
#include "support/scripted_clock.h"
#include "support/scripted_ports.h"
#include "support/test_paths.h"

namespace tweenery::test {

/// A project with images in a folder of its own, and a desktop that is scripted. The session is
/// made by open().
class ExportScene {
 public:
    QTemporaryDir folder{templateOfFastPlaces()};
    ScriptedAlerts alerts;
    ScriptedOpenPanel panel;
    ScriptedClock clock;
    RecordingLog log;
    PCDocument document{alerts, log};
    PCProject::Ptr project = PCProject::init();
    std::vector<ExportOutcome> outcomes;
    std::vector<size_t> progress;
    std::unique_ptr<ExportSession> session;
    QString target = folder.filePath(QStringLiteral("out"));

    /// Each element that is no group shows an image of its own: "A.png".
    explicit ExportScene(std::string_view tree = "A B") {
        buildTree(*project, tree);
        for (const PCElement::Ptr& element : project->canvas()->elementAndAllDescendants()) {
            if (element != project->canvas() && !element->isGroup()) { giveImage(*element); }
        }
        document.setProject(project);
        document.setDisplayName(QStringLiteral("Card"));
        panel.folder = target;
    }

    ExportHistory history() const {
        return ExportHistory(folder.filePath(QStringLiteral("history")));
    }
    QString path() const { return folder.filePath(QStringLiteral("Card.tweenery")); }
    ExportSession& open() {
        session.reset();
        session = std::make_unique<ExportSession>(
            ExportSession::Subject{project, document.snapshot(), path()},
            ExportSession::Ports{alerts, panel, clock}, history(),
            ExportSession::Hooks{
                [] {}, [this](size_t written, size_t) { progress.push_back(written); },
                [this](const ExportOutcome& outcome) { outcomes.push_back(outcome); }});
        EXPECT_TRUE(wait([this] { return session->preview() && !isForecastEmpty(); }));
        return *session;
    }
    bool isForecastEmpty() const {
        return session->forecast().sources.isEmpty() && session->forecast().obstacle.isNull();
    }
    void run() {
        session->beginExport();
        EXPECT_TRUE(wait([this] { return !session->isRunning(); }));
    }
    void exportNow() {
        open();
        run();
    }
    const ExportToggle& toggle(const char* label) const {
        for (const ExportToggle& toggle : exportToggles()) {
            if (QLatin1String(toggle.label) == QLatin1String(label)) { return toggle; }
        }
        throw std::logic_error(label);
    }
    QStringList written() const {
        QStringList names;
        for (const QString& place : {QString(), QStringLiteral("images/")}) {
            const QDir directory(target + u'/' + place);
            for (const QString& name : directory.entryList(QDir::Files | QDir::Hidden)) {
                names << place + name;
            }
        }
        return names;
    }
    template <class Condition>
    static bool wait(const Condition& condition) {
        QElapsedTimer timer;
        timer.start();
        while (!condition() && timer.elapsed() < 10'000) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        }
        return condition();
    }
    void giveImage(PCElement& element) {
        QImage image(16, 16, QImage::Format_ARGB32);
        image.fill(Qt::red);
        const QString file = element.name() + QStringLiteral(".png");
        project->imageSetManager().addOrReplaceImageSetWithPCImage(
            PCImage::pcimageWithData(encodeImage(image, ImageFormat::Png), file));
        element.setImageName(file);
        element.setSize({16, 16});
    }
};

}  // namespace tweenery::test
