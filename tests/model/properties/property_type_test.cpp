#include "model/properties/property_type.h"

#include <gtest/gtest.h>

#include "base/errors.h"
#include "model/property_timeline_group.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

TEST(PropertyType, RefusesWhatHasNoName) {
    const std::vector<std::pair<std::function<void()>, const char*>> cases = {
        {[] { stringFromPropertyType(PCPropertyTypeKeyAll); }, "* Property not supported"},
        {[] { keyPathForPropertyType(PCPropertyTypeKeyAll); }, "* property type not supported"},
        {[] { propertyTypeFromString(u"skew"_s); }, "no known property for string 'skew'"},
        {[] { filenameOfTimelineType(PCPropertyTypeScale); }, "type not supported: scale"},
    };
    for (const auto& [call, message] : cases) {
        try {
            call();
            ADD_FAILURE() << "no failure: " << message;
        } catch (const AssertionFailure& failure) {
            EXPECT_EQ(failure.message().toStdString(), message);
        }
    }
}

}  // namespace
}  // namespace tweenery::test
