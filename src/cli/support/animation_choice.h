#pragma once

#include <QString>
#include <cstdint>
#include <vector>

#include "cli/support/verb.h"
#include "model/project.h"

namespace tweenery {

inline constexpr VerbOption kAnimationOption{
    "animation", "NAME", "by its name or identifier; without it the setup state"};

/// The animation with that name, else with that identifier. Throws InputError, which names those
/// that there are.
PCAnimation::Ptr animationNamed(const QString& name, const PCProject::Ptr& project);

/// The times of "--at 0,250,500". Throws UsageError.
std::vector<int32_t> timesFrom(const QString& text);

}  // namespace tweenery
