#pragma once

#include <QSizeF>

namespace tweenery {

/// Light or dark windows.
enum class PCAppTheme { AsTheSystem, Light, Dark };

/// What playing does at the last keyframe.
enum class PCPlaybackEnd { PlayOn, Stop, Loop };

/// The choices that belong to the user, kept in UserDefaults::standard(). Among them are the last
/// used export options, from which a new project starts. Every setter writes to the disk at once,
/// unless it says otherwise.
class PCAppPreferences {
 public:
    PCAppPreferences() = delete;

    /// Makes the defaults known to the store. Called at start-up; a getter answers the same default
    /// without it.
    static void registerDefaults();

    /// New keyframes tween; otherwise they jump.
    static bool tweenOn();
    static void setTweenOn(bool on);
    static bool showsGuidelines();
    static void setShowsGuidelines(bool shows);
    /// How much the children of a scaled group follow: always 1. The stored value has no effect.
    static float linkFXFactor();
    static void setLinkFXFactor(float factor);
    /// What the slider shows: the stored value, 0 to 5.
    static float storedLinkFXFactor();
    static bool showsTimelineSkimbar();
    static void setShowsTimelineSkimbar(bool shows);
    static PCPlaybackEnd playbackEnd();
    static void setPlaybackEnd(PCPlaybackEnd end);
    static bool showsOnboardWindowAtLaunch();
    static void setShowsOnnboardWindowAtLaunch(bool shows);

    // How windows look; each adds to what the desktop asks for.
    static PCAppTheme theme();
    static void setTheme(PCAppTheme theme);
    static bool increasesContrast();
    static void setIncreasesContrast(bool increases);
    static bool reducesMotion();
    static void setReducesMotion(bool reduces);

    // Alerts that the user may have silenced.
    static bool showsRetinaArtworkAlert();
    static void setShowsRetinaArtworkAlert(bool shows);
    static bool showsSetupFirstAlert();
    static void setShowsSetupFirstAlert(bool shows);
    static bool showsChangeOtherAnimationsStateAlert();
    static void setShowsChangeOtherAnimationsStateAlert(bool shows);

    /// The size of a document window in points; 1000 by 600 when none, or none that can be read, is
    /// stored. Stored as text, "{1000, 600}".
    static QSizeF lastWindowSize();
    /// Leaves the writing to the next other setter, because it is called throughout a resize.
    static void setlastWindowSize(QSizeF size);

    // The last used export options; PCProjectPreferences says what each means.
    static bool generatedCodeUsesViews();
    static void setGeneratedCodeUsesViews(bool value);
    static bool generatedCodeIsIOS();
    static void setGeneratedCodeIsIOS(bool value);
    static bool generatedCodeUsesSwift();
    static void setGeneratedCodeUsesSwift(bool value);
    static bool generatedCodeIncludesImages();
    static void setGeneratedCodeIncludesImages(bool value);
    static bool generatedCodeClipsToBounds();
    static void setGeneratedCodeClipsToBounds(bool value);
    static bool generatedCodeCleansImageDirectory();
    static void setGeneratedCodeCleansImageDirectory(bool value);
    static bool generatedCodeTakesParameters();
    static void setGeneratedCodeTakesParameters(bool value);
};

}  // namespace tweenery
