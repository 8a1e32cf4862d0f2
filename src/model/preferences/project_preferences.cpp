#include "model/preferences/project_preferences.h"

#include <algorithm>

#include "model/properties/easing.h"

namespace tweenery {

namespace {

// A window system counts pixels of a window in 16 bits.
constexpr float maximumLength = 32767;
// Far beyond any canvas or timeline, and still an int.
constexpr double maximumOffset = 1e9;
constexpr float lastTimelineZoomStop = 16;
constexpr float maximumMagnification = 10;

float lengthIn(float length) {
    return std::clamp(length, 0.0F, maximumLength);
}

QPointF pointIn(QPointF point, double limit) {
    return {std::clamp(point.x(), -limit, limit), std::clamp(point.y(), -limit, limit)};
}

QSizeF sizeIn(QSizeF size) {
    return size.expandedTo({0, 0}).boundedTo({maximumLength, maximumLength});
}

}  // namespace

std::shared_ptr<PCProjectPreferences> PCProjectPreferences::decode(const KeyedDecoder& coder) {
    auto result = std::make_shared<PCProjectPreferences>();
    PCProjectPreferences& p = *result;
    coder.requireClass(p.archiveClass().name);
    const auto has = [&](std::string_view key) { return coder.containsValueForKey(key); };

    p.m_timelineZoomLevel =
        std::clamp(coder.decodeFloat("timelineZoomLevel"), 0.0F, lastTimelineZoomStop);
    p.m_canvasZoomLevel = has("canvasZoomLevel") ? std::clamp(coder.decodeFloat("canvasZoomLevel"),
                                                              0.0F, maximumMagnification)
                                                 : 1;
    p.m_canvasScrollOffset = pointIn(coder.decodePoint("canvasScrollOffset"), maximumOffset);
    p.m_navigatorPaneVisible = coder.decodeBool("navigatorPaneVisible");
    p.m_navigatorPaneWidth = lengthIn(coder.decodeFloat("navigatorPaneWidth"));
    p.m_utilitiesPaneVisible = coder.decodeBool("utilitiesPaneVisible");
    p.m_timelinePaneHeight = lengthIn(coder.decodeFloat("timelinePaneHeight"));
    p.m_windowSize = has("windowSize") ? sizeIn(coder.decodeSize("windowSize")) : QSizeF(800, 400);
    p.m_windowPosition = has("windowPosition")
                             ? pointIn(coder.decodePoint("windowPosition"), maximumLength)
                             : QPointF(800, 400);
    p.m_timelinePlayheadPosition = std::max(0, coder.decodeInt("timelinePlayheadPosition"));
    p.m_selectedAnimationIdentifier = coder.decodeString("selectedAnimationIdentifier");
    p.m_timelineScrollOffset = pointIn(coder.decodePoint("timelineScrollOffset"), maximumOffset);
    p.m_newProject = coder.decodeBool("newProject");
    p.m_generatedCodeUsesViews = coder.decodeBool("generatedCodeUsesViews");
    p.m_generatedCodeIsIOS = coder.decodeBool("generatedCodeIsIOS");
    p.m_generatedCodeUsesSwift = coder.decodeBool("generatedCodeUsesSwift");
    p.m_generatedCodeIncludesImages = coder.decodeBool("generatedCodeIncludesImages");
    p.m_generatedCodeClipsToBounds = coder.decodeBool("generatedCodeClipsToBounds");
    p.m_generatedCodeCleansImageDirectory = coder.decodeBool("generatedCodeCleansImageDirectory");
    p.m_generatedCodeTakesParameters = coder.decodeBool("generatedCodeTakesParameters");
    p.m_defaultEasingMode = easingModeFromString(coder.decodeString("defaultEasingMode"));
    p.m_modified = true;
    return result;
}

void PCProjectPreferences::encodeWithCoder(KeyedEncoder& coder) const {
    coder.encodeFloat("timelineZoomLevel", m_timelineZoomLevel);
    coder.encodeFloat("canvasZoomLevel", m_canvasZoomLevel);
    coder.encodePoint("canvasScrollOffset", m_canvasScrollOffset);
    coder.encodeBool("navigatorPaneVisible", m_navigatorPaneVisible);
    coder.encodeFloat("navigatorPaneWidth", m_navigatorPaneWidth);
    coder.encodeBool("utilitiesPaneVisible", m_utilitiesPaneVisible);
    coder.encodeFloat("timelinePaneHeight", m_timelinePaneHeight);
    coder.encodeSize("windowSize", m_windowSize);
    coder.encodePoint("windowPosition", m_windowPosition);
    coder.encodeInt("timelinePlayheadPosition", m_timelinePlayheadPosition);
    coder.encodeString("selectedAnimationIdentifier", m_selectedAnimationIdentifier);
    coder.encodePoint("timelineScrollOffset", m_timelineScrollOffset);
    coder.encodeBool("newProject", m_newProject);
    coder.encodeBool("generatedCodeUsesViews", m_generatedCodeUsesViews);
    coder.encodeBool("generatedCodeIsIOS", m_generatedCodeIsIOS);
    coder.encodeBool("generatedCodeUsesSwift", m_generatedCodeUsesSwift);
    coder.encodeBool("generatedCodeIncludesImages", m_generatedCodeIncludesImages);
    coder.encodeBool("generatedCodeClipsToBounds", m_generatedCodeClipsToBounds);
    coder.encodeBool("generatedCodeCleansImageDirectory", m_generatedCodeCleansImageDirectory);
    coder.encodeBool("generatedCodeTakesParameters", m_generatedCodeTakesParameters);
    coder.encodeString("defaultEasingMode", stringFromEasingMode(m_defaultEasingMode));
}

void PCProjectPreferences::setWindowSize(QSizeF size) {
    if (change(m_windowSize, size)) { PCAppPreferences::setlastWindowSize(size); }
}

void PCProjectPreferences::setGeneratedCodeUsesViews(bool value) {
    if (change(m_generatedCodeUsesViews, value)) {
        PCAppPreferences::setGeneratedCodeUsesViews(value);
    }
}

void PCProjectPreferences::setGeneratedCodeIsIOS(bool value) {
    if (change(m_generatedCodeIsIOS, value)) { PCAppPreferences::setGeneratedCodeIsIOS(value); }
}

void PCProjectPreferences::setGeneratedCodeUsesSwift(bool value) {
    if (change(m_generatedCodeUsesSwift, value)) {
        PCAppPreferences::setGeneratedCodeUsesSwift(value);
    }
}

void PCProjectPreferences::setGeneratedCodeIncludesImages(bool value) {
    if (change(m_generatedCodeIncludesImages, value)) {
        PCAppPreferences::setGeneratedCodeIncludesImages(value);
    }
}

void PCProjectPreferences::setGeneratedCodeClipsToBounds(bool value) {
    if (change(m_generatedCodeClipsToBounds, value)) {
        PCAppPreferences::setGeneratedCodeClipsToBounds(value);
    }
}

void PCProjectPreferences::setGeneratedCodeCleansImageDirectory(bool value) {
    if (change(m_generatedCodeCleansImageDirectory, value)) {
        PCAppPreferences::setGeneratedCodeCleansImageDirectory(value);
    }
}

void PCProjectPreferences::setGeneratedCodeTakesParameters(bool value) {
    if (change(m_generatedCodeTakesParameters, value)) {
        PCAppPreferences::setGeneratedCodeTakesParameters(value);
    }
}

}  // namespace tweenery
