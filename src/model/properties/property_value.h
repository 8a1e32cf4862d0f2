#pragma once

#include <QPointF>
#include <QString>
#include <QStringList>
#include <variant>

namespace tweenery {

/// What a keyframe can hold, or a timeline can answer: nothing, a 32-bit number, a point, an array
/// of element identifiers (back to front), or the name of an image set.
using PropertyValue = std::variant<std::monostate, float, QPointF, QStringList, QString>;

/// The number in `value`, 0 when it holds something else; likewise the others.
float floatOfValue(const PropertyValue& value);
QPointF pointOfValue(const PropertyValue& value);
QStringList arrayOfValue(const PropertyValue& value);
QString stringOfValue(const PropertyValue& value);

/// Exact equality: same kind, same number, both coordinates, same strings in the same order.
bool valuesEqual(const PropertyValue& a, const PropertyValue& b);

/// For descriptions: numbers in their shortest form, points as {x, y}, arrays as (a, b).
QString describeValue(const PropertyValue& value);

}  // namespace tweenery
