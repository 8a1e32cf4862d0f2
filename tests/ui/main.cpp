#include <gtest/gtest.h>

#include <QApplication>

#include "base/user_defaults.h"
#include "support/own_home.h"
#include "ui/widgets/frame_style.h"

/// Programs of widgets need a QApplication, and no screen.
int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) { qputenv("QT_QPA_PLATFORM", "offscreen"); }
    const tweenery::test::OwnHome home;
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");  // the desktop's choices are none of the tests' business
    QApplication application(argc, argv);
    tweenery::UserDefaults::useMemory();
    tweenery::setUpFrame(application);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
