#include "ui/widgets/colors.h"

#include <gtest/gtest.h>

#include <vector>

#include "base/errors.h"

namespace tweenery::test {
namespace {

struct Pair {
    const char* what;
    QColor ink;
    QColor fill;
    double least = 4.5;
};

void expectReadable(const std::vector<Pair>& pairs, const char* look) {
    for (const Pair& pair : pairs) {
        EXPECT_GE(contrastRatio(pair.ink, pair.fill), pair.least) << look << ": " << pair.what;
    }
}

TEST(Colors, TextOfTheFrameIsReadableInEveryState) {
    const char* looks[] = {"light", "dark", "light, contrast", "dark, contrast"};
    for (int look = 0; look < 4; ++look) {
        const FrameColors& c = frameColors(look % 2 == 1, look >= 2);
        expectReadable(
            {
                {"ink on frame", c.ink, c.frame},
                {"ink on surround", c.ink, c.surround},
                {"second ink on frame", c.secondInk, c.frame},
                {"second ink on popover", c.secondInk, c.popover},
                {"ink on popover", c.ink, c.popover},
                {"ink on control", c.ink, c.control},
                {"ink on hovered control", c.ink, blended(c.hover, c.control)},
                {"ink on pressed control", c.ink, blended(c.pressed, c.control)},
                {"ink on field", c.ink, c.field},
                {"plate", c.onPlate, c.plate},
                {"hovered plate", c.onPlate, blended(c.plateHover, c.plate)},
                {"pressed plate", c.onPlate, blended(c.platePressed, c.plate)},
                {"notice", c.noticeInk, c.noticeFill},
                {"failure", c.failureInk, c.failureFill},
                {"tool tip", c.toolTipInk, c.toolTipFill},
                {"status", c.statusInk, c.statusFill},
                {"danger", c.danger, c.frame},
                {"warning", c.warning, c.frame},
                {"done", c.done, c.frame},
                {"pictures", c.icon, c.frame, 3},
                {"lines of controls", c.controlLine, c.field, 3},
                {"focus ring", c.accent, c.frame, 3},
            },
            looks[look]);
    }
}

TEST(Colors, IncreasedContrastMakesTheWorkbenchReadable) {
    const WorkbenchColors& c = workbenchColors(true);
    expectReadable(
        {
            {"fields", c.fieldInk, c.fieldFill},
            {"rows", c.rowInk, c.row},
            {"pictures of panes", c.paneIcon, c.pane},
            {"lines of fields", c.fieldLine, c.pane, 3},
            {"brackets", c.bracket, c.pane, 3},
            {"group effect", c.groupFxInk, c.groupFxFill},
        },
        "contrast");
    for (int type = PCPropertyTypeImageContents; type <= PCPropertyTypeTranslationY; ++type) {
        const auto property = static_cast<PCPropertyType>(type);
        EXPECT_GE(contrastRatio(keyButtonLine(property, true), c.pane), 3) << type;
        EXPECT_GE(contrastRatio(pictureColorOn(propertyColor(property)), propertyColor(property)),
                  3)
            << type;
    }
    EXPECT_THROW(propertyColor(PCPropertyTypeZPosition), AssertionFailure);
}

TEST(Colors, BlendingAndContrastFollowTheirDefinitions) {
    EXPECT_NEAR(contrastRatio(Qt::black, Qt::white), 21, 1e-9);
    EXPECT_NEAR(contrastRatio(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.005);
    EXPECT_EQ(blended(QColor(0, 0, 0, 51), Qt::white).name().toStdString(), "#cccccc");
}

}  // namespace
}  // namespace tweenery::test
