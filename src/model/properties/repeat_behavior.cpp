#include "model/properties/repeat_behavior.h"

using namespace Qt::StringLiterals;

namespace tweenery {

QString stringFromRepeatBehavior(PCRepeatBehavior behavior) {
    switch (behavior) {
        case PCRepeatBehaviorNever:
            return u"never"_s;
        case PCRepeatBehaviorForever:
            return u"forever"_s;
        case PCRepeatBehaviorForeverAutoreverse:
            return u"forever_autoreverse"_s;
        default:
            return {};
    }
}

PCRepeatBehavior repeatBehaviorFromString(const QString& string) {
    if (string == u"forever"_s) { return PCRepeatBehaviorForever; }
    if (string == u"forever_autoreverse"_s) { return PCRepeatBehaviorForeverAutoreverse; }
    return PCRepeatBehaviorNever;
}

}  // namespace tweenery
