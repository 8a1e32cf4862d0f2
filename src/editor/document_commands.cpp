// Which command of the menu does what, and when it can.

#include <algorithm>

#include "editor/canvas/element_boxes.h"
#include "editor/document_window_controller.h"

using namespace Qt::StringLiterals;

namespace tweenery {

void PCDocumentWindowController::addCommands() {
    addFileAndEditCommands();
    addElementCommands();
    addNudgeCommands();
    addAnimationCommands();
    addViewCommands();
    addTimelineCommands();
    m_commands.setMustWait([this] { return isPressed(); });
    m_commands.setAround([this](const CommandAction& action, const QString& title) {
        if (action.isEdit) { return asOneStep(title, action.perform); }
        action.perform();
    });
}

void PCDocumentWindowController::addFileAndEditCommands() {
    const auto some = [this] { return hasSelection(); };
    const auto edit = [this](const QString& name, auto perform, std::function<bool()> isEnabled) {
        m_commands.add(name, {perform, std::move(isEnabled), {}, {}, true});
    };
    edit(u"importImages"_s, [this] { importImages(); }, {});
    edit(
        u"cut"_s,
        [this] {
            copy();
            deleteElements();
        },
        some);
    edit(u"paste"_s, [this] { paste(); }, {});
    edit(
        u"duplicateElements"_s, [this] { duplicateElements(); }, some);
    edit(
        u"duplicateElementsInPlace"_s, [this] { duplicateElementsInPlace(); }, some);
    edit(
        u"delete"_s, [this] { deleteElements(); }, some);
    m_commands.add(u"copy"_s, {[this] { copy(); }, some});
    m_commands.add(u"selectAll"_s, {[this] { selectAll(); }});
    m_commands.add(u"deselectAll"_s, {[this] { m_selection.deselectAllElements(); }, some});

    const auto titled = [](const QString& verb, const QString& name) {
        return name.isEmpty() ? verb : verb + u' ' + name;
    };
    m_commands.add(u"undo"_s,
                   {[this] { undo(); },
                    [this] { return undoManager().canUndo(); },
                    {},
                    [this, titled] { return titled(u"Undo"_s, undoManager().undoActionName()); }});
    m_commands.add(u"redo"_s,
                   {[this] { redo(); },
                    [this] { return undoManager().canRedo(); },
                    {},
                    [this, titled] { return titled(u"Redo"_s, undoManager().redoActionName()); }});
}

void PCDocumentWindowController::addElementCommands() {
    const auto some = [this] { return hasSelection(); };
    const auto inSetup = [this] { return hasSelection() && m_project->isSetupMode(); };
    const auto edit = [this](const QString& name, auto perform, std::function<bool()> isEnabled) {
        m_commands.add(name, {perform, std::move(isEnabled), {}, {}, true});
    };
    edit(
        u"groupElements"_s, [this] { groupElements(); }, some);
    edit(
        u"ungroupElements"_s, [this] { ungroupElements(); },
        [this] { return hasSelection() && m_project->elementsAreAllGroups(selected()); });
    using Move = void (PCProject::*)(const PCElement::Elements&);
    const std::pair<QString, Move> moves[] = {
        {u"moveElementsForward"_s, &PCProject::moveElementsForward},
        {u"moveElementsBackward"_s, &PCProject::moveElementsBackward},
        {u"moveElementsToFront"_s, &PCProject::moveElementsToFront},
        {u"moveElementsToBack"_s, &PCProject::moveElementsToBack},
    };
    for (const auto& [name, move] : moves) {
        edit(
            name, [this, move = move] { reorder(move); }, inSetup);
    }
    for (const bool locked : {true, false}) {
        edit(
            locked ? u"lockElements"_s : u"unlockElements"_s,
            [this, locked] {
                for (const PCElement::Ptr& element : selected()) {
                    element->setLocked(locked);
                }
            },
            some);
    }
    const auto allAreHidden = [this] {
        const auto elements = selected();
        return std::all_of(elements.begin(), elements.end(),
                           [](const PCElement::Ptr& element) { return element->hidden(); });
    };
    m_commands.add(u"toggleHidden"_s, {[this, allAreHidden] { setHidden(!allAreHidden()); },
                                       some,
                                       {},
                                       [some, allAreHidden] {
                                           return some() && allAreHidden() ? u"Show"_s : u"Hide"_s;
                                       },
                                       true});
    const std::pair<QString, QPointF> anchors[] = {
        {u"anchorAtCenter"_s, {0.5, 0.5}},  {u"anchorAtTopLeft"_s, {0, 0}},
        {u"anchorAtTopRight"_s, {1, 0}},    {u"anchorAtBottomLeft"_s, {0, 1}},
        {u"anchorAtBottomRight"_s, {1, 1}},
    };
    for (const auto& [name, unitPoint] : anchors) {
        m_commands.add(
            name,
            {[this, unitPoint = unitPoint] { placeAnchorPoints(m_scene, unitPoint); }, inSetup});
    }
}

// A series of nudges makes its own steps of undo.
void PCDocumentWindowController::addNudgeCommands() {
    const std::pair<QString, QPointF> nudges[] = {
        {u"moveUp"_s, {0, -1}},
        {u"moveDown"_s, {0, 1}},
        {u"moveLeft"_s, {-1, 0}},
        {u"moveRight"_s, {1, 0}},
    };
    constexpr double kFar = 10;
    for (const auto& [name, delta] : nudges) {
        for (const double distance : {1.0, kFar}) {
            m_commands.add(
                distance == 1 ? name : name + u"Far"_s,
                {[this, delta = delta * distance] { shiftSelectedElementsByDelta(delta); },
                 [this] { return hasSelection(); }});
        }
    }
}

void PCDocumentWindowController::addAnimationCommands() {
    const auto inAnimation = [this] { return !m_project->isSetupMode(); };
    PCAnimationsManager& manager = m_project->animationsManager();
    m_commands.add(u"duplicateAnimation"_s,
                   {[this, &manager] {
                        selectAnimation(manager.duplicateAnimation(manager.selectedAnimation()));
                    },
                    inAnimation,
                    {},
                    {},
                    true});
    m_commands.add(u"deleteAnimation"_s,
                   {[&manager] { manager.deleteAnimation(manager.selectedAnimation()); },
                    inAnimation,
                    {},
                    {},
                    true});
    m_commands.add(u"selectSetup"_s, {[this] { selectAnimation(nullptr); }, inAnimation});
    m_commands.add(u"selectPreviousAnimation"_s, {[this] { stepAnimation(-1); }, inAnimation});
    m_commands.add(
        u"selectNextAnimation"_s,
        {[this] { stepAnimation(1); }, [&manager] { return !manager.animations().empty(); }});
    m_commands.add(u"togglePlayPause"_s,
                   {[this] { togglePlayPause(); }, inAnimation, [this] { return isPlayingBack(); },
                    [this] { return isPlayingBack() ? u"Stop"_s : u"Play"_s; }});
    m_commands.add(u"goToStart"_s, {[this] { m_time.setPlayheadPositionInMS(0); }, inAnimation});
    m_commands.add(u"goToEnd"_s,
                   {[this] { m_time.setPlayheadPositionInMS(std::max(0, lastKeyframeTimeInMS())); },
                    inAnimation});
}

void PCDocumentWindowController::addViewCommands() {
    m_commands.add(u"zoomIn"_s, {[this] { m_viewport.zoomIn(); }});
    m_commands.add(u"zoomOut"_s, {[this] { m_viewport.zoomOut(); }});
    m_commands.add(u"zoomCenter"_s, {[this] { m_viewport.zoomCanvasToFill(); }});
    m_commands.add(u"zoomActualSize"_s, {[this] { m_viewport.zoomToActualSize(); }});
    m_commands.add(u"zoomToSelection"_s, {[this] {
                                              const auto box = boxOfElementsOnScreen(selected());
                                              if (box) { m_viewport.zoomToBox(*box); }
                                          },
                                          [this] { return hasSelection(); }});
    const std::pair<QString, PCSelectionState> tools[] = {
        {u"changeCursorStateToSelection"_s, PCSelectionStateSelect},
        {u"changeCursorStateToDirect"_s, PCSelectionStateDirect},
        {u"changeCursorStateToHand"_s, PCSelectionStateHand},
    };
    for (const auto& [name, tool] : tools) {
        m_commands.add(name, {[this, tool = tool] { m_interaction.setTool(tool); },
                              {},
                              [this, tool = tool] { return m_interaction.tool() == tool; }});
    }
    m_commands.add(
        u"showGuidelines"_s,
        {[] { PCAppPreferences::setShowsGuidelines(!PCAppPreferences::showsGuidelines()); },
         {},
         [] { return PCAppPreferences::showsGuidelines(); }});
}

}  // namespace tweenery
