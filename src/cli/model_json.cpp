#include "cli/model_json.h"

#include <unordered_set>

#include "model/properties/easing.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

using Layout = JsonWriter::Layout;

// The identifiers that an archive really holds; the model makes up those that are missing.
class StoredIdentifiers {
 public:
    // Of `object` and of all objects in its array `children`, down the tree.
    StoredIdentifiers(const KeyedDecoder& object, std::string_view children) {
        collect(object, children);
    }

    void write(const Identifier& identifier, JsonWriter& json) const {
        m_identifiers.contains(identifier) ? json.string(identifier.toString()) : json.null();
    }

 private:
    std::unordered_set<Identifier> m_identifiers;

    void collect(const KeyedDecoder& object, std::string_view children) {
        m_identifiers.insert(Identifier(object.decodeString("identifier")));
        const ArchivedArray items = object.decodeArray(children);
        for (size_t i = 0; i < items.size(); ++i) {
            collect(items.object(i), children);
        }
    }
};

void writeElement(const PCElement& element, const StoredIdentifiers& stored, JsonWriter& json) {
    json.beginObject();
    json.key("anchorPoint").pair(element.anchorPoint().x(), element.anchorPoint().y());
    json.key("expanded").boolean(element.expanded());
    json.key("group").boolean(element.isGroup());
    json.key("hidden").boolean(element.hidden());
    stored.write(element.identifier(), json.key("identifier"));
    json.key("imageName").string(element.imageName());
    json.key("locked").boolean(element.locked());
    json.key("name").string(element.name());
    json.key("opacity").single(static_cast<float>(element.opacity()));
    json.key("position").pair(element.position().x(), element.position().y());
    json.key("scaleTimelineSplit").boolean(element.scaleTimelineSplit());
    json.key("scalesLocked").boolean(element.scalesLocked());
    json.key("size").pair(element.size().width(), element.size().height());
    json.key("subelements").beginArray();
    for (const PCElement::Ptr& child : element.children()) {
        stored.write(child->identifier(), json);
    }
    json.endArray();
    json.key("translationTimelineSplit").boolean(element.translationTimelineSplit());
    json.key("xScale").single(static_cast<float>(element.scale().x()));
    json.key("yScale").single(static_cast<float>(element.scale().y()));
    json.key("zRotation").single(static_cast<float>(element.zRotation()));
    json.endObject();
}

void writeStrings(const QStringList& strings, JsonWriter& json) {
    json.beginArray(Layout::OneLine);
    for (const QString& string : strings) {
        json.string(string);
    }
    json.endArray();
}

void writeValue(const PropertyValue& value, JsonWriter& json) {
    if (const float* number = std::get_if<float>(&value)) {
        json.single(*number);
    } else if (const QPointF* point = std::get_if<QPointF>(&value)) {
        json.pair(point->x(), point->y());
    } else if (const QStringList* array = std::get_if<QStringList>(&value)) {
        writeStrings(*array, json);
    } else {
        json.string(stringOfValue(value));
    }
}

void writeKeyframe(const KeyframeRecord& record, const StoredIdentifiers& stored,
                   JsonWriter& json) {
    json.beginObject(Layout::OneLine);
    json.key("easingMode").string(stringFromEasingMode(record.easingMode));
    stored.write(record.identifier, json.key("identifier"));
    json.key("instant").boolean(record.instantTransition);
    json.key("keyall").boolean(record.keyall);
    json.key("recorded").boolean(record.liveRecorded);
    json.key("recordedEnd").boolean(record.liveRecordedEnd);
    json.key("recordedStart").boolean(record.liveRecordedStart);
    json.key("time").integer(record.timeInMS);
    writeValue(record.value, json.key("value"));
    json.endObject();
}

}  // namespace

void writeElements(const KeyedUnarchiver& archive, JsonWriter& json) {
    const PCElement::Ptr root = PCElement::initWithArchive(archive);
    const StoredIdentifiers stored(archive.root(), "subelements");
    json.beginArray();
    for (const PCElement::Ptr& element : root->elementAndAllDescendants()) {
        writeElement(*element, stored, json);
    }
    json.endArray();
}

void writeTimelineFields(const KeyedUnarchiver& archive, JsonWriter& json) {
    const PCKeyedPropertyTimeline::Ptr timeline = PCKeyedPropertyTimeline::initWithArchive(archive);
    const StoredIdentifiers stored(archive.root(), "keyframes");
    json.key("keyframes").beginArray();
    for (size_t i = 0; i < timeline->keyframesCount(); ++i) {
        writeKeyframe(timeline->recordOfKeyframe(i), stored, json);
    }
    json.endArray();
    json.key("propertyType").string(stringFromPropertyType(timeline->propertyType()));
    json.key("repeatBehavior").string(stringFromRepeatBehavior(timeline->repeatBehavior()));
}

void writePreferences(const PCProjectPreferences& p, JsonWriter& json) {
    json.beginObject();
    json.key("canvasScrollOffset").pair(p.canvasScrollOffset().x(), p.canvasScrollOffset().y());
    json.key("canvasZoomLevel").single(p.canvasZoomLevel());
    json.key("defaultEasingMode").string(stringFromEasingMode(p.defaultEasingMode()));
    json.key("generatedCodeCleansImageDirectory").boolean(p.generatedCodeCleansImageDirectory());
    json.key("generatedCodeClipsToBounds").boolean(p.generatedCodeClipsToBounds());
    json.key("generatedCodeIncludesImages").boolean(p.generatedCodeIncludesImages());
    json.key("generatedCodeIsIOS").boolean(p.generatedCodeIsIOS());
    json.key("generatedCodeSwiftDialect").string(nameOfSwiftDialect(p.generatedCodeSwiftDialect()));
    json.key("generatedCodeTakesParameters").boolean(p.generatedCodeTakesParameters());
    json.key("generatedCodeUsesSwift").boolean(p.generatedCodeUsesSwift());
    json.key("generatedCodeUsesViews").boolean(p.generatedCodeUsesViews());
    json.key("navigatorPaneVisible").boolean(p.navigatorPaneVisible());
    json.key("navigatorPaneWidth").single(p.navigatorPaneWidth());
    json.key("newProject").boolean(p.newProject());
    json.key("selectedAnimationIdentifier").string(p.selectedAnimationIdentifier());
    json.key("timelinePaneHeight").single(p.timelinePaneHeight());
    json.key("timelinePlayheadPosition").integer(p.timelinePlayheadPosition());
    json.key("timelineScrollOffset")
        .pair(p.timelineScrollOffset().x(), p.timelineScrollOffset().y());
    json.key("timelineZoomLevel").single(p.timelineZoomLevel());
    json.key("utilitiesPaneVisible").boolean(p.utilitiesPaneVisible());
    json.key("windowPosition").pair(p.windowPosition().x(), p.windowPosition().y());
    json.key("windowSize").pair(p.windowSize().width(), p.windowSize().height());
    json.endObject();
}

}  // namespace tweenery
