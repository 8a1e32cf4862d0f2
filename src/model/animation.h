#pragma once

#include <QString>
#include <map>
#include <memory>

#include "base/identifier.h"
#include "model/keyed_property_timeline.h"
#include "model/properties/course.h"
#include "model/property_timeline_group.h"
#include "storage/file_wrapper.h"

namespace tweenery {

class PCAnimationsManager;
class PCElement;
class EditContext;

/// A named set of timelines over the project's element tree, with its directory in the package. The
/// identifier never changes; the name may.
class PCAnimation : public std::enable_shared_from_this<PCAnimation> {
 public:
    using Ptr = std::shared_ptr<PCAnimation>;
    /// By element identifier.
    using TimelineGroups = std::map<Identifier, std::shared_ptr<PCPropertyTimelineGroup>>;

    /// Reads the name and makes a group for every entry of `directory` but name.data and
    /// keyall.data; timelines are decoded later. Throws InputError when keyall.data cannot be read.
    static Ptr initWithAnimationFileWrapper(FileWrapper::Ptr directory,
                                            const std::shared_ptr<EditContext>& project);

    /// Null when the directory has no readable name.
    const QString& name() const { return m_name; }
    /// Written into the tree at once. No undo step: PCAnimationsManager::renameAnimation makes it.
    void setName(const QString& name);
    QString identifier() const;
    /// Of its directory in the package.
    QString path() const;
    const FileWrapper::Ptr& fileWrapper() const { return m_fileWrapper; }
    const TimelineGroups& timelineGroups() const { return m_timelineGroups; }
    /// The element's group, or null.
    std::shared_ptr<PCPropertyTimelineGroup> timelineGroup(const Identifier& element) const;
    const PCKeyedPropertyTimeline::Ptr& masterKeyframesTimeline() const {
        return m_masterKeyframesTimeline;
    }
    void setMasterKeyframesTimeline(const PCKeyedPropertyTimeline::Ptr& timeline);
    /// The project's; null once the project has gone.
    PCAnimationsManager* animationsManager() const;
    QString description() const;

    /// Decodes every timeline of the animation that was not yet. Throws InputError.
    void loadAllTimelines();
    /// Attaches the timelines to the root and all its descendants. Decodes first, so that after an
    /// InputError nothing has changed.
    void applyAnimationWithRootElement(PCElement& root);
    /// Attaches the timelines of one element. Throws InputError.
    void applyToElement(PCElement& element);
    /// Writes every changed timeline into the tree; an emptied one loses its file.
    void saveChangesToFileWrapper();
    /// Attaches a timeline that comes from outside (a paste) to the element.
    void applyTimeline(const PCKeyedPropertyTimeline::Ptr& timeline, PCElement& element);

    /// The longest durationInMS of the stored timelines and whether one repeats, without decoding
    /// keyframes: what the files say, deleted elements included. Throws InputError.
    struct Summary {
        int32_t durationInMS = 0;
        bool hasLooping = false;
        Course course;
        size_t timelinesCount = 0;
        size_t keyframesCount = 0;
    };
    Summary storedSummary() const;

 private:
    QString m_name;
    TimelineGroups m_timelineGroups;
    FileWrapper::Ptr m_fileWrapper;
    PCKeyedPropertyTimeline::Ptr m_masterKeyframesTimeline;
    std::weak_ptr<EditContext> m_project;

    PCAnimation() = default;
    void readName();
    void readMasterTimeline();
    void saveMasterTimeline();
    void saveGroup(const Identifier& element, PCPropertyTimelineGroup& group);
    void saveTimeline(const PCKeyedPropertyTimeline& timeline, PCPropertyType type,
                      const Identifier& element);
    void removeTimelineFile(PCPropertyType type, const Identifier& element);
};

/// An animation's entries that are no element directories.
inline const QString kAnimationNameFile = QStringLiteral("name.data");
inline const QString kAnimationKeyAllFile = QStringLiteral("keyall.data");

}  // namespace tweenery
