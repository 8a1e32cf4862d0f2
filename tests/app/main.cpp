#include <gtest/gtest.h>

#include <QApplication>

#include "support/own_home.h"
#include "support/test_paths.h"
#include "ui/widgets/frame_style.h"

/// Programs of widgets need their own application object; nothing comes near the user's files.
int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) { qputenv("QT_QPA_PLATFORM", "offscreen"); }
    const tweenery::test::OwnHome home;
    QApplication application(argc, argv);
    tweenery::setUpFrame(application);
    testing::InitGoogleTest(&argc, argv);
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]) == "--update-goldens") {
            tweenery::test::updateGoldens = true;
        }
    }
    return RUN_ALL_TESTS();
}
