#include "support/widget_program.h"

int main(int argc, char** argv) {
    return tweenery::test::runWidgetTests(argc, argv);
}
