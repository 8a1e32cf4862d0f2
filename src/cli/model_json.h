#pragma once

#include "cli/support/json_writer.h"
#include "model/element.h"
#include "model/preferences/project_preferences.h"

namespace tweenery {

/// The stored fields of the model's parts as JSON, keys sorted. What a file does not store (an
/// identifier that an old one lacks) is null, so that two dumps of one package are equal.

/// The list of all elements of an archived tree in tree order, back to front; the counts of
/// `subelements` tell the tree. Throws InputError.
void writeElements(const KeyedUnarchiver& archive, JsonWriter& json);

/// The keys "keyframes", "propertyType" and "repeatBehavior" of an archived timeline. Throws
/// InputError.
void writeTimelineFields(const KeyedUnarchiver& archive, JsonWriter& json);

void writePreferences(const PCProjectPreferences& preferences, JsonWriter& json);

}  // namespace tweenery
