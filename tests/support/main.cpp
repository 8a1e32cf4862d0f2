#include <gtest/gtest.h>

#include <QCoreApplication>

#include "support/test_paths.h"

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]) == "--update-goldens") {
            tweenery::test::updateGoldens = true;
        }
    }
    return RUN_ALL_TESTS();
}
