#pragma once

#include <QString>
#include <array>
#include <cstdint>
#include <span>

namespace tweenery {

/// The properties that a timeline can stand for. The numbers are fixed; files hold the stored name.
enum PCPropertyType : int32_t {
    PCPropertyTypeImageContents = 0,
    PCPropertyTypeOpacity = 1,
    PCPropertyTypeZRotation = 2,
    PCPropertyTypeChildrenZPositions = 3,
    PCPropertyTypeScale = 4,        // combined row of the timeline display
    PCPropertyTypeTranslation = 5,  // combined row of the timeline display
    PCPropertyTypeScaleX = 6,
    PCPropertyTypeScaleY = 7,
    PCPropertyTypeTranslationX = 8,
    PCPropertyTypeTranslationY = 9,
    PCPropertyTypeZPosition = 10,  // one element's place among its siblings, made for the export
    PCPropertyTypeKeyAll = 11,     // the Key All row
};

inline constexpr int32_t kPropertyTypeCount = 12;
/// How many timelines an element has: types 0 to 3 and 6 to 9.
inline constexpr size_t kElementTimelineCount = 8;

enum class PropertyValueKind { String, Float, Array, Point, UnsignedInteger };

/// Everything that file, playback, inspector, timeline display and export know of a property.
struct PropertyTypeRow {
    PCPropertyType type;
    const char* storedName;  // null: none
    const char* keyPath;     // null: none
    PropertyValueKind valueKind;
    const char* fileStem;  // of "<stem>.data" in an animation's directory; null: never stored
    const char* displayText;
    const char* exportType;         // type in generated code
    const char* qualifier;          // of names in generated code; null: never generated
    const char* playbackQualifier;  // of animations that play on the canvas; null: never played
    bool onlyJumps;                 // never tweens
};

/// The row of `type`, 0 to 11; throws AssertionFailure for others.
const PropertyTypeRow& propertyTypeRow(PCPropertyType type);

/// Throws AssertionFailure "* Property not supported" for the Key All type.
QString stringFromPropertyType(PCPropertyType type);
/// Throws AssertionFailure "no known property for string '%@'".
PCPropertyType propertyTypeFromString(const QString& string);
bool isKnownPropertyString(const QString& string);
/// Throws AssertionFailure "* property type not supported" for the Key All type.
QString keyPathForPropertyType(PCPropertyType type);

/// Opacity, rotation, and the halves of scale and translation.
constexpr bool isFloatProperty(PCPropertyType type) {
    return type == PCPropertyTypeOpacity || type == PCPropertyTypeZRotation ||
           (type >= PCPropertyTypeScaleX && type <= PCPropertyTypeTranslationY);
}
bool isPointProperty(PCPropertyType type);
bool isArrayProperty(PCPropertyType type);
bool isStringProperty(PCPropertyType type);

/// The eight types of an element's timelines, in the order of their numbers.
std::span<const PCPropertyType, kElementTimelineCount> elementTimelineTypes();
/// The place of a type among those eight (0 to 7), or -1.
constexpr int elementTimelineSlot(PCPropertyType type) {
    if (type >= PCPropertyTypeImageContents && type <= PCPropertyTypeChildrenZPositions) {
        return type;
    }
    if (type >= PCPropertyTypeScaleX && type <= PCPropertyTypeTranslationY) { return type - 2; }
    return -1;
}

}  // namespace tweenery
