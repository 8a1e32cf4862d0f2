#pragma once

#include <gtest/gtest.h>

#include <QApplication>

#include "base/user_defaults.h"
#include "support/own_home.h"
#include "support/test_paths.h"
#include "ui/widgets/frame_style.h"

namespace tweenery::test {

/// The main() of test programs of widgets, which need a QApplication and no screen. Nothing comes
/// near the user's files or settings.
inline int runWidgetTests(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) { qputenv("QT_QPA_PLATFORM", "offscreen"); }
    const OwnHome home;
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");  // the desktop's choices are none of the tests' business
    QApplication application(argc, argv);
    UserDefaults::useMemory();
    setUpFrame(application);
    testing::InitGoogleTest(&argc, argv);
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]) == "--update-goldens") { updateGoldens = true; }
    }
    return RUN_ALL_TESTS();
}

}  // namespace tweenery::test
