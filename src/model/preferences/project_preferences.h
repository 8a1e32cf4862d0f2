#pragma once

#include <QPointF>
#include <QSizeF>
#include <QString>
#include <cmath>
#include <cstdint>
#include <memory>

#include "model/preferences/app_preferences.h"
#include "model/properties/easing.h"
#include "storage/keyed_archiver.h"
#include "storage/keyed_unarchiver.h"

namespace tweenery {

/// Which Swift an export writes: that of 2014, or that of today, for Swift 5 and 6.
enum class SwiftDialect { First, Current };
/// Their words in files and on the command line; any other word is the first dialect's.
QString nameOfSwiftDialect(SwiftDialect dialect);
SwiftDialect swiftDialectNamed(const QString& name);

/// What a project remembers of its window and of its export options. Stored in the package. Setters
/// compare with the old value and mark the preferences as modified on a change; none registers an
/// undo step.
class PCProjectPreferences : public Archivable {
 public:
    /// Those of a new project: the export options and the window size last used.
    PCProjectPreferences() = default;
    /// Reads stored preferences, which count as modified. The user's own store is not written to.
    /// A window is protected from what a file may claim: zooms, sizes and offsets are brought into
    /// the ranges told below. Throws InputError.
    static std::shared_ptr<PCProjectPreferences> decode(const KeyedDecoder& coder);

    /// True when a save has to write the preferences; only a save clears it.
    bool modified() const { return m_modified; }
    void setModified(bool modified) { m_modified = modified; }

    // Lengths and offsets are in points. Setters ignore what is not finite, which no file could
    // hold.

    /// An index into the zoom stops of the timeline, with fractions. From a file: 0 to 16.
    float timelineZoomLevel() const { return m_timelineZoomLevel; }
    void setTimelineZoomLevel(float level) { change(m_timelineZoomLevel, level); }
    /// The magnification of the canvas; 1 is taken as no choice. From a file: 0 to 10.
    float canvasZoomLevel() const { return m_canvasZoomLevel; }
    void setCanvasZoomLevel(float level) { change(m_canvasZoomLevel, level); }
    /// From a file: coordinates up to a billion either way.
    QPointF canvasScrollOffset() const { return m_canvasScrollOffset; }
    void setCanvasScrollOffset(QPointF offset) { change(m_canvasScrollOffset, offset); }
    bool navigatorPaneVisible() const { return m_navigatorPaneVisible; }
    void setNavigatorPaneVisible(bool visible) { change(m_navigatorPaneVisible, visible); }
    /// From a file: 0 to 32767.
    float navigatorPaneWidth() const { return m_navigatorPaneWidth; }
    void setNavigatorPaneWidth(float width) { change(m_navigatorPaneWidth, width); }
    bool utilitiesPaneVisible() const { return m_utilitiesPaneVisible; }
    void setUtilitiesPaneVisible(bool visible) { change(m_utilitiesPaneVisible, visible); }
    /// From a file: 0 to 32767.
    float timelinePaneHeight() const { return m_timelinePaneHeight; }
    void setTimelinePaneHeight(float height) { change(m_timelinePaneHeight, height); }
    /// A change becomes the user's last window size as well. From a file: 0 to 32767 either way.
    QSizeF windowSize() const { return m_windowSize; }
    void setWindowSize(QSizeF size);
    /// From a file: coordinates up to 32767 either way.
    QPointF windowPosition() const { return m_windowPosition; }
    void setWindowPosition(QPointF position) { change(m_windowPosition, position); }
    /// In milliseconds. From a file: not negative.
    int32_t timelinePlayheadPosition() const { return m_timelinePlayheadPosition; }
    void setTimelinePlayheadPosition(int32_t timeInMS) {
        change(m_timelinePlayheadPosition, timeInMS);
    }
    /// Null for setup mode.
    const QString& selectedAnimationIdentifier() const { return m_selectedAnimationIdentifier; }
    void setSelectedAnimationIdentifier(const QString& identifier) {
        change(m_selectedAnimationIdentifier, identifier);
    }
    /// From a file: coordinates up to a billion either way.
    QPointF timelineScrollOffset() const { return m_timelineScrollOffset; }
    void setTimelineScrollOffset(QPointF offset) { change(m_timelineScrollOffset, offset); }
    /// The project has not yet had a window.
    bool newProject() const { return m_newProject; }
    void setNewProject(bool isNew) { change(m_newProject, isNew); }

    // The export options. A change becomes the user's last choice as well.

