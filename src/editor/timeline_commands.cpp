// What the commands of the timeline do, and when they can. Each makes its own step of undo.

#include "editor/document_window_controller.h"
#include "model/preferences/app_preferences.h"

using namespace Qt::StringLiterals;

namespace tweenery {

void PCDocumentWindowController::addTimelineCommands() {
    addKeyframeCommands();
    addEasingCommands();
    addRowCommands();
    addKeyframeSelectionCommands();
    addKeyframeTimeCommands();
    addLoopCommands();
    addTimelineViewCommands();
    redirectKeysToTimeline();
}

void PCDocumentWindowController::addKeyframeCommands() {
    KeyframeCommands& keys = m_keyframeCommands;
    const auto inAnimation = [&keys] { return keys.isInAnimation(); };
    const auto some = [&keys] { return keys.hasKeyframes(); };
    m_commands.add(u"keyAll"_s, {[&keys] { keys.keyAll(); }, inAnimation});
    m_commands.add(u"createKeyframes"_s,
                   {[&keys] { keys.createKeyframes(); }, [&keys] { return keys.hasRows(); }});
    m_commands.add(u"switchTransitionType"_s, {[&keys] { keys.switchTransitionType(); },
                                               [&keys] { return keys.canSwitchTransitionType(); },
                                               {},
                                               [&keys] {
                                                   return keys.selectionIsInstant()
                                                              ? u"Make Tweened Keyframe"_s
                                                              : u"Make Instant Keyframe"_s;
                                               }});
    m_commands.add(u"cutKeyframes"_s,
                   {[this] { m_keyframeCommands.cut(m_ports.clipboard); }, some});
    m_commands.add(u"copyKeyframes"_s,
                   {[this] { m_keyframeCommands.copy(m_ports.clipboard); }, some});
    m_commands.add(u"pasteKeyframes"_s, {[this] { pasteKeyframes(); }, inAnimation});
    m_commands.add(u"deleteKeyframes"_s, {[&keys] { keys.deleteSelection(); },
                                          [&keys] { return keys.hasKeyframesOrTweens(); }});
}

void PCDocumentWindowController::pasteKeyframes() {
    const QString message = u"The Keyframes Cannot Be Pasted"_s;
    attempt(message, [&] {
        const QString refusal = m_keyframeCommands.paste(m_ports.clipboard);
        if (!refusal.isNull()) { tellFailure(message, refusal); }
    });
}

void PCDocumentWindowController::addEasingCommands() {
    const std::pair<QString, PCEasingMode> easings[] = {
        {u"Instant"_s, easingModeInstant},       {u"Linear"_s, PCEasingModeLinear},
        {u"In"_s, PCEasingModeEaseIn},           {u"Out"_s, PCEasingModeEaseOut},
        {u"InOut"_s, PCEasingModeEaseInOut},     {u"Anticipate"_s, PCEasingModeAnticipate},
        {u"Overshoot"_s, PCEasingModeOvershoot}, {u"AnticOver"_s, PCEasingModeAnticOver},
    };
    KeyframeCommands& keys = m_keyframeCommands;
    for (const auto& [name, mode] : easings) {
        m_commands.add(u"easing"_s + name, {[&keys, mode = mode] { keys.setEasing(mode); },
                                            [&keys] { return keys.hasKeyframesOrTweens(); }});
        m_commands.add(u"defaultEasing"_s + name,
                       {[&keys, mode = mode] { keys.setDefaultEasing(mode); },
                        [&keys] { return keys.isInAnimation(); },
                        [&keys, mode = mode] { return keys.defaultEasing() == mode; }});
    }
}

void PCDocumentWindowController::addRowCommands() {
    KeyframeCommands& keys = m_keyframeCommands;
    const std::pair<QString, void (KeyframeCommands::*)()> commands[] = {
        {u"cycleLoopMode"_s, &KeyframeCommands::cycleLoopModes},
        {u"deleteTimeline"_s, &KeyframeCommands::deleteTimelines},
        {u"deleteAllTimelines"_s, &KeyframeCommands::deleteAllTimelines},
        {u"selectKeyframesOfRows"_s, &KeyframeCommands::selectRows},
    };
    for (const auto& [name, perform] : commands) {
        m_commands.add(name, {[&keys, perform = perform] { (keys.*perform)(); },
                              [&keys] { return keys.hasRows(); }});
    }
}

void PCDocumentWindowController::addKeyframeSelectionCommands() {
    KeyframeCommands& keys = m_keyframeCommands;
    const std::pair<QString, void (KeyframeCommands::*)()> commands[] = {
        {u"selectAllKeyframes"_s, &KeyframeCommands::selectAll},
        {u"selectKeyframesAtPlayhead"_s, &KeyframeCommands::selectAtPlayhead},
        {u"selectKeyframesAfterPlayhead"_s, &KeyframeCommands::selectAfterPlayhead},
    };
    for (const auto& [name, perform] : commands) {
        m_commands.add(name, {[&keys, perform = perform] { (keys.*perform)(); },
                              [&keys] { return keys.isInAnimation(); }});
    }
    m_commands.add(u"deselectAllKeyframes"_s, {[&keys] { keys.deselectAll(); },
                                               [&keys] { return keys.hasKeyframesOrTweens(); }});
    const std::pair<QString, TimeDirection> directions[] = {{u"Earlier"_s, TimeDirection::Earlier},
                                                            {u"Later"_s, TimeDirection::Later}};
    for (const auto& [name, direction] : directions) {
        m_commands.add(u"select%1Keyframe"_s.arg(name),
                       {[&keys, direction = direction] { keys.selectNeighbour(direction); },
                        [&keys] { return keys.hasKeyframes(); }});
    }
}

void PCDocumentWindowController::addKeyframeTimeCommands() {
    KeyframeCommands& keys = m_keyframeCommands;
    const auto some = [&keys] { return keys.hasKeyframes(); };
    const std::pair<QString, TimeDirection> sides[] = {{u"Left"_s, TimeDirection::Earlier},
                                                       {u"Right"_s, TimeDirection::Later}};
    for (const auto& [name, direction] : sides) {
        m_commands.add(u"moveKeyframes"_s + name,
                       {[&keys, direction = direction] { keys.moveByTick(direction); }, some});
        m_commands.add(u"nudgeKeyframes"_s + name,
                       {[&keys, direction = direction] { keys.nudge(direction); }, some});
    }
    m_commands.add(u"reverseKeyframes"_s,
                   {[&keys] { keys.reverse(); }, [&keys] { return keys.lengthOfSelection() > 0; }});
    const std::pair<QString, TimeDirection> steps[] = {{u"Previous"_s, TimeDirection::Earlier},
                                                       {u"Next"_s, TimeDirection::Later}};
    for (const auto& [name, direction] : steps) {
        m_commands.add(u"goTo%1Keyframe"_s.arg(name),
                       {[this, direction = direction] {
                            stopPlaybackHere();
                            m_keyframeCommands.goToKeyframe(direction);
                        },
                        [&keys] { return keys.isInAnimation(); }});
    }
}

void PCDocumentWindowController::addLoopCommands() {
    Playback& playback = m_playback;
    const auto inAnimation = [this] { return !m_project->isSetupMode(); };
    const auto hasRange = [&playback] { return playback.loopRange().has_value(); };
    m_commands.add(u"loopRange"_s, {[&playback] {
                                        const auto range = playback.loopRange();
                                        playback.setLoopRangeIsOn(!range || !range->isOn);
                                    },
                                    inAnimation,
                                    [&playback] {
                                        const auto range = playback.loopRange();
                                        return range && range->isOn;
                                    }});
    m_commands.add(
        u"setLoopStart"_s,
        {[this] { m_playback.setLoopStart(m_time.playheadPositionInMS()); }, inAnimation});
    m_commands.add(u"setLoopEnd"_s,
                   {[this] { m_playback.setLoopEnd(m_time.playheadPositionInMS()); }, inAnimation});
    m_commands.add(u"setLoopRangeToSelection"_s,
                   {[this] {
                        const auto keyframes = m_keyframes.selectedKeyframesSortedByTimeInMS();
                        m_playback.setLoopRange(keyframes.front()->timeInMS(),
                                                keyframes.back()->timeInMS());
                    },
                    [this] { return m_keyframeCommands.lengthOfSelection() > 0; }});
    m_commands.add(u"clearLoopRange"_s, {[&playback] { playback.clearLoopRange(); }, hasRange});
    const std::pair<QString, PCPlaybackEnd> ends[] = {{u"playOnAtEnd"_s, PCPlaybackEnd::PlayOn},
                                                      {u"stopAtEnd"_s, PCPlaybackEnd::Stop},
                                                      {u"loopAtEnd"_s, PCPlaybackEnd::Loop}};
    for (const auto& [name, end] : ends) {
        m_commands.add(name, {[&playback, end = end] {
                                  PCAppPreferences::setPlaybackEnd(end);
                                  playback.playbackEndDidChange();
                              },
                              {},
                              [end = end] { return PCAppPreferences::playbackEnd() == end; }});
    }
}

void PCDocumentWindowController::addTimelineViewCommands() {
    const auto inAnimation = [this] { return !m_project->isSetupMode(); };
    const std::pair<QString, void (TimelineViewport::*)()> zooms[] = {
        {u"zoomTimelineIn"_s, &TimelineViewport::zoomIn},
        {u"zoomTimelineOut"_s, &TimelineViewport::zoomOut},
        {u"zoomTimelineToFit"_s, &TimelineViewport::zoomToFit},
    };
    for (const auto& [name, zoom] : zooms) {
        m_commands.add(name, {[this, zoom = zoom] { (m_timelineViewport.*zoom)(); }, inAnimation});
    }
    TimelineOutline& outline = m_timelineOutline;
    m_commands.add(u"showOnlySelectedRows"_s,
                   {[&outline] { outline.setShowsOnlySelected(!outline.showsOnlySelected()); },
                    inAnimation, [&outline] { return outline.showsOnlySelected(); }});
}

// Keys that mean something in more than one pane. With no keyframe selected the arrows move
// elements from the timeline, too; Delete never deletes them from there.
void PCDocumentWindowController::redirectKeysToTimeline() {
    const auto hasKeyboard = [this] {
        return m_keyboardPane == KeyboardPane::Timeline && m_keyframeCommands.isInAnimation();
    };
    const std::pair<QString, QString> always[] = {
        {u"cut"_s, u"cutKeyframes"_s},
        {u"copy"_s, u"copyKeyframes"_s},
        {u"delete"_s, u"deleteKeyframes"_s},
        {u"selectAll"_s, u"selectAllKeyframes"_s},
        {u"deselectAll"_s, u"deselectAllKeyframes"_s},
        {u"zoomIn"_s, u"zoomTimelineIn"_s},
        {u"zoomOut"_s, u"zoomTimelineOut"_s},
        {u"zoomCenter"_s, u"zoomTimelineToFit"_s},
    };
    for (const auto& [name, other] : always) {
        m_commands.redirect(name, other, hasKeyboard);
    }
    const std::pair<QString, QString> arrows[] = {
        {u"moveLeft"_s, u"moveKeyframesLeft"_s},
        {u"moveRight"_s, u"moveKeyframesRight"_s},
        {u"moveUp"_s, u"selectLaterKeyframe"_s},
        {u"moveDown"_s, u"selectEarlierKeyframe"_s},
    };
    for (const auto& [name, other] : arrows) {
        m_commands.redirect(name, other, [this, hasKeyboard] {
            return hasKeyboard() && m_keyframeCommands.hasKeyframes();
        });
    }
}

}  // namespace tweenery
