// Draws the sample projects anew: make_samples ICONS FOLDER

#include <QGuiApplication>
#include <cstdio>
#include <exception>

#include "sample_scene.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("Usage: make_samples ICONS FOLDER\n", stderr);
        return 2;
    }
    try {
        namespace samples = tweenery::samples;
        samples::makeTitle(arguments[1], arguments[2]);
        samples::makeWeatherCard(arguments[2]);
        samples::makeLoadingDots(arguments[2]);
        samples::makePaperBoat(arguments[2]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "make_samples: %s\n", error.what());
        return 1;
    }
    return 0;
}
