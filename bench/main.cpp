#include <benchmark/benchmark.h>

#include <QApplication>

int main(int argc, char** argv) {
    // The scene that hit tests are compared with wants an application of widgets; no display is
    // needed for it.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) { return 1; }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
