#include <gtest/gtest.h>

#include <QApplication>
#include <QStandardPaths>

#include "base/user_defaults.h"
#include "ui/widgets/frame_style.h"

/// Programs of widgets need a QApplication, and no screen.
int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) { qputenv("QT_QPA_PLATFORM", "offscreen"); }
    QStandardPaths::setTestModeEnabled(true);
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");  // the desktop's choices are none of the tests' business
    qunsetenv("XDG_RUNTIME_DIR");
    QApplication application(argc, argv);
    tweenery::UserDefaults::useMemory();
    tweenery::setUpFrame(application);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