    /// Stored only; name tags and the platform decide what becomes a view.
    bool generatedCodeUsesViews() const { return m_generatedCodeUsesViews; }
    void setGeneratedCodeUsesViews(bool value);
    /// Export for iOS, not for the Mac.
    bool generatedCodeIsIOS() const { return m_generatedCodeIsIOS; }
    void setGeneratedCodeIsIOS(bool value);
    /// Export in Swift, not in Objective-C.
    bool generatedCodeUsesSwift() const { return m_generatedCodeUsesSwift; }
    void setGeneratedCodeUsesSwift(bool value);
    /// Of an export in Swift. New projects have the current one; files that say nothing of it, as
    /// other writers leave them, have the first, and the first is not written.
    SwiftDialect generatedCodeSwiftDialect() const { return m_generatedCodeSwiftDialect; }
    void setGeneratedCodeSwiftDialect(SwiftDialect dialect) {
        change(m_generatedCodeSwiftDialect, dialect);
    }
    /// Export copies the artwork.
    bool generatedCodeIncludesImages() const { return m_generatedCodeIncludesImages; }
    void setGeneratedCodeIncludesImages(bool value);
    /// The exported view clips to its bounds.
    bool generatedCodeClipsToBounds() const { return m_generatedCodeClipsToBounds; }
    void setGeneratedCodeClipsToBounds(bool value);
    /// Export empties the image directory first.
    bool generatedCodeCleansImageDirectory() const { return m_generatedCodeCleansImageDirectory; }
    void setGeneratedCodeCleansImageDirectory(bool value);
    /// Stored only.
    bool generatedCodeTakesParameters() const { return m_generatedCodeTakesParameters; }
    void setGeneratedCodeTakesParameters(bool value);

    /// The easing of new keyframes; easingModeInstant makes them jump, but is stored as linear.
    PCEasingMode defaultEasingMode() const { return m_defaultEasingMode; }
    void setDefaultEasingMode(PCEasingMode mode) { change(m_defaultEasingMode, mode); }

    ArchiveClass archiveClass() const override { return {"PCProjectPreferences"}; }
    void encodeWithCoder(KeyedEncoder& coder) const override;

 private:
    template <typename Preferences, typename Visit>
    static void visitStored(Preferences& preferences, const Visit& visit);

    /// True when the value differed.
    template <typename T>
    bool change(T& field, const T& value) {
        if (isSame(field, value) || !isFinite(value)) { return false; }
        field = value;
        m_modified = true;
        return true;
    }
    template <typename T>
    static bool isSame(const T& a, const T& b) {
        return a == b;
    }
    template <typename T>
    static bool isFinite(const T&) {
        return true;
    }
    static bool isFinite(float number) { return std::isfinite(number); }
    static bool isFinite(QPointF point) {
        return std::isfinite(point.x()) && std::isfinite(point.y());
    }
    static bool isFinite(QSizeF size) {
        return std::isfinite(size.width()) && std::isfinite(size.height());
    }
    // Qt compares points and sizes with some room; a small move is a change too.
    static bool isSame(QPointF a, QPointF b) { return a.x() == b.x() && a.y() == b.y(); }
    static bool isSame(QSizeF a, QSizeF b) {
        return a.width() == b.width() && a.height() == b.height();
    }

    bool m_modified = false;
    float m_timelineZoomLevel = 1;
    float m_canvasZoomLevel = 1;
    QPointF m_canvasScrollOffset;
    bool m_navigatorPaneVisible = true;
    float m_navigatorPaneWidth = 250;
    bool m_utilitiesPaneVisible = true;
    float m_timelinePaneHeight = 250;
    QSizeF m_windowSize = PCAppPreferences::lastWindowSize();
    QPointF m_windowPosition;
    int32_t m_timelinePlayheadPosition = 0;
    QString m_selectedAnimationIdentifier;
    QPointF m_timelineScrollOffset;
    bool m_newProject = true;
    bool m_generatedCodeUsesViews = PCAppPreferences::generatedCodeUsesViews();
    bool m_generatedCodeIsIOS = PCAppPreferences::generatedCodeIsIOS();
    bool m_generatedCodeUsesSwift = PCAppPreferences::generatedCodeUsesSwift();
    SwiftDialect m_generatedCodeSwiftDialect = SwiftDialect::Current;
    bool m_generatedCodeIncludesImages = PCAppPreferences::generatedCodeIncludesImages();
    bool m_generatedCodeClipsToBounds = PCAppPreferences::generatedCodeClipsToBounds();
    bool m_generatedCodeCleansImageDirectory =
        PCAppPreferences::generatedCodeCleansImageDirectory();
    bool m_generatedCodeTakesParameters = PCAppPreferences::generatedCodeTakesParameters();
    PCEasingMode m_defaultEasingMode = PCEasingModeLinear;
};

}  // namespace tweenery
