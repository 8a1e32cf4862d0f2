#include "model/preferences/project_preferences.h"

#include <algorithm>

#include "model/properties/easing.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

// A window system counts pixels of a window in 16 bits.
constexpr float kMaximumLength = 32767;
// Far beyond any canvas or timeline, and still an int.
constexpr double kMaximumOffset = 1e9;
constexpr float kLastTimelineZoomStop = 16;
constexpr float kMaximumMagnification = 10;

// A value of a file, brought into the range of its field.
float zoomStopIn(float level) {
    return std::clamp(level, 0.0F, kLastTimelineZoomStop);
}

float magnificationIn(float level) {
    return std::clamp(level, 0.0F, kMaximumMagnification);
}

float lengthIn(float length) {
    return std::clamp(length, 0.0F, kMaximumLength);
}

int32_t timeIn(int32_t timeInMS) {
    return std::max(0, timeInMS);
}

QPointF pointIn(QPointF point, double limit) {
    return {std::clamp(point.x(), -limit, limit), std::clamp(point.y(), -limit, limit)};
}

QPointF offsetIn(QPointF offset) {
    return pointIn(offset, kMaximumOffset);
}

QPointF windowPositionIn(QPointF position) {
    return pointIn(position, kMaximumLength);
}

QSizeF sizeIn(QSizeF size) {
    return size.expandedTo({0, 0}).boundedTo({kMaximumLength, kMaximumLength});
}

void readStored(const KeyedDecoder& coder, std::string_view key, bool& value) {
    value = coder.decodeBool(key);
}
void readStored(const KeyedDecoder& coder, std::string_view key, int32_t& value) {
    value = coder.decodeInt(key);
}
void readStored(const KeyedDecoder& coder, std::string_view key, float& value) {
    value = coder.decodeFloat(key);
}
void readStored(const KeyedDecoder& coder, std::string_view key, QString& value) {
    value = coder.decodeString(key);
}
void readStored(const KeyedDecoder& coder, std::string_view key, QPointF& value) {
    value = coder.decodePoint(key);
}
void readStored(const KeyedDecoder& coder, std::string_view key, QSizeF& value) {
    value = coder.decodeSize(key);
}
void readStored(const KeyedDecoder& coder, std::string_view key, PCEasingMode& value) {
    value = easingModeFromString(coder.decodeString(key));
}

void writeStored(KeyedEncoder& coder, std::string_view key, bool value) {
    coder.encodeBool(key, value);
}
void writeStored(KeyedEncoder& coder, std::string_view key, int32_t value) {
    coder.encodeInt(key, value);
}
void writeStored(KeyedEncoder& coder, std::string_view key, float value) {
    coder.encodeFloat(key, value);
}
void writeStored(KeyedEncoder& coder, std::string_view key, const QString& value) {
    coder.encodeString(key, value);
}
void writeStored(KeyedEncoder& coder, std::string_view key, QPointF value) {
    coder.encodePoint(key, value);
}
void writeStored(KeyedEncoder& coder, std::string_view key, QSizeF value) {
    coder.encodeSize(key, value);
}
void writeStored(KeyedEncoder& coder, std::string_view key, PCEasingMode value) {
    coder.encodeString(key, stringFromEasingMode(value));
}

// A string, which others pass over as they pass over every key that they do not know.
void readStored(const KeyedDecoder& coder, std::string_view key, SwiftDialect& value) {
    value = swiftDialectNamed(coder.decodeString(key));
}
void writeStored(KeyedEncoder& coder, std::string_view key, SwiftDialect value) {
    if (value != SwiftDialect::First) { coder.encodeString(key, nameOfSwiftDialect(value)); }
}

struct StoredReader {
    const KeyedDecoder& coder;

    template <typename Value>
    void operator()(std::string_view key, Value& field) const {
        readStored(coder, key, field);
    }
    template <typename Value, typename ToRange>
    void operator()(std::string_view key, Value& field, ToRange toRange) const {
        readStored(coder, key, field);
        field = toRange(field);
    }
    template <typename Value, typename ToRange>
    void operator()(std::string_view key, Value& field, ToRange toRange, Value missing) const {
        (*this)(key, field, toRange);
        if (!coder.containsValueForKey(key)) { field = missing; }
    }
};

}  // namespace

QString nameOfSwiftDialect(SwiftDialect dialect) {
    return dialect == SwiftDialect::Current ? u"current"_s : u"first"_s;
}

SwiftDialect swiftDialectNamed(const QString& name) {
    return name == u"current" ? SwiftDialect::Current : SwiftDialect::First;
}

// All that is stored, in the order of the file: `visit(key, field)`, with the range that a value of
// a file is brought into, and with what a missing one means unless that is nothing.
template <typename Preferences, typename Visit>
void PCProjectPreferences::visitStored(Preferences& p, const Visit& visit) {
    visit("timelineZoomLevel", p.m_timelineZoomLevel, zoomStopIn);
    visit("canvasZoomLevel", p.m_canvasZoomLevel, magnificationIn, 1.0F);
    visit("canvasScrollOffset", p.m_canvasScrollOffset, offsetIn);
    visit("navigatorPaneVisible", p.m_navigatorPaneVisible);
    visit("navigatorPaneWidth", p.m_navigatorPaneWidth, lengthIn);
    visit("utilitiesPaneVisible", p.m_utilitiesPaneVisible);
    visit("timelinePaneHeight", p.m_timelinePaneHeight, lengthIn);
    visit("windowSize", p.m_windowSize, sizeIn, QSizeF(800, 400));
    visit("windowPosition", p.m_windowPosition, windowPositionIn, QPointF(800, 400));
    visit("timelinePlayheadPosition", p.m_timelinePlayheadPosition, timeIn);
    visit("selectedAnimationIdentifier", p.m_selectedAnimationIdentifier);
    visit("timelineScrollOffset", p.m_timelineScrollOffset, offsetIn);
    visit("newProject", p.m_newProject);
    visit("generatedCodeUsesViews", p.m_generatedCodeUsesViews);
    visit("generatedCodeIsIOS", p.m_generatedCodeIsIOS);
    visit("generatedCodeUsesSwift", p.m_generatedCodeUsesSwift);
    visit("generatedCodeIncludesImages", p.m_generatedCodeIncludesImages);
    visit("generatedCodeClipsToBounds", p.m_generatedCodeClipsToBounds);
    visit("generatedCodeCleansImageDirectory", p.m_generatedCodeCleansImageDirectory);
    visit("generatedCodeTakesParameters", p.m_generatedCodeTakesParameters);
    visit("defaultEasingMode", p.m_defaultEasingMode);
    visit("generatedCodeSwiftDialect", p.m_generatedCodeSwiftDialect);
}

std::shared_ptr<PCProjectPreferences> PCProjectPreferences::decode(const KeyedDecoder& coder) {
    auto result = std::make_shared<PCProjectPreferences>();
    coder.requireClass(result->archiveClass().name);
    visitStored(*result, StoredReader{coder});
    result->m_modified = true;
    return result;
}

void PCProjectPreferences::encodeWithCoder(KeyedEncoder& coder) const {
    visitStored(*this, [&coder](std::string_view key, const auto& value, auto...) {
        writeStored(coder, key, value);
    });
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
