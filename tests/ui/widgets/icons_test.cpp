#include "ui/widgets/icons.h"

#include <gtest/gtest.h>

#include <QPainter>

#include "base/errors.h"
#include "ui/widgets/icon_names.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

TEST(Icons, NamesOfTheCodeLeadToFiles) {
    struct Case {
        QString name;
        QString file;
        bool hasPlate;
        QString tint;  // empty: the caller's
    };
    const Case cases[] = {
        {u"group"_s, u"group"_s, false, {}},
        {u"group_active"_s, u"group"_s, true, {}},
        {u"direct_cursor_button_active"_s, u"direct_cursor_button"_s, true, {}},
        {u"play_active"_s, u"stop"_s, true, {}},
        {u"folder_dark_icon"_s, u"folder"_s, false, u"#3a3a3a"_s},
        {u"image_light_icon"_s, u"image"_s, false, u"#ffffff"_s},
        {u"locked_dark"_s, u"locked"_s, false, u"#000000"_s},
        {u"locked_light"_s, u"locked"_s, false, u"#ffffff"_s},
        {u"unlocked_dark"_s, u"unlocked"_s, false, u"#3a3a3a"_s},
        {u"hidden_light"_s, u"hidden"_s, false, u"#ffffff"_s},
        {u"property_folder_icon"_s, u"folder"_s, false, {}},
        {u"property_element_icon"_s, u"image"_s, false, {}},
        {u"ease_icon_dark_INOUT"_s, u"ease_icon_dark_INOUT"_s, false, u"#1e1e1e"_s},
        {u"ease_icon_INOUT"_s, u"ease_icon_INOUT"_s, false, {}},
        {u"loop_off_box"_s, u"loop_off_box"_s, false, u"#6a6a6a"_s},
        {u"loop_icon_reverse"_s, u"loop_icon_reverse"_s, false, u"#7a7a7a"_s},
        {u"add_button_alt"_s, u"add_button_alt"_s, false, {}},
        {u"left_pane_off"_s, u"left_pane_off"_s, false, {}},
    };
    for (const Case& c : cases) {
        const IconSource source = iconSource(c.name);
        EXPECT_EQ(source.file, c.file);
        EXPECT_EQ(source.hasPlate, c.hasPlate) << qPrintable(c.name);
        EXPECT_EQ(source.tint.isValid() ? source.tint.name() : QString(), c.tint)
            << qPrintable(c.name);
        EXPECT_FALSE(iconPixmap(c.name, {24, 24}, 1, Qt::black).isNull());
    }
    EXPECT_THROW(iconPixmap(u"no such picture"_s, {24, 24}, 1, Qt::black), AssertionFailure);
}

TEST(Icons, LinesKeepTheirWidthAtEverySize) {
    for (const double size : {18.0, 20.0, 24.0, 26.0}) {
        EXPECT_DOUBLE_EQ(iconStrokeWidth(size) * size / 24, 1.5) << size;
    }
    EXPECT_DOUBLE_EQ(iconStrokeWidth(32) * 32 / 24, 2);
    EXPECT_DOUBLE_EQ(iconStrokeWidth(48) * 48 / 24, 2);
}

TEST(Icons, TakeTheirTintAndTheScaleOfTheScreen) {
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        const QImage image = iconPixmap(u"stop"_s, {24, 24}, scale, QColor(10, 20, 30)).toImage();
        EXPECT_EQ(image.width(), qRound(24 * scale));
        EXPECT_EQ(image.devicePixelRatio(), scale);
        const QColor middle = image.pixelColor(image.width() / 2, image.height() / 2);
        EXPECT_EQ(middle, QColor(10, 20, 30)) << scale;
    }
    const QImage other = iconPixmap(u"stop"_s, {24, 24}, 1, Qt::red).toImage();
    EXPECT_EQ(other.pixelColor(12, 12), QColor(Qt::red));
    const QImage detailed =
        iconPixmap(u"loop_on_box"_s, {24, 24}, 4, Qt::black, Qt::green).toImage();
    bool hasDetail = false;
    for (int x = 0; x < detailed.width(); ++x) {
        hasDetail |= detailed.pixelColor(x, detailed.height() * 85 / 240).green() > 200;
    }
    EXPECT_TRUE(hasDetail) << "the detail keeps the file's colour";
}

}  // namespace
}  // namespace tweenery::test
