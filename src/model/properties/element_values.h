#pragma once

#include <QPointF>
#include <QString>
#include <QStringList>

namespace tweenery {

/// The animated properties of an element at one time. Image and children order are never null; they
/// stay the element's own, and good until it changes or is asked for another time.
struct ElementValues {
    float opacity = 0;
    float rotation = 0;  // radians
    QPointF scale;
    QPointF translation;
    const QString* image = nullptr;
    const QStringList* children = nullptr;
};

}  // namespace tweenery
