#include "editor/timeline/keyframe_clip.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "base/errors.h"
#include "model/project.h"

using namespace Qt::StringLiterals;

namespace tweenery {

const QString KeyframeClip::kPasteboardType = u"com.lumenfold.tweenery.pasteboardkeyframes"_s;

namespace {

[[noreturn]] void refuse() {
    throw InputError(u"clipboard"_s, u"holds keyframes that cannot be read"_s);
}

// Copying.

QStringList namesOfChildren(const PCElement& element, const QStringList& identifiers) {
    std::map<QString, QString> names;
    for (const PCElement::Ptr& child : element.children()) {
        names.emplace(child->identifier().toString(), child->name());
    }
    QStringList order;
    for (const QString& identifier : identifiers) {
        if (const auto name = names.find(identifier); name != names.end()) {
            order << name->second;
        }
    }
    return order;
}

KeyframeClip::Track trackOf(const RowKeyframes& row, int32_t start) {
    const PCElement& element = *row.timeline->element();
    const PCPropertyType property = row.timeline->propertyType();
    KeyframeClip::Track track{element.name(), element.identifier().toString(), property, {}};
    for (const auto& keyframe : row.keyframes) {
        PropertyValue value = keyframe->propertyValue();
        if (isArrayProperty(property)) { value = namesOfChildren(element, arrayOfValue(value)); }
        const int32_t offset = keyframe->timeInMS() - start;
        if (!track.keys.empty() && track.keys.back().offsetInMS == offset) {
            track.keys.pop_back();
        }
        track.keys.push_back(
            {offset, std::move(value), keyframe->easingMode(), keyframe->instantTransition()});
    }
    return track;
}

// Property lists.

QVariant variantOf(const PropertyValue& value) {
    if (const auto* number = std::get_if<float>(&value)) { return static_cast<double>(*number); }
    if (const auto* names = std::get_if<QStringList>(&value)) { return QVariant(*names); }
    return stringOfValue(value);
}

PropertyValue valueOf(const QVariant& variant, PCPropertyType property) {
    if (isFloatProperty(property)) {
        bool isNumber = false;
        const auto number = static_cast<float>(variant.toDouble(&isNumber));
        if (!isNumber || !std::isfinite(number)) { refuse(); }
        return number;
    }
    if (isArrayProperty(property)) { return variant.toStringList(); }
    return variant.toString();
}

KeyframeClip::Key keyFrom(const QVariantMap& map, PCPropertyType property) {
    bool isNumber = false;
    const qlonglong offset = map.value(u"offset"_s).toLongLong(&isNumber);
    if (!isNumber || offset < 0 || offset > INT32_MAX) { refuse(); }
    return {static_cast<int32_t>(offset), valueOf(map.value(u"value"_s), property),
            easingModeFromString(map.value(u"easing"_s).toString()),
            map.value(u"instant"_s).toBool()};
}

KeyframeClip::Track trackFrom(const QVariantMap& map) {
    const QString property = map.value(u"property"_s).toString();
    if (!isKnownPropertyString(property)) { refuse(); }
    KeyframeClip::Track track{map.value(u"element"_s).toString(),
                              map.value(u"identifier"_s).toString(),
                              propertyTypeFromString(property),
                              {}};
    if (elementTimelineSlot(track.property) < 0) { refuse(); }
    for (const QVariant& key : map.value(u"keys"_s).toList()) {
        track.keys.push_back(keyFrom(key.toMap(), track.property));
    }
    const bool isSorted =
        std::adjacent_find(track.keys.begin(), track.keys.end(), [](const auto& a, const auto& b) {
            return a.offsetInMS >= b.offsetInMS;
        }) == track.keys.end();
    if (track.keys.empty() || !isSorted) { refuse(); }
    return track;
}

// Pasting.

using Tracks = std::vector<const KeyframeClip::Track*>;

// In the order of the tree, as they were copied.
std::vector<Tracks> tracksByElement(const KeyframeClip& clip) {
    std::vector<Tracks> elements;
    std::map<QString, size_t> places;
    for (const KeyframeClip::Track& track : clip.tracks) {
        const auto [place, isNew] = places.try_emplace(track.elementIdentifier, elements.size());
        if (isNew) { elements.emplace_back(); }
        elements[place->second].push_back(&track);
    }
    return elements;
}

// Finds the elements of tracks.
class OwnElements {
 public:
    explicit OwnElements(PCProject& project) : m_project(project) {}

    PCElement::Ptr of(const KeyframeClip::Track& track) {
        const auto own = m_project.elementForIdentifier(Identifier(track.elementIdentifier));
        if (own) { return own; }
        if (m_byName.empty()) {
            for (const auto& element : m_project.canvas()->elementAndAllDescendants()) {
                m_byName.emplace(element->name(), element);
            }
        }
        const auto found = m_byName.find(track.elementName);
        return found == m_byName.end() ? nullptr : found->second;
    }

