#pragma once

#include <QString>

#include "base/number_text.h"

namespace tweenery {

/// "1 element", "2 elements".
inline QString counted(size_t count, QStringView noun) {
    const QString text = QString::number(count) + QLatin1Char(' ') + noun.toString();
    return count == 1 ? text : text + QLatin1Char('s');
}

/// The number as a person would write it: the shortest text that tells it from all others.
inline QString numberText(double value) {
    return QString::fromStdString(shortestText(value));
}

}  // namespace tweenery
