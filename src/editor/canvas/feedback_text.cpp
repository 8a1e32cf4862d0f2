#include "editor/canvas/feedback_text.h"

#include <QtMath>

#include "base/number_text.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

QString numberText(double value, int decimals) {
    QString text = QString::fromStdString(fixedText(value, decimals));
    if (text.contains(u'.')) {
        while (text.endsWith(u'0')) {
            text.chop(1);
        }
        if (text.endsWith(u'.')) { text.chop(1); }
    }
    return text == "-0"_L1 ? u"0"_s : text.replace(u'-', u'\u2212');
}

}  // namespace

QString distanceText(QPointF distance) {
    return u"x %1, y %2"_s.arg(numberText(distance.x(), 1), numberText(distance.y(), 1));
}

QString sizeText(QSizeF size) {
    return u"%1 \u00d7 %2"_s.arg(numberText(size.width(), 1), numberText(size.height(), 1));
}

QString percentText(QPointF factors) {
    return u"%1 % \u00d7 %2 %"_s.arg(numberText(factors.x() * 100, 0),
                                     numberText(factors.y() * 100, 0));
}

QString angleText(double radians) {
    return numberText(qRadiansToDegrees(radians), 1) + u'\u00b0';
}

}  // namespace tweenery
