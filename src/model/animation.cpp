#include "model/animation.h"

#include <QStringDecoder>
#include <algorithm>

#include "base/errors.h"
#include "base/limits.h"
#include "model/edit_context.h"
#include "model/element.h"
#include "storage/keyed_archiver.h"
#include "storage/package_entries.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

bool isElementDirectoryName(const QString& name) {
    return name != kAnimationNameFile && name != kAnimationKeyAllFile;
}

}  // namespace

PCAnimation::Ptr PCAnimation::initWithAnimationFileWrapper(
    FileWrapper::Ptr directory, const std::shared_ptr<EditContext>& project) {
    Ptr animation(new PCAnimation);
    animation->m_fileWrapper = std::move(directory);
    animation->m_project = project;
    animation->readName();
    animation->readMasterTimeline();
    const QString path = animation->path();
    for (const auto& [name, node] : animation->m_fileWrapper->fileWrappers()) {
        if (!isElementDirectoryName(name)) { continue; }
        const FileWrapper::Ptr elementDirectory = node->isDirectory() ? node : nullptr;
        animation->m_timelineGroups.emplace(
            Identifier(name), PCPropertyTimelineGroup::fromFileWrapper(elementDirectory, path));
    }
    return animation;
}

void PCAnimation::readName() {
    const FileWrapper::Ptr file = m_fileWrapper->child(kAnimationNameFile);
    if (!file || !file->isRegularFile()) { return; }
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decode(file->contents());
    if (decode.hasError()) { return; }
    if (text.size() > limits::kLengthOfText) {
        throw InputError(
            path() + u'/' + kAnimationNameFile,
            beyondLimit(u"characters of a name"_s, text.size(), limits::kLengthOfText));
    }
    m_name = text;
}

void PCAnimation::readMasterTimeline() {
    const FileWrapper::Ptr file = m_fileWrapper->child(kAnimationKeyAllFile);
    if (!file) {
        setMasterKeyframesTimeline(
            PCKeyedPropertyTimeline::initForElement(nullptr, PCPropertyTypeImageContents));
        return;
    }
    const QString entry = path() + u'/' + kAnimationKeyAllFile;
    const QByteArray& data = requireRegularFile(*file, entry).contents();
    setMasterKeyframesTimeline(PCKeyedPropertyTimeline::unarchive(data, entry));
}

void PCAnimation::setMasterKeyframesTimeline(const PCKeyedPropertyTimeline::Ptr& timeline) {
    m_masterKeyframesTimeline = timeline;
    timeline->setProject(m_project);
}

QString PCAnimation::identifier() const {
    const QString& preferred = m_fileWrapper->preferredFilename();
    return preferred.isEmpty() ? m_fileWrapper->filename() : preferred;
}

PCAnimationsManager* PCAnimation::animationsManager() const {
    const auto project = m_project.lock();
    return project ? &project->animationsManager() : nullptr;
}

QString PCAnimation::path() const {
    return kAnimationsEntry + u'/' + identifier();
}

QString PCAnimation::description() const {
    return u"Animation: "_s + m_name;
}

void PCAnimation::setName(const QString& name) {
    m_name = name;
    m_fileWrapper->pc_replaceSubFileWrapperNamed(kAnimationNameFile, name.toUtf8());
}

std::shared_ptr<PCPropertyTimelineGroup> PCAnimation::timelineGroup(
    const Identifier& element) const {
    const auto found = m_timelineGroups.find(element);
    return found == m_timelineGroups.end() ? nullptr : found->second;
}

void PCAnimation::loadAllTimelines() {
    for (const auto& [identifier, group] : m_timelineGroups) {
        group->load();
    }
}

void PCAnimation::applyAnimationWithRootElement(PCElement& root) {
    const PCElement::Elements elements = root.elementAndAllDescendants();
    for (const PCElement::Ptr& element : elements) {
        if (const auto group = timelineGroup(element->identifier())) { group->load(); }
    }
    m_masterKeyframesTimeline->setProject(m_project);
    for (const PCElement::Ptr& element : elements) {
        applyToElement(*element);
    }
}

void PCAnimation::applyToElement(PCElement& element) {
    auto& group = m_timelineGroups[element.identifier()];
    if (!group) { group = PCPropertyTimelineGroup::fromFileWrapper(nullptr, {}); }
    group->load();
    element.clearTimelines();
    group->applyToElement(element);
}

