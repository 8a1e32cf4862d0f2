#include "model/property_timeline_group.h"

#include <algorithm>

#include "base/errors.h"
#include "model/element.h"
#include "storage/package_entries.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr std::array<PCPropertyType, kElementTimelineCount> kGroupOrder{
    PCPropertyTypeTranslationX,
    PCPropertyTypeTranslationY,
    PCPropertyTypeScaleX,
    PCPropertyTypeScaleY,
    PCPropertyTypeZRotation,
    PCPropertyTypeOpacity,
    PCPropertyTypeChildrenZPositions,
    PCPropertyTypeImageContents};

size_t slotOf(PCPropertyType type) {
    const int slot = elementTimelineSlot(type);
    if (slot < 0) { failContract(u"type not supported: %1"_s.arg(stringFromPropertyType(type))); }
    return static_cast<size_t>(slot);
}

}  // namespace

std::span<const PCPropertyType, kElementTimelineCount> timelineGroupOrder() {
    return kGroupOrder;
}

QString filenameOfTimelineType(PCPropertyType type) {
    const char* stem = propertyTypeRow(type).fileStem;
    if (!stem) { failContract(u"type not supported: %1"_s.arg(stringFromPropertyType(type))); }
    return QString::fromLatin1(stem) + u".data"_s;
}

std::optional<PCPropertyType> timelineTypeOfFilename(const QString& filename) {
    static const std::array<QString, kElementTimelineCount> names = [] {
        std::array<QString, kElementTimelineCount> all;
        std::transform(kGroupOrder.begin(), kGroupOrder.end(), all.begin(), filenameOfTimelineType);
        return all;
    }();
    const auto found = std::find(names.begin(), names.end(), filename);
    if (found == names.end()) { return std::nullopt; }
    return kGroupOrder[static_cast<size_t>(found - names.begin())];
}

std::shared_ptr<PCPropertyTimelineGroup> PCPropertyTimelineGroup::fromFileWrapper(
    FileWrapper::Ptr directory, const QString& parentPath) {
    auto group = std::make_shared<PCPropertyTimelineGroup>();
    group->m_directory = std::move(directory);
    group->m_parentPath = parentPath;
    return group;
}

std::shared_ptr<PCPropertyTimelineGroup> PCPropertyTimelineGroup::fromElement(PCElement& element) {
    auto group = std::make_shared<PCPropertyTimelineGroup>();
    for (const PCPropertyType type : kGroupOrder) {
        group->m_timelines[slotOf(type)] = element.timeline(type);
    }
    return group;
}

PCKeyedPropertyTimeline::Ptr PCPropertyTimelineGroup::propertyTimelineFromParentFileWrapper(
    PCPropertyType type) const {
    const QString filename = filenameOfTimelineType(type);
    const FileWrapper::Ptr file = m_directory ? m_directory->child(filename) : nullptr;
    if (!file) { return PCKeyedPropertyTimeline::initForElement(nullptr, type); }
    const QString entry = u"%1/%2/%3"_s.arg(m_parentPath, m_directory->filename(), filename);
    requireRegularFile(*file, entry);
    auto timeline = PCKeyedPropertyTimeline::unarchive(file->contents(), entry);
    timeline->takeTypeOfFile(type);
    return timeline;
}

PCKeyedPropertyTimeline::Ptr PCPropertyTimelineGroup::timeline(PCPropertyType type) {
    PCKeyedPropertyTimeline::Ptr& timeline = m_timelines[slotOf(type)];
    if (!timeline) { timeline = propertyTimelineFromParentFileWrapper(type); }
    return timeline;
}

const PCKeyedPropertyTimeline::Ptr& PCPropertyTimelineGroup::timelineIfLoaded(
    PCPropertyType type) const {
    return m_timelines[slotOf(type)];
}

PCKeyedPropertyTimeline::Ptr PCPropertyTimelineGroup::storedTimeline(PCPropertyType type) {
    const bool isLoaded = m_timelines[slotOf(type)] != nullptr;
    const bool hasFile = m_directory && m_directory->child(filenameOfTimelineType(type));
    return isLoaded || hasFile ? timeline(type) : nullptr;
}

std::vector<PCKeyedPropertyTimeline::Ptr> PCPropertyTimelineGroup::allTimelines() {
    std::vector<PCKeyedPropertyTimeline::Ptr> all;
    all.reserve(kGroupOrder.size());
    for (const PCPropertyType type : kGroupOrder) {
        all.push_back(timeline(type));
    }
    return all;
}

std::vector<PCKeyedPropertyTimeline::Ptr> PCPropertyTimelineGroup::loadedTimelines() const {
    std::vector<PCKeyedPropertyTimeline::Ptr> loaded;
    for (const PCPropertyType type : kGroupOrder) {
        if (const auto& timeline = m_timelines[slotOf(type)]) { loaded.push_back(timeline); }
    }
    return loaded;
}

void PCPropertyTimelineGroup::load() {
    for (const PCPropertyType type : kGroupOrder) {
        storedTimeline(type);
    }
}

void PCPropertyTimelineGroup::applyToElement(PCElement& element) {
    for (const PCPropertyType type : kGroupOrder) {
        const PCKeyedPropertyTimeline::Ptr attached = timeline(type);
        attached->setElement(element.shared_from_this());
        element.setTimeline(attached, type);
    }
}

}  // namespace tweenery
