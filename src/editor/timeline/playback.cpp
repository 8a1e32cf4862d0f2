#include "editor/timeline/playback.h"

#include <utility>

#include "editor/layers/attached_animation.h"
#include "model/project.h"

namespace tweenery {

Playback::Playback(const std::shared_ptr<PCProject>& project, PCProjectTimeManager& timeManager,
                   PCElementSelectionManager& selectionManager,
                   std::shared_ptr<ProjectLayers> layers)
    : m_project(project),
      m_timeManager(timeManager),
      m_selectionManager(selectionManager),
      m_layers(std::move(layers)) {
    m_subscriptions = {m_timeManager.addPlayheadTimeListener(this),
                       m_timeManager.addPlaybackStateListener(this),
                       project->animationsManager().addChangeListener(this)};
    show(EditTime::at(m_timeManager.playheadPositionInMS()));
}

void Playback::togglePlayPause() {
    if (m_timeManager.isPlayingBack()) {
        m_timeManager.setPlayback(false);
        restoreSelection();
    } else {
        m_selectionBeforePlayback = m_selectionManager.selectedElements();
        m_selectionManager.deselectAllElements();
        m_timeManager.setPlayback(true);
    }
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
}

}  // namespace tweenery
