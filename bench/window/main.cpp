#include <benchmark/benchmark.h>

#include <QApplication>
#include <QStandardPaths>
#include <string_view>

#include "base/user_defaults.h"
#include "bench/window/started_program.h"
#include "model/preferences/app_preferences.h"
#include "ui/widgets/frame_style.h"

// QT_SCALE_FACTOR says at how many pixels a point.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QPA_OFFSCREEN_NO_GLX", "1");
    if (argc > 1 && argv[1] == std::string_view("--bare-window")) {
        return tweenery::bench::runBareWindow(argc, argv);
    }
    QApplication application(argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    tweenery::PCAppPreferences::registerDefaults();
    tweenery::setUpFrame(application);
    benchmark::AddCustomContext("scale", std::to_string(application.devicePixelRatio()));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) { return 1; }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
