#pragma once

#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "model/keyed_property_timeline.h"
#include "storage/file_wrapper.h"

namespace tweenery {

class PCElement;

/// The eight timelines of one element in one animation. They are decoded from the element's
/// directory when first asked for; a missing file gives an empty timeline.
class PCPropertyTimelineGroup {
 public:
    using Timelines = std::array<PCKeyedPropertyTimeline::Ptr, kElementTimelineCount>;

    /// `directory` may be null: all timelines are empty. `parentPath`, the animation's place in the
    /// package, names it in errors.
    static std::shared_ptr<PCPropertyTimelineGroup> fromFileWrapper(FileWrapper::Ptr directory,
                                                                    const QString& parentPath);
    /// The timelines that the element has attached now.
    static std::shared_ptr<PCPropertyTimelineGroup> fromElement(PCElement& element);

    /// The timeline of one of the eight element types, decoded if it was not yet. Throws InputError
    /// when its file cannot be read, AssertionFailure for a type without a slot.
    PCKeyedPropertyTimeline::Ptr timeline(PCPropertyType type);
    /// The same, but null unless the timeline is in memory.
    const PCKeyedPropertyTimeline::Ptr& timelineIfLoaded(PCPropertyType type) const;
    /// The same, but null where there is neither a file nor a timeline in memory.
    PCKeyedPropertyTimeline::Ptr storedTimeline(PCPropertyType type);
    /// Translation x, y, scale x, y, rotation, opacity, children z positions, image contents.
    std::vector<PCKeyedPropertyTimeline::Ptr> allTimelines();
    /// Those of them that are in memory.
    std::vector<PCKeyedPropertyTimeline::Ptr> loadedTimelines() const;
    /// Decodes all files that were not yet. Throws InputError.
    void load();

    /// Attaches the eight timelines to the element, which makes its project theirs.
    void applyToElement(PCElement& element);

 private:
    FileWrapper::Ptr m_directory;
    QString m_parentPath;  // shared by all groups of an animation
    Timelines m_timelines;

    PCKeyedPropertyTimeline::Ptr propertyTimelineFromParentFileWrapper(PCPropertyType type) const;
};

/// The order of allTimelines(), by type.
std::span<const PCPropertyType, kElementTimelineCount> timelineGroupOrder();

/// "<stem>.data" of a timeline type. Throws AssertionFailure "type not supported: %@".
QString filenameOfTimelineType(PCPropertyType type);
/// The type whose timelines that file holds; nothing for any other name.
std::optional<PCPropertyType> timelineTypeOfFilename(const QString& filename);

}  // namespace tweenery