void PCAnimation::applyTimeline(const PCKeyedPropertyTimeline::Ptr& timeline, PCElement& element) {
    element.setTimeline(timeline);
    timeline->setElement(element.shared_from_this());
    timeline->setHasUnsavedChanges(true);
    m_timelineGroups[element.identifier()] = PCPropertyTimelineGroup::fromElement(element);
}

void PCAnimation::saveChangesToFileWrapper() {
    saveMasterTimeline();
    for (const auto& [identifier, group] : m_timelineGroups) {
        saveGroup(identifier, *group);
    }
}

void PCAnimation::saveMasterTimeline() {
    if (!m_masterKeyframesTimeline->hasUnsavedChanges()) { return; }
    if (m_masterKeyframesTimeline->isEmpty()) {
        m_fileWrapper->pc_deleteSubFileWrapperNamed(kAnimationKeyAllFile);
        return;
    }
    m_fileWrapper->pc_replaceSubFileWrapperNamed(
        kAnimationKeyAllFile,
        KeyedArchiver::archivedDataWithRootObject(*m_masterKeyframesTimeline));
    m_masterKeyframesTimeline->setHasUnsavedChanges(false);
}

void PCAnimation::saveGroup(const Identifier& element, PCPropertyTimelineGroup& group) {
    for (const PCPropertyType type : timelineGroupOrder()) {
        const PCKeyedPropertyTimeline::Ptr& timeline = group.timelineIfLoaded(type);
        if (!timeline || !timeline->hasUnsavedChanges()) { continue; }
        if (timeline->isEmpty()) {
            removeTimelineFile(type, element);
        } else {
            saveTimeline(*timeline, type, element);
            timeline->setHasUnsavedChanges(false);
        }
        if (const auto project = m_project.lock()) { project->animationFilesDidChange(); }
    }
}

void PCAnimation::saveTimeline(const PCKeyedPropertyTimeline& timeline, PCPropertyType type,
                               const Identifier& element) {
    const QString directoryName = element.toString();
    if (!isSafeFilename(directoryName)) {
        throw InputError(kCanvasEntry,
                         u"holds an element whose identifier cannot name a directory: %1"_s.arg(
                             directoryName.left(100)));
    }
    // Encoded by whoever writes the package, which keeps the entry when it has those bytes already.
    const QString filename = filenameOfTimelineType(type);
    const auto directory =
        m_fileWrapper->pc_ensureSubfileWrapperDirectoryExistsWithName(directoryName);
    directory->pc_deleteSubFileWrapperNamed(filename);
    directory->addFileWrapper(
        FileWrapper::regularFileMadeLater(timeline.archiveMadeLater(), filename));
}

// The directory stays as long as it holds anything, or the element exists with timelines attached.
void PCAnimation::removeTimelineFile(PCPropertyType type, const Identifier& element) {
    const FileWrapper::Ptr directory = m_fileWrapper->child(element.toString());
    if (!directory || !directory->isDirectory()) { return; }
    directory->pc_deleteSubFileWrapperNamed(filenameOfTimelineType(type));
    const auto project = m_project.lock();
    const PCElement::Ptr owner = project ? project->elementForIdentifier(element) : nullptr;
    const bool hasTimelines = owner && owner->timeline(PCPropertyTypeOpacity);
    if (directory->fileWrappers().empty() && !hasTimelines) {
        m_fileWrapper->removeFileWrapper(directory);
    }
}

PCAnimation::Summary PCAnimation::storedSummary() const {
    Summary summary;
    const QString animationPath = path();
    for (const auto& [name, directory] : m_fileWrapper->fileWrappers()) {
        if (!isElementDirectoryName(name) || !directory->isDirectory()) { continue; }
        for (const PCPropertyType type : elementTimelineTypes()) {
            const QString filename = filenameOfTimelineType(type);
            const FileWrapper::Ptr file = directory->child(filename);
            if (!file) { continue; }
            const QString entry = u"%1/%2/%3"_s.arg(animationPath, name, filename);
            const TimelineSummary timeline = PCKeyedPropertyTimeline::summaryOfArchive(
                requireRegularFile(*file, entry).contents(), entry);
            summary.durationInMS = std::max(summary.durationInMS, timeline.durationInMS);
            summary.hasLooping =
                summary.hasLooping || timeline.repeatBehavior != PCRepeatBehaviorNever;
            summary.course.add(timeline.durationInMS, timeline.repeatBehavior);
            summary.timelinesCount += 1;
            summary.keyframesCount += timeline.keyframesCount;
        }
    }
    return summary;
}

}  // namespace tweenery