 private:
    PCProject& m_project;
    std::map<QString, PCElement::Ptr> m_byName;
};

PCElement::Elements inOrderOfTree(PCProject& project, const PCElement::Elements& elements) {
    const std::unordered_set<PCElement::Ptr> wanted(elements.begin(), elements.end());
    PCElement::Elements sorted;
    for (const auto& element : project.canvas()->reversedElementAndAllDescendants()) {
        if (wanted.contains(element)) { sorted.push_back(element); }
    }
    return sorted;
}

}  // namespace

KeyframeClip KeyframeClip::copyOf(const std::vector<RowKeyframes>& rows) {
    KeyframeClip clip;
    int32_t start = INT32_MAX;
    for (const RowKeyframes& row : rows) {
        if (row.timeline->element()) { start = std::min(start, row.firstTimeInMS()); }
    }
    for (const RowKeyframes& row : rows) {
        if (row.timeline->element()) { clip.tracks.push_back(trackOf(row, start)); }
    }
    return clip;
}

int32_t KeyframeClip::lengthInMS() const {
    int32_t length = 0;
    for (const Track& track : tracks) {
        length = std::max(length, track.keys.back().offsetInMS);
    }
    return length;
}

QVariant KeyframeClip::propertyList() const {
    QVariantList list;
    for (const Track& track : tracks) {
        QVariantList keys;
        for (const Key& key : track.keys) {
            keys.append(QVariantMap{{u"offset"_s, key.offsetInMS},
                                    {u"value"_s, variantOf(key.value)},
                                    {u"easing"_s, stringFromEasingMode(key.easing)},
                                    {u"instant"_s, key.instant}});
        }
        list.append(QVariantMap{{u"element"_s, track.elementName},
                                {u"identifier"_s, track.elementIdentifier},
                                {u"property"_s, stringFromPropertyType(track.property)},
                                {u"keys"_s, keys}});
    }
    return list;
}

KeyframeClip KeyframeClip::fromPropertyList(const QVariant& list) {
    KeyframeClip clip;
    for (const QVariant& track : list.toList()) {
        clip.tracks.push_back(trackFrom(track.toMap()));
    }
    if (clip.tracks.empty()) { refuse(); }
    return clip;
}

ClipTargets targetsOf(const KeyframeClip& clip, PCProject& project,
                      const PCElement::Elements& selected) {
    const std::vector<Tracks> sources = tracksByElement(clip);
    ClipTargets found;
    const auto add = [&found](const Tracks& tracks, const PCElement::Ptr& element) {
        for (const KeyframeClip::Track* track : tracks) {
            found.targets.push_back({track, element});
        }
    };
    if (sources.size() == 1 && !selected.empty()) {
        for (const PCElement::Ptr& element : selected) {
            add(sources.front(), element);
        }
        return found;
    }
    OwnElements own(project);
    PCElement::Elements owners;
    for (const Tracks& tracks : sources) {
        owners.push_back(own.of(*tracks.front()));
        if (owners.back()) { continue; }
        if (found.refusal.isEmpty()) {
            found.refusal =
                u"There is no element “%1”. Select the element that is to get its keyframes."_s.arg(
                    tracks.front()->elementName);
        }
    }
    const std::unordered_set<PCElement::Ptr> ownerSet(owners.begin(), owners.end());
    const bool areTheSame =
        std::all_of(selected.begin(), selected.end(),
                    [&](const PCElement::Ptr& element) { return ownerSet.contains(element); });
    if (selected.size() == sources.size() && !areTheSame) {
        owners = inOrderOfTree(project, selected);
        found.refusal.clear();
    }
    for (size_t i = 0; found.refusal.isEmpty() && i < sources.size(); ++i) {
        add(sources[i], owners[i]);
    }
    return found;
}

PropertyValue pasteableValue(const PropertyValue& value, PCPropertyType property,
                             const PCElement& element) {
    if (isStringProperty(property)) {
        EditContext* project = element.project();
        const bool isThere =
            project && !element.isGroup() && !element.isCanvas() &&
            project->imageSetManager().imageSetExistsWithName(stringOfValue(value));
        return isThere ? value : PropertyValue();
    }
    if (!isArrayProperty(property)) { return element.isCanvas() ? PropertyValue() : value; }
    std::map<QString, QString> identifiers;
    for (const PCElement::Ptr& child : element.children()) {
        identifiers.emplace(child->name(), child->identifier().toString());
    }
    QStringList order;
    for (const QString& name : arrayOfValue(value)) {
        if (const auto found = identifiers.find(name); found != identifiers.end()) {
            order << found->second;
        }
    }
    if (order.isEmpty()) { return {}; }
    return childrenOrderInLine(order, PCProject::sortedSubelementIdentifiers(element));
}

}  // namespace tweenery
