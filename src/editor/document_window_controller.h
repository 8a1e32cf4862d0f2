#pragma once

#include <functional>
#include <memory>

#include "editor/canvas/canvas_interaction.h"
#include "editor/canvas/canvas_viewport.h"
#include "editor/canvas/event_anchor_point.h"
#include "editor/canvas/keyboard_edits.h"
#include "editor/command_set.h"
#include "editor/desktop_ports.h"
#include "editor/document_context.h"
#include "editor/inspector/inspector_edits.h"
#include "editor/layers/editor_layer.h"
#include "editor/layers/project_layers.h"
#include "editor/timeline/keyframe_commands.h"
#include "editor/timeline/playback.h"
#include "editor/timeline/timeline_interaction.h"

namespace tweenery {

/// What a controller asks of the window that shows it.
struct WindowHooks {
    /// Something on the canvas may look different.
    std::function<void()> canvasNeedsDisplay;
    /// The tool, and with it the cursor, is another one.
    std::function<void()> toolDidChange;
    CallLater callLater;
    /// What commands can do, or are called, may be another.
    std::function<void()> commandsDidChange = {};
    /// Something on ruler or tracks looks different besides the rows and the playhead.
    std::function<void()> timelineNeedsDisplay = [] {};
};

/// The hub of one open project: owns the managers that panes share, the layers and how the window
/// looks at them, and performs the commands of menus, keys and panes, with their questions. Knows
/// no widget. A window makes a new one when its project is read anew.
class PCDocumentWindowController : public DocumentContext,
                                   private CanvasInteractionHost,
                                   private TimelineInteractionHost,
                                   private KeyframeCommandsHost {
 public:
    /// The project must not have a screen yet.
    PCDocumentWindowController(PCProject::Ptr project, const DesktopPorts& ports,
                               WindowHooks hooks);
    ~PCDocumentWindowController() override;
    PCDocumentWindowController(const PCDocumentWindowController&) = delete;
    PCDocumentWindowController& operator=(const PCDocumentWindowController&) = delete;

    /// The playhead and the animation, or setup, in which the project was last seen. Marks nothing
    /// as changed.
    void restoreLastProjectState();

    // Parts.

    const PCProject::Ptr& project() const override { return m_project; }
    PCElementSelectionManager& selectionManager() override { return m_selection; }
    PCKeyframeManager& keyframeManager() override { return m_keyframes; }
    PCProjectTimeManager& timeManager() override { return m_time; }
    PCEditorLayer& editorLayer() { return m_editor; }
    ProjectLayers& layers() { return *m_layers; }
    EventAnchorPoint& eventAnchorPoint() { return m_anchorPoint; }
    CanvasViewport& viewport() { return m_viewport; }
    CanvasInteraction& interaction() { return m_interaction; }
    InspectorEdits& inspectorEdits() { return m_inspectorEdits; }
    KeyframeCommands& keyframeCommands() override { return m_keyframeCommands; }
    Playback& playback() { return m_playback; }
    TimelineOutline& timelineOutline() { return m_timelineOutline; }
    TimelineViewport& timelineViewport() { return m_timelineViewport; }
    TimelineInteraction& timelineInteraction() { return m_timelineInteraction; }
    TimelineScene timelineScene() {
        return {*m_project, m_time, m_keyframes, m_timelineOutline, m_timelineViewport};
    }
    CommandSet& commands() override { return m_commands; }
    void setKeyboardPane(KeyboardPane pane) override;
    KeyboardPane keyboardPane() const override { return m_keyboardPane; }
    const DesktopPorts& ports() const { return m_ports; }
    UndoManager& undoManager() { return m_project->undoManager(); }

    // State.

    EditTime editTime() const override;
    bool additiveModeIsOn() const override { return m_isAdditive; }
    /// The switch of the toolbar.
    void setAdditiveMode(bool isOn);
    int32_t lastKeyframeTimeInMS() const override;
    bool isPlayingBack() const { return m_time.isPlayingBack(); }
    /// A press on canvas, timeline or inspector lasts, and what would edit beside it waits.
    bool isPressed() const {
        return m_interaction.isPressed() || m_timelineInteraction.isPressed() ||
               m_inspectorEdits.isDragging();
    }
    /// Puts everything back as it was before the press. False without one.
    bool cancelPress() { return m_interaction.cancel() || m_timelineInteraction.cancel(); }
    /// Its release will not come: it ends as if it had.
    void losePress();
    /// What is held has changed, wherever the pointer is.
    void modifiersChanged(Qt::KeyboardModifiers modifiers);
    /// The window is no longer the active one.
    void focusLost();
    const PCElement::Elements& selectionBeforePlayback() const {
        return m_playback.selectionBeforePlayback();
    }

    // Commands. Each that edits leaves one step of undo when it comes by the command set.

    void selectAnimation(const PCAnimation::Ptr& animation) override;
    void copy() override;
    void paste() override;
    void pasteFrom(const PasteboardPort& pasteboard) override;
    void deleteElements() override;
    void duplicateElements() override { duplicate(kOffsetOfDuplicates); }
    void duplicateElementsInPlace() override { duplicate(0); }
    void groupElements() override;
    void ungroupElements() override;
    void importImages() override;
    void togglePlayPause() override;
    /// Ends a run so that the playhead stays at the time shown, and selects again what was
    /// selected.
    void stopPlaybackHere() { m_playback.stopHere(); }
    void shiftSelectedElementsByDelta(QPointF delta) override;
    void selectAll();
    /// Selects the element, or the animation, of that identifier. Nothing for one that is gone.
    void reveal(const QString& identifier);
    /// Tab on the canvas: the element after the one selected last.
    void selectNextElement(bool backward);
    /// A digit key.
    void setOpacityOfSelection(double opacity);
    void undo();
    void redo();
    void receivedDroppedImages(const QStringList& paths, QPointF position,
                               const PCElement::Ptr& parent, size_t index) override;
    ImageImport::ImageSets addImagesToProject(const QStringList& paths) override;
    void switchToSetupIfNecessary() override;

    /// A drop on the canvas: in front of the element selected first, else in front of all. As one
    /// step of undo.
    void dropImages(const QStringList& paths, QPointF canvasPoint);
    void dropElements(const PasteboardPort& pasteboard);

    /// Tells the user what went wrong; for whatever an edit throws.
    void tellFailure(const QString& message, const QString& reason);

 private:
    static constexpr float kOffsetOfDuplicates = 50;  // points, on both axes

    PCProject::Ptr m_project;
    DesktopPorts m_ports;
    WindowHooks m_hooks;
    ProjectLayers::Ptr m_layers;
    PCEditorLayer m_editor;
    PCElementSelectionManager m_selection;
    PCKeyframeManager m_keyframes;
    PCProjectTimeManager m_time;
    TimelineOutline m_timelineOutline;
    Playback m_playback;
    KeyframeCommands m_keyframeCommands;
    EventAnchorPoint m_anchorPoint;
    CanvasViewport m_viewport;
    CanvasScene m_scene;
    CanvasInteraction m_interaction;
    TimelineViewport m_timelineViewport;
    TimelineInteraction m_timelineInteraction;
    NudgeSeries m_nudges;
    InspectorEdits m_inspectorEdits;
    CommandSet m_commands;
    bool m_isAdditive = false;
    KeyboardPane m_keyboardPane = KeyboardPane::Canvas;

    PCElement::Elements selected() const { return m_selection.selectedElements(); }
    bool hasSelection() const { return m_selection.selectedElementsCount() > 0; }
    void endPlaybackAtTimeShown() override { stopPlaybackHere(); }
    void canvasToolDidChange() override { m_hooks.toolDidChange(); }
    void canvasNeedsDisplay() override { m_hooks.canvasNeedsDisplay(); }
    void timelineNeedsDisplay() override { m_hooks.timelineNeedsDisplay(); }
    void callLater(std::chrono::milliseconds delay, std::function<void()> call) override {
        m_hooks.callLater(delay, std::move(call));
    }
    void asOneStep(const QString& name, const std::function<void()>& edit) override;
    void addCommands();
    void addFileAndEditCommands();
    void addElementCommands();
    void addNudgeCommands();
    void addAnimationCommands();
    void addViewCommands();
    void addTimelineCommands();
    void addKeyframeCommands();
    void addEasingCommands();
    void addRowCommands();
    void addKeyframeSelectionCommands();
    void addKeyframeTimeCommands();
    void addLoopCommands();
    void addTimelineViewCommands();
    void redirectKeysToTimeline();
    void pasteKeyframes();
    void duplicate(float offset);
    void reorder(void (PCProject::*move)(const PCElement::Elements& elements));
    bool userAgreesToLose(const QString& verb);
    bool someAnimationKeys(const PCElement::Elements& elements) const;
    EditTarget editTarget() const { return {editTime(), m_isAdditive}; }
    void setHidden(bool isHidden);
    void stepAnimation(int step);
    void selectWhatChangesBy(bool (PCProject::*step)());
    QPointF canvasCenter() const;
    /// Runs an edit; what it throws is told.
    bool attempt(const QString& message, const std::function<void()>& edit);
};

}  // namespace tweenery
