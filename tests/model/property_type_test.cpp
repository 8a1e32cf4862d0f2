#include "model/property_type.h"

#include <gtest/gtest.h>

#include "model/easing.h"
#include "model/property_timeline_group.h"
#include "model/repeat_behavior.h"
#include "platform/errors.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

template <typename Call>
std::string failureOf(Call call) {
    try {
        call();
    } catch (const AssertionFailure& failure) {
        return failure.message().toStdString();
    }
    return "no failure";
}

TEST(PropertyType, IsOneRowOfOneTable) {
    struct Row {
        int32_t type;
        const char *stored, *keyPath, *file, *display, *exported;
    };
    const std::vector<Row> rows = {
        {0, "imageContents", "contents", "imageContents.data", "Image Source:", "NSString *"},
        {1, "opacity", "opacity", "opacity.data", "Opacity:", "float"},
        {2, "zRotation", "transform.rotation.z", "zRotation.data", "Rotation:", "float"},
        {3, "zPosition", "zPosition", "zPosition.data", "Z-Position:", "NSArray *"},
        {4, "scale", "transform.scale", nullptr, "Scale (X,Y):", "CGPoint"},
        {5, "position", "transform.translation", nullptr, "Translation (X,Y):", "CGPoint"},
        {6, "scale.x", "transform.scale.x", "xScale.data", "X Scale:", "float"},
        {7, "scale.y", "transform.scale.y", "yScale.data", "Y Scale:", "float"},
        {8, "position.x", "transform.translation.x", "xTranslation.data",
         "X Translation:", "float"},
        {9, "position.y", "transform.translation.y", "yTranslation.data",
         "Y Translation:", "float"},
        {10, "zPosition", "zPosition", nullptr, "Z-Position:", "NSUInteger"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.type);
        const auto timeline = PCKeyedPropertyTimeline::initForElement(nullptr, row.type);
        EXPECT_EQ(stringFromPropertyType(row.type).toStdString(), row.stored);
        EXPECT_EQ(keyPathForPropertyType(row.type).toStdString(), row.keyPath);
        EXPECT_EQ(timeline->displayString().toStdString(), row.display);
        EXPECT_EQ(timeline->EXPORT_propertyTypeAsString().toStdString(), row.exported);
        // The two z positions share their name; files mean the children's order.
        EXPECT_EQ(propertyTypeFromString(QString::fromLatin1(row.stored)),
                  row.type == 10 ? 3 : row.type);
        const bool isFloat = row.type == 1 || row.type == 2 || (row.type >= 6 && row.type <= 9);
        EXPECT_EQ(isFloatProperty(row.type), isFloat);
        EXPECT_EQ(isPointProperty(row.type), row.type == 4 || row.type == 5);
        EXPECT_EQ(timeline->isInstantTransition(),
                  row.type == 0 || row.type == 3 || row.type == 10);
        EXPECT_EQ(elementTimelineSlot(row.type) >= 0, row.file != nullptr);
        if (row.file) {
            EXPECT_EQ(filenameOfTimelineType(row.type).toStdString(), row.file);
        } else {
            EXPECT_EQ(failureOf([&] { filenameOfTimelineType(row.type); }),
                      std::string("type not supported: ") + row.stored);
        }
    }
    EXPECT_EQ(failureOf([] { stringFromPropertyType(PCPropertyTypeKeyAll); }),
              "* Property not supported");
    EXPECT_EQ(failureOf([] { keyPathForPropertyType(PCPropertyTypeKeyAll); }),
              "* property type not supported");
    EXPECT_EQ(failureOf([] { propertyTypeFromString(u"skew"_s); }),
              "no known property for string 'skew'");
    EXPECT_FALSE(isFloatProperty(PCPropertyTypeKeyAll));
}

TEST(RepeatBehavior, HasANameBothWays) {
    for (const auto& [behavior, name] :
         {std::pair(0, "never"), std::pair(1, "forever"), std::pair(2, "forever_autoreverse")}) {
        EXPECT_EQ(stringFromRepeatBehavior(behavior).toStdString(), name);
        EXPECT_EQ(repeatBehaviorFromString(QString::fromLatin1(name)), behavior);
    }
    EXPECT_TRUE(stringFromRepeatBehavior(3).isNull());
    EXPECT_EQ(repeatBehaviorFromString(u"Forever"_s), 0);
    EXPECT_EQ(repeatBehaviorFromString({}), 0);
}

}  // namespace
}  // namespace tweenery::test
