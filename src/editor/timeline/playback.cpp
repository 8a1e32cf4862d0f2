#include "editor/timeline/playback.h"

#include <utility>

#include "base/errors.h"
#include "editor/layers/attached_animation.h"
#include "editor/timeline/timeline_outline.h"
#include "model/project.h"

using namespace Qt::StringLiterals;

namespace tweenery {

Playback::Playback(const std::shared_ptr<PCProject>& project, PCProjectTimeManager& timeManager,
                   PCElementSelectionManager& selectionManager, const TimelineOutline& outline,
                   std::shared_ptr<ProjectLayers> layers)
    : m_project(project),
      m_timeManager(timeManager),
      m_selectionManager(selectionManager),
      m_outline(outline),
      m_layers(std::move(layers)) {
    m_subscriptions = {m_timeManager.addPlayheadTimeListener(this),
                       m_timeManager.addPlaybackStateListener(this),
                       project->animationsManager().addChangeListener(this)};
    m_timeManager.setPlaybackEndHandler([this] { stopHere(); });
    show(EditTime::at(m_timeManager.playheadPositionInMS()));
}

Playback::~Playback() {
    m_timeManager.setPlaybackEndHandler({});
}

void Playback::togglePlayPause() {
    if (m_timeManager.isPlayingBack()) {
        m_timeManager.setPlayback(false);
        restoreSelection();
    } else {
        m_selectionBeforePlayback = m_selectionManager.selectedElements();
        m_selectionManager.deselectAllElements();
        updateBounds();
        m_timeManager.setPlayback(true);
    }
}

void Playback::stopHere() {
    if (!m_timeManager.isPlayingBack()) { return; }
    const int32_t shown = m_timeManager.playheadPositionInMS();
    togglePlayPause();
    m_timeManager.setPlayheadPositionInMS(shown);
}

void Playback::restoreSelection() {
    auto elements = std::exchange(m_selectionBeforePlayback, {});
    const auto project = m_project.lock();
    std::erase_if(elements, [&project](const PCElement::Ptr& element) {
        return !project || project->elementForIdentifier(element->identifier()) != element;
    });
    m_selectionManager.selectElements(elements);
}

void Playback::timeManagerDidChangePlaybackState(PCProjectTimeManager& manager) {
    const auto project = m_project.lock();
    if (!project) { return; }
    if (manager.isPlayingBack()) {
        show(EditTime::setup());
        attachAnimations(*project);
        if (m_layers) { m_layers->repaintEverything(); }
    } else {
        removeAnimations();
        show(EditTime::at(manager.playheadPositionInMS()));
    }
}

void Playback::attachAnimations(PCProject& project) {
    const PCAnimation::Ptr animation = project.animationsManager().selectedAnimation();
    if (animation) { m_animatedElements = attachAnimation(project, *animation, 0); }
}

// Another animation may be selected by now, and elements may have left the tree.
void Playback::removeAnimations() {
    for (const PCElement::Ptr& element : std::exchange(m_animatedElements, {})) {
        element->viewLayer().removeAllAnimations();
    }
}

void Playback::timeManagerDidUpdatePlayhead(PCProjectTimeManager& manager) {
    if (!manager.isPlayingBack()) { show(EditTime::at(manager.playheadPositionInMS())); }
}

void Playback::timeManagerDidUpdateSkimPlayhead(PCProjectTimeManager& manager) {
    if (!manager.isPlayingBack()) { show(EditTime::at(manager.skimPositionInMS())); }
}

void Playback::show(EditTime time) {
    if (m_layers) { m_layers->show(time); }
}

void Playback::animationManagerDidSelectAnimation(PCAnimationsManager&, const PCAnimation::Ptr&) {
    m_selectionManager.deselectAllElements();
    if (m_timeManager.isPlayingBack()) {
        m_timeManager.setPlayback(false);
        m_selectionBeforePlayback.clear();
    }
    show(EditTime::at(m_timeManager.playheadPositionInMS()));
    m_rangeHandlers.call();
}

// How far it plays.

QString Playback::animationIdentifier() const {
    const auto project = m_project.lock();
    const auto animation = project ? project->animationsManager().selectedAnimation() : nullptr;
    return animation ? animation->identifier() : QString();
}

std::optional<LoopRange> Playback::loopRange() const {
    const auto found = m_loopRanges.find(animationIdentifier());
    return found == m_loopRanges.end() ? std::nullopt : std::optional(found->second);
}

void Playback::storeLoopRange(const std::optional<LoopRange>& range) {
    const QString animation = animationIdentifier();
    if (animation.isEmpty() || range == loopRange()) { return; }
    if (range) {
        m_loopRanges[animation] = *range;
    } else {
        m_loopRanges.erase(animation);
    }
    updateBounds();
    m_rangeHandlers.call();
}

void Playback::setLoopRange(int32_t startInMS, int32_t endInMS) {
    assertContract(startInMS >= 0 && startInMS < endInMS, u"a range to loop has no length"_s);
    storeLoopRange(LoopRange{startInMS, endInMS, true});
}

void Playback::setLoopStart(int32_t timeInMS) {
    constexpr int32_t kLength = 1000;
    const auto present = loopRange();
    int64_t end = int64_t{timeInMS} + kLength;
    if (present && present->endInMS > timeInMS) {
        end = present->endInMS;
    } else if (lastKeyframeTime() > timeInMS) {
        end = lastKeyframeTime();
    }
    if (end <= INT32_MAX) { setLoopRange(timeInMS, static_cast<int32_t>(end)); }
}

void Playback::setLoopEnd(int32_t timeInMS) {
    if (timeInMS <= 0) { return; }
    const auto present = loopRange();
    const bool startsBefore = present && present->startInMS < timeInMS;
    setLoopRange(startsBefore ? present->startInMS : 0, timeInMS);
}

void Playback::setLoopRangeIsOn(bool isOn) {
    auto range = loopRange();
    if (!range && isOn && lastKeyframeTime() > 0) { range = LoopRange{0, lastKeyframeTime()}; }
    if (!range) { return; }
    range->isOn = isOn;
    storeLoopRange(range);
}

void Playback::clearLoopRange() {
    storeLoopRange(std::nullopt);
}

int32_t Playback::lastKeyframeTime() const {
    const auto project = m_project.lock();
    return project && !project->isSetupMode() ? m_outline.lastKeyframeTimeInMS() : -1;
}

std::optional<PlaybackBounds> Playback::bounds() const {
    const auto range = loopRange();
    if (range && range->isOn) { return PlaybackBounds{range->startInMS, range->endInMS, true}; }
    const PCPlaybackEnd end = PCAppPreferences::playbackEnd();
    const int32_t last = end == PCPlaybackEnd::PlayOn ? 0 : lastKeyframeTime();
    if (last <= 0) { return std::nullopt; }
    return PlaybackBounds{0, last, end == PCPlaybackEnd::Loop};
}

void Playback::updateBounds() {
    m_timeManager.setPlaybackBounds(bounds());
}

}  // namespace tweenery
