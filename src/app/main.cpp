#include <QApplication>
#include <QTimer>
#include <cstdio>

#include "app/command_line.h"
#include "app/document_controller.h"
#include "app/project_dialog.h"
#include "app/qt_ports.h"
#include "app/single_instance.h"
#include "base/user_defaults.h"
#include "editor/documents/project_path.h"
#include "model/preferences/app_preferences.h"
#include "storage/system_names.h"
#include "ui/canvas/canvas_accessible.h"
#include "ui/inspector/z_position_accessible.h"
#include "ui/timeline/timeline_accessible.h"
#include "ui/widgets/alert_dialog.h"
#include "ui/widgets/frame_style.h"

using namespace Qt::StringLiterals;
using namespace tweenery;

namespace {

constexpr int kUsageError = 2;

// What is printed instead of running; the exit code.
int answer(const CommandLine& line) {
    const bool isRefused = line.action == CommandLine::Action::Refuse;
    std::fputs(qPrintable(line.message), isRefused ? stderr : stdout);
    return isRefused ? kUsageError : 0;
}

void setUpApplication(QApplication& application) {
    QApplication::setOrganizationName(u"Tweenery"_s);
    QApplication::setApplicationName(u"Tweenery"_s);
    QApplication::setApplicationVersion(QStringLiteral(TWEENERY_VERSION));
    QApplication::setDesktopFileName(u"org.tweenery.Tweenery"_s);
    QApplication::setQuitOnLastWindowClosed(true);
    UserDefaults::useSettingsOfUser();
    PCAppPreferences::registerDefaults();
    setUpFrame(application);
    installCanvasAccessibility();
    installTimelineAccessibility();
    installZPositionAccessibility();
}

QStringList decoded(const QByteArrayList& paths) {
    QStringList texts;
    for (const QByteArray& path : paths) {
        texts << textOfSystemName(path);
    }
    return texts;
}

// The desktop's ports, and what open documents share.
struct Program {
    QtAlertPort alerts;
    QtOpenPanel openPanel;
    QtClipboard clipboard;
    QtWorkspace workspace;
    SteadyMediaClock clock;
    StandardErrorLog log;
    ProjectDialog projectDialog{alerts};
    DocumentServices services{alerts,
                              log,
                              clock,
                              [] { return QDateTime::currentDateTime(); },
                              RecoveryStore(stateFolder() + u"/recovery"_s),
                              stateFolder() + u"/locks"_s};
    PCDocumentController documents{
        services, {alerts, openPanel, clipboard, workspace, clock, log}, projectDialog};
};

int run(QApplication& application, const CommandLine& line) {
    SingleInstance instance;
    if (!line.isNewInstance && instance.start(line.projects) == SingleInstance::Role::HandedOver) {
        return 0;
    }
    setUpApplication(application);
    Program program;
    const auto open = [&program](const QByteArrayList& projects) {
        program.documents.open(decoded(projects));
        program.documents.raise();
    };
    instance.setHandler(open);
    QTimer::singleShot(0, &application, [&program, &line, open] {
        program.documents.openRecovered();
        if (line.projects.isEmpty()) { return program.documents.greet(); }
        open(line.projects);
    });
    return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    const CommandLine line = CommandLine::ofProcess(argc, argv);
    if (line.action != CommandLine::Action::Run) { return answer(line); }
    QApplication application(argc, argv);
    return run(application, line);
}
