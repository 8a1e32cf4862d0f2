#include "model/properties/property_type.h"

#include "base/errors.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

using Kind = PropertyValueKind;

constexpr std::array<PropertyTypeRow, kPropertyTypeCount> kRows{{
    {PCPropertyTypeImageContents, "imageContents", "contents", Kind::String, "imageContents",
     "Image Source:", "NSString *", "ImageContents", "ImageContents", true},
    {PCPropertyTypeOpacity, "opacity", "opacity", Kind::Float, "opacity", "Opacity:", "float",
     "Opacity", "Opacity", false},
    {PCPropertyTypeZRotation, "zRotation", "transform.rotation.z", Kind::Float, "zRotation",
     "Rotation:", "float", "Rotation", "Rotation", false},
    {PCPropertyTypeChildrenZPositions, "zPosition", "zPosition", Kind::Array, "zPosition",
     "Z-Position:", "NSArray *", nullptr, "ZPosition", true},
    {PCPropertyTypeScale, "scale", "transform.scale", Kind::Point, nullptr,
     "Scale (X,Y):", "CGPoint", nullptr, "Scale", false},
    {PCPropertyTypeTranslation, "position", "transform.translation", Kind::Point, nullptr,
     "Translation (X,Y):", "CGPoint", nullptr, "Translation", false},
    {PCPropertyTypeScaleX, "scale.x", "transform.scale.x", Kind::Float, "xScale",
     "X Scale:", "float", "ScaleX", "Scale.X", false},
    {PCPropertyTypeScaleY, "scale.y", "transform.scale.y", Kind::Float, "yScale",
     "Y Scale:", "float", "ScaleY", "Scale.Y", false},
    {PCPropertyTypeTranslationX, "position.x", "transform.translation.x", Kind::Float,
     "xTranslation", "X Translation:", "float", "TranslationX", "Translation.X", false},
    {PCPropertyTypeTranslationY, "position.y", "transform.translation.y", Kind::Float,
     "yTranslation", "Y Translation:", "float", "TranslationY", "Translation.Y", false},
    {PCPropertyTypeZPosition, "zPosition", "zPosition", Kind::UnsignedInteger, nullptr,
     "Z-Position:", "NSUInteger", "ZPosition", "ZPosition", true},
    {PCPropertyTypeKeyAll, nullptr, nullptr, Kind::Float, nullptr, "Key All", "float", nullptr,
     nullptr, false},
}};

constexpr std::array<PCPropertyType, kElementTimelineCount> kElementTypes{
    PCPropertyTypeImageContents,      PCPropertyTypeOpacity,     PCPropertyTypeZRotation,
    PCPropertyTypeChildrenZPositions, PCPropertyTypeScaleX,      PCPropertyTypeScaleY,
    PCPropertyTypeTranslationX,       PCPropertyTypeTranslationY};

const PropertyTypeRow* rowForString(const QString& string) {
    for (const PropertyTypeRow& row : kRows) {
        if (row.storedName && string == QLatin1StringView(row.storedName)) { return &row; }
    }
    return nullptr;
}

}  // namespace

const PropertyTypeRow& propertyTypeRow(PCPropertyType type) {
    if (type < 0 || type >= kPropertyTypeCount) { failContract(u"* Property not supported"_s); }
    return kRows[static_cast<size_t>(type)];
}

QString stringFromPropertyType(PCPropertyType type) {
    const char* name = propertyTypeRow(type).storedName;
    if (!name) { failContract(u"* Property not supported"_s); }
    return QString::fromLatin1(name);
}

PCPropertyType propertyTypeFromString(const QString& string) {
    const PropertyTypeRow* row = rowForString(string);
    if (!row) { failContract(u"no known property for string '%1'"_s.arg(string)); }
    return row->type;
}

bool isKnownPropertyString(const QString& string) {
    return rowForString(string) != nullptr;
}

QString keyPathForPropertyType(PCPropertyType type) {
    const char* path = propertyTypeRow(type).keyPath;
    if (!path) { failContract(u"* property type not supported"_s); }
    return QString::fromLatin1(path);
}

bool isPointProperty(PCPropertyType type) {
    return propertyTypeRow(type).valueKind == Kind::Point;
}
bool isArrayProperty(PCPropertyType type) {
    return propertyTypeRow(type).valueKind == Kind::Array;
}
bool isStringProperty(PCPropertyType type) {
    return propertyTypeRow(type).valueKind == Kind::String;
}

std::span<const PCPropertyType, kElementTimelineCount> elementTimelineTypes() {
    return kElementTypes;
}

}  // namespace tweenery
