#include "cli/support/animation_choice.h"

#include "base/errors.h"
#include "storage/package_entries.h"

using namespace Qt::StringLiterals;

namespace tweenery {

PCAnimation::Ptr animationNamed(const QString& name, const PCProject::Ptr& project) {
    const PCAnimationsManager& manager = project->animationsManager();
    QStringList names;
    for (const PCAnimation::Ptr& animation : manager.animations()) {
        if (animation->name() == name) { return animation; }
        names += u'\'' + animation->name() + u'\'';
    }
    if (PCAnimation::Ptr animation = manager.animationForIdentifier(name)) { return animation; }
    throw InputError(kAnimationsEntry,
                     u"there is none named '%1'; %2"_s.arg(
                         name, names.isEmpty() ? u"the project has no animations"_s
                                               : u"there are "_s + names.join(u", "_s)));
}

std::vector<int32_t> timesFrom(const QString& text) {
    std::vector<int32_t> times;
    for (const QString& part : text.split(u',')) {
        bool isNumber = false;
        const int32_t time = part.trimmed().toInt(&isNumber);
        if (!isNumber || time < 0) {
            throw UsageError{u"--at takes whole milliseconds, 0 or later, not '%1'"_s.arg(part)};
        }
        times.push_back(time);
    }
    return times;
}

}  // namespace tweenery
