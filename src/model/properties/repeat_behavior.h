#pragma once

#include <QString>
#include <cstdint>

namespace tweenery {

enum PCRepeatBehavior : int64_t {
    PCRepeatBehaviorNever = 0,
    PCRepeatBehaviorForever = 1,
    PCRepeatBehaviorForeverAutoreverse = 2,
};

/// "never", "forever", "forever_autoreverse"; null for any other number.
QString stringFromRepeatBehavior(PCRepeatBehavior behavior);
/// PCRepeatBehaviorNever for any text that is none of the three.
PCRepeatBehavior repeatBehaviorFromString(const QString& string);

}  // namespace tweenery
