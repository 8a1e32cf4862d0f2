#include "model/properties/property_value.h"

#include "base/number_text.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

template <typename T>
T valueOr(const PropertyValue& value, const T& other) {
    const T* held = std::get_if<T>(&value);
    return held ? *held : other;
}

template <typename Number>
QString numberText(Number number) {
    return QString::fromStdString(shortestText(number));
}

}  // namespace

float floatOfValue(const PropertyValue& value) {
    return valueOr(value, 0.0F);
}
QPointF pointOfValue(const PropertyValue& value) {
    return valueOr(value, QPointF());
}
QStringList arrayOfValue(const PropertyValue& value) {
    return valueOr(value, QStringList());
}
QString stringOfValue(const PropertyValue& value) {
    return valueOr(value, QString());
}

bool valuesEqual(const PropertyValue& a, const PropertyValue& b) {
    const QPointF* first = std::get_if<QPointF>(&a);
    const QPointF* second = std::get_if<QPointF>(&b);
    // The point type's own operator compares fuzzily.
    if (first && second) { return first->x() == second->x() && first->y() == second->y(); }
    return a == b;
}

QString describeValue(const PropertyValue& value) {
    if (const float* number = std::get_if<float>(&value)) { return numberText(*number); }
    if (const QPointF* point = std::get_if<QPointF>(&value)) {
        return u"{%1, %2}"_s.arg(numberText(point->x()), numberText(point->y()));
    }
    if (const QStringList* array = std::get_if<QStringList>(&value)) {
        return u"(%1)"_s.arg(array->join(u", "_s));
    }
    const QString text = stringOfValue(value);
    return text.isNull() ? u"(null)"_s : text;
}

}  // namespace tweenery
