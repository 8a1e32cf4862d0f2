#include "publish/export_toggles.h"

#include <array>

namespace tweenery {
namespace {

using P = PCProjectPreferences;

constexpr std::array<ExportToggle, 8> kToggles{{
    {"Language", "Objective-C", "Export Objective-C", "objc", nullptr, &P::generatedCodeUsesSwift,
     &P::setGeneratedCodeUsesSwift, false, false, false},
    {"Language", "Swift", "Export Swift", "swift", nullptr, &P::generatedCodeUsesSwift,
     &P::setGeneratedCodeUsesSwift, true, false, false},
    {"Platform", "Mac", "Export Mac Code", "mac", nullptr, &P::generatedCodeIsIOS,
     &P::setGeneratedCodeIsIOS, false, false, false},
    {"Platform", "iOS", "Export iOS Code", "ios", nullptr, &P::generatedCodeIsIOS,
     &P::setGeneratedCodeIsIOS, true, false, false},
    {"Edges", "Unbounded", "Unbounded", "unbounded", nullptr, &P::generatedCodeClipsToBounds,
     &P::setGeneratedCodeClipsToBounds, false, false, false},
    {"Edges", "Clips To Bounds", "Clips To Bounds", "clip", nullptr, &P::generatedCodeClipsToBounds,
     &P::setGeneratedCodeClipsToBounds, true, false, false},
    {"Artwork", "Include Images", "Include Images In Export", "include_images", "include_images_no",
     &P::generatedCodeIncludesImages, &P::setGeneratedCodeIncludesImages, true, true, false},
    {"Artwork", "Delete Old Images", "Delete contents of images directory", "clean_dir",
     "clean_dir_no", &P::generatedCodeCleansImageDirectory,
     &P::setGeneratedCodeCleansImageDirectory, true, true, true},
}};

}  // namespace

std::span<const ExportToggle> exportToggles() {
    return kToggles;
}

void ExportToggle::press(PCProjectPreferences& preferences) const {
    if (!isAvailable(preferences)) { return; }
    const bool turnsOn = !isSwitch || !isOn(preferences);
    (preferences.*setPreference)(turnsOn == onValue);
    for (const ExportToggle& other : kToggles) {
        if (!other.isAvailable(preferences)) { (preferences.*other.setPreference)(!other.onValue); }
    }
}

}  // namespace tweenery
