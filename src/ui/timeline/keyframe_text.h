#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>

#include "model/keyed_property_timeline.h"

namespace tweenery {

// How keyframes and tweens are called by assistive tools and tool tips, and what their context
// menus hold. `index` is that of a keyframe of the timeline.

/// "X Translation": the name of the row.
QString timelineName(const PCKeyedPropertyTimeline& timeline);
/// "X Translation, 1000 ms".
QString keyframeName(const PCKeyedPropertyTimeline& timeline, size_t index);
/// Its value, and the easing to it: "25 pt, in-out".
QString keyframeDescription(const PCKeyedPropertyTimeline& timeline, size_t index);
/// "X Translation, 1000 to 2000 ms": the stretch that ends in the keyframe.
QString tweenName(const PCKeyedPropertyTimeline& timeline, size_t endIndex);
/// "in-out".
QString easingName(const PCKeyedPropertyTimeline& timeline, size_t index);
/// "Key All, 1000 ms".
QString masterKeyframeName(int32_t timeInMS);
/// "No loop", "Loop", "Autoreverse".
QString loopModeName(PCRepeatBehavior behavior);

/// "Key All (K)": a tool tip with the shortcut of the command, if it has one.
QString commandToolTip(const QString& text, const QString& command);

/// Commands of the context menus, by their names.
QStringList keyframeMenu(bool canSwitchTransition);
QStringList trackMenu();
QStringList rulerMenu();
QStringList timelineRowMenu();
QStringList elementRowMenu();

}  // namespace tweenery
