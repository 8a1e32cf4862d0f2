#include "editor/document_window_controller.h"

#include <algorithm>
#include <unordered_set>

#include "base/errors.h"
#include "editor/canvas/pasteboard_commands.h"
#include "editor/canvas/setup_switch.h"
#include "editor/selection_picture.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

PCElement::Elements withoutThoseBelowAnother(const PCElement::Elements& elements) {
    std::unordered_set<const PCElement*> all;
    for (const PCElement::Ptr& element : elements) {
        all.insert(element.get());
    }
    PCElement::Elements topmost;
    for (const PCElement::Ptr& element : elements) {
        const PCElement* above = element->parentElement();
        while (above && !all.contains(above)) {
            above = above->parentElement();
        }
        if (!above) { topmost.push_back(element); }
    }
    return topmost;
}

}  // namespace

PCDocumentWindowController::PCDocumentWindowController(PCProject::Ptr project,
                                                       const DesktopPorts& ports, WindowHooks hooks)
    : m_project(std::move(project)),
      m_ports(ports),
      m_hooks(std::move(hooks)),
      m_layers(ProjectLayers::forProject(m_project, m_hooks.canvasNeedsDisplay)),
      m_selection(m_project),
      m_keyframes(m_project),
      m_time(ports.clock, ports.log),
      m_timelineOutline(*m_project, m_selection, m_keyframes),
      m_playback(m_project, m_time, m_selection, m_timelineOutline, m_layers),
      m_keyframeCommands(*m_project, m_keyframes, m_selection, m_time, *this),
      m_anchorPoint(m_project, m_selection, m_editor),
      m_viewport(*m_project, m_editor, m_anchorPoint),
      m_scene{*m_project, m_selection, m_editor, m_viewport, m_anchorPoint},
      m_interaction(m_scene, *this),
      m_timelineViewport(*m_project, m_time, m_timelineOutline),
      m_timelineInteraction(
          {*m_project, m_time, m_keyframes, m_timelineOutline, m_timelineViewport}, *this),
      m_nudges(*m_project, m_selection, ports.clock),
      m_inspectorEdits({*m_project, m_selection, ports.clock, [this] { return editTarget(); },
                        [this] { stopPlaybackHere(); }}) {
    PCLayer& canvasLayer = *PCLayer::of(*m_project->canvas());
    m_editor.setCanvasLayer(canvasLayer);
    m_time.prepareToAnimateLayer(canvasLayer);
    addCommands();
}

PCDocumentWindowController::~PCDocumentWindowController() = default;

void PCDocumentWindowController::restoreLastProjectState() {
    PCProjectPreferences& preferences = m_project->preferences();
    m_time.setPlayheadPositionInMS(preferences.timelinePlayheadPosition());
    selectAnimation(m_project->animationsManager().animationForIdentifier(
        preferences.selectedAnimationIdentifier()));
}

EditTime PCDocumentWindowController::editTime() const {
    return m_project->isSetupMode() ? EditTime::setup()
                                    : EditTime::at(m_time.playheadPositionInMS());
}

int32_t PCDocumentWindowController::lastKeyframeTimeInMS() const {
    return m_project->isSetupMode() ? -1 : m_timelineOutline.lastKeyframeTimeInMS();
}

void PCDocumentWindowController::setAdditiveMode(bool isOn) {
    m_isAdditive = isOn;
    m_project->notificationCentre().post(DocumentNotification::additiveMode, nullptr);
}

void PCDocumentWindowController::setKeyboardPane(KeyboardPane pane) {
    if (pane == m_keyboardPane) { return; }
    m_keyboardPane = pane;
    if (m_hooks.commandsDidChange) { m_hooks.commandsDidChange(); }
}

// Failures.

void PCDocumentWindowController::tellFailure(const QString& message, const QString& reason) {
    m_ports.alerts.runModal({message, reason, {u"Ok"_s}, {}});
}

bool PCDocumentWindowController::attempt(const QString& message,
                                         const std::function<void()>& edit) {
    try {
        edit();
        return true;
    } catch (const InputError& error) {
        tellFailure(message, u"“%1” %2."_s.arg(error.entry(), error.reason()));
    } catch (const std::bad_alloc&) { tellFailure(message, u"There is not enough memory."_s); }
    return false;
}

// Animations and playing.

void PCDocumentWindowController::selectAnimation(const PCAnimation::Ptr& animation) {
    if (animation == m_project->animationsManager().selectedAnimation()) { return; }
    attempt(u"The Animation Cannot Be Shown"_s,
            [&] { m_project->animationsManager().setSelectedAnimation(animation); });
}

void PCDocumentWindowController::togglePlayPause() {
    if (m_project->isSetupMode()) { return; }
    // While the skim bar shows under the pointer, playing starts there.
    if (!isPlayingBack() && m_timelineInteraction.skimIsShown()) {
        m_time.setPlayheadPositionInMS(m_time.skimPositionInMS());
    }
    m_playback.togglePlayPause();
}

void PCDocumentWindowController::losePress() {
    m_interaction.lost();
    m_timelineInteraction.lost();
}

void PCDocumentWindowController::modifiersChanged(Qt::KeyboardModifiers modifiers) {
    m_interaction.modifiersChanged(modifiers);
    m_timelineInteraction.modifiersChanged(modifiers);
}

void PCDocumentWindowController::focusLost() {
    m_interaction.focusLost();
    m_timelineInteraction.focusLost();
}

void PCDocumentWindowController::stepAnimation(int step) {
    const auto& animations = m_project->animationsManager().animations();
    const auto found = std::find(animations.begin(), animations.end(),
                                 m_project->animationsManager().selectedAnimation());
    // The row before the first is setup.
    const auto row = found == animations.end() ? -1 : found - animations.begin();
    const auto next =
        std::clamp<ptrdiff_t>(row + step, -1, static_cast<ptrdiff_t>(animations.size()) - 1);
    selectAnimation(next < 0 ? nullptr : animations[static_cast<size_t>(next)]);
}

// The clipboard.

void PCDocumentWindowController::copy() {
    if (!hasSelection()) { return; }
    attempt(u"Nothing Was Copied"_s, [&] {
        m_ports.clipboard.beginCopy(pictureOfElements(m_editor, selected()));
        copySelectedElements(*m_project, m_selection, m_ports.clipboard);
    });
}

void PCDocumentWindowController::paste() {
    const ClipboardPort& clipboard = m_ports.clipboard;
    if (KeyframeCommands::canPasteFrom(clipboard)) {
        pasteKeyframes();
    } else if (!clipboard.read(PCElement::pasteboardType()).isEmpty()) {
        pasteFrom(clipboard);
    } else if (const QStringList files = clipboard.files(); !files.isEmpty()) {
        receivedDroppedImages(files, canvasCenter(), nullptr, SIZE_MAX);
    } else if (const QImage picture = clipboard.picture(); !picture.isNull()) {
        attempt(u"The Picture Cannot Be Pasted"_s, [&] {
            ImageImport import(*m_project, m_ports.alerts);
            m_selection.selectElements(
                import.receivedPastedImage(picture, canvasCenter(), nullptr, SIZE_MAX));
        });
    }
}

void PCDocumentWindowController::pasteFrom(const PasteboardPort& pasteboard) {
    attempt(u"The Elements Cannot Be Pasted"_s, [&] {
        const auto pasted = pasteElements(*m_project, m_selection, pasteboard);
        if (!pasted.empty()) { m_selection.selectElements(pasted); }
    });
}

// Structure.

bool PCDocumentWindowController::someAnimationKeys(const PCElement::Elements& elements) const {
    const auto& animations = m_project->animationsManager().animations();
    return std::any_of(animations.begin(), animations.end(), [&](const auto& animation) {
        return std::any_of(elements.begin(), elements.end(), [&](const PCElement::Ptr& element) {
            return animation->fileWrapper()->child(element->identifier().toString()) != nullptr;
        });
    });
}

bool PCDocumentWindowController::userAgreesToLose(const QString& verb) {
    if (m_project->isSetupMode() || !PCAppPreferences::showsChangeOtherAnimationsStateAlert() ||
        !someAnimationKeys(selected())) {
        return true;
    }
    const QString text =
        u"Other animations in your project have keyed values for this element which will be lost, "
        u"do you still wish to %1?"_s.arg(verb);
    return m_ports.alerts
               .runModal(
                   {u"About to Perform Destructive Operation"_s, text, {u"Yes"_s, u"No"_s}, {}})
               .button == 0;
}

void PCDocumentWindowController::deleteElements() {
    if (!userAgreesToLose(u"delete"_s)) { return; }
    const auto elements = selected();
    m_selection.deselectAllElements();
    for (const PCElement::Ptr& element : elements) {
        element->removeFromParentElement();
    }
}

void PCDocumentWindowController::duplicate(float offset) {
    attempt(u"The Elements Cannot Be Duplicated"_s, [&] {
        const auto originals = selected();
        switchToSetupIfNecessary();
        m_selection.selectElements(m_project->duplicateItems(originals, offset));
    });
}

void PCDocumentWindowController::groupElements() {
    const auto elements = selected();
    switchToSetupIfNecessary();
    m_selection.deselectAllElements();
    attempt(u"The Elements Cannot Be Grouped"_s, [&] { m_project->groupElements(elements); });
    if (PCElement* group = elements.front()->parentElement()) {
        m_selection.selectElements({group->shared_from_this()});
    }
}

void PCDocumentWindowController::ungroupElements() {
    if (!userAgreesToLose(u"ungroup"_s)) { return; }
    const auto groups = selected();
    PCElement::Elements children;
    for (const PCElement::Ptr& group : groups) {
        children.insert(children.end(), group->children().begin(), group->children().end());
    }
    m_selection.deselectAllElements();
    m_project->ungroupElements(groups);
    m_selection.selectElements(children);
}

void PCDocumentWindowController::reorder(
    void (PCProject::*move)(const PCElement::Elements& elements)) {
    const auto elements = selected();
    m_selection.deselectAllElements();
    attempt(u"The Elements Cannot Be Moved"_s, [&] { ((*m_project).*move)(elements); });
    m_selection.selectElements(elements);
}

void PCDocumentWindowController::selectAll() {
    for (const PCElement::Ptr& element : m_project->canvas()->children()) {
        if (!m_selection.elementIsSelected(*element)) { m_selection.selectElement(element); }
    }
}

void PCDocumentWindowController::reveal(const QString& identifier) {
    if (const auto animation = m_project->animationsManager().animationForIdentifier(identifier)) {
        selectAnimation(animation);
    } else if (const auto element = m_project->elementForIdentifier(Identifier(identifier))) {
        if (element != m_project->canvas()) { m_selection.selectElements({element}); }
    }
}

// What the step touches waits in the layers. Where the step itself has selected another animation,
// that is all of them, and nothing is selected.
void PCDocumentWindowController::selectWhatChangesBy(bool (PCProject::*step)()) {
    m_selection.deselectAllElements();
    m_layers->update();
    const PCAnimation::Ptr animation = m_project->animationsManager().selectedAnimation();
    const bool isDone = ((*m_project).*step)();
    m_keyframeCommands.deselectDeleted();
    if (!isDone) { return; }
    if (m_project->animationsManager().selectedAnimation() != animation) { return; }
    auto touched = m_layers->changedElements();
    std::erase(touched, m_project->canvas());
    m_selection.selectElements(withoutThoseBelowAnother(touched));
}

void PCDocumentWindowController::undo() {
    stopPlaybackHere();
    attempt(u"The Last Step Cannot Be Undone"_s, [this] {
        m_project->selectPlaceOfUndo();
        selectWhatChangesBy(&PCProject::undo);
    });
}

void PCDocumentWindowController::redo() {
    stopPlaybackHere();
    attempt(u"The Last Step Cannot Be Redone"_s, [this] {
        m_project->selectPlaceOfRedo();
        selectWhatChangesBy(&PCProject::redo);
    });
}

// Fields.

void PCDocumentWindowController::shiftSelectedElementsByDelta(QPointF delta) {
    stopPlaybackHere();
    undoManager().endEvent();
    m_nudges.nudge(delta, editTarget());
}

void PCDocumentWindowController::setOpacityOfSelection(double opacity) {
    if (!hasSelection() || isPressed()) { return; }
    stopPlaybackHere();
    undoManager().endEvent();
    tweenery::setOpacityOfSelection(m_scene, opacity, editTarget());
}

void PCDocumentWindowController::selectNextElement(bool backward) {
    if (isPressed()) { return; }
    const bool isDirect = m_interaction.tool() == PCSelectionStateDirect;
    if (const auto next = elementAfterSelection(m_scene, isDirect, backward)) {
        m_selection.selectElements({next});
    }
}

void PCDocumentWindowController::setHidden(bool isHidden) {
    for (const PCElement::Ptr& element : selected()) {
        element->setHidden(isHidden);
    }
}

// Images.

QPointF PCDocumentWindowController::canvasCenter() const {
    const QSizeF size = m_project->canvas()->size();
    return {size.width() / 2, size.height() / 2};
}

void PCDocumentWindowController::switchToSetupIfNecessary() {
    tweenery::switchToSetupIfNecessary(*m_project, m_ports.alerts);
}

void PCDocumentWindowController::importImages() {
    attempt(u"The Images Cannot Be Imported"_s, [&] {
        const auto imported =
            ImageImport(*m_project, m_ports.alerts).importImages(m_ports.openPanel);
        if (!imported.empty()) { m_selection.selectElements(imported); }
    });
}

void PCDocumentWindowController::receivedDroppedImages(const QStringList& paths, QPointF position,
                                                       const PCElement::Ptr& parent, size_t index) {
    attempt(u"The Images Cannot Be Imported"_s, [&] {
        const PCElement::Ptr target = parent ? parent : m_project->canvas();
        const auto imported =
            ImageImport(*m_project, m_ports.alerts)
                .receivedDroppedImages(paths, position, target,
                                       std::min(index, target->children().size()));
        if (!imported.empty()) { m_selection.selectElements(imported); }
    });
}

void PCDocumentWindowController::dropImages(const QStringList& paths, QPointF canvasPoint) {
    const DropTarget target = dropTarget(m_scene);
    asOneStep(u"Import Images"_s,
              [&] { receivedDroppedImages(paths, canvasPoint, target.parent, target.index); });
}

void PCDocumentWindowController::dropElements(const PasteboardPort& pasteboard) {
    asOneStep(u"Paste"_s, [&] { pasteFrom(pasteboard); });
}

// Whatever the event loop did meanwhile.
void PCDocumentWindowController::asOneStep(const QString& name, const std::function<void()>& edit) {
    stopPlaybackHere();
    undoManager().endEvent();
    {
        const UndoGroup group(undoManager());
        edit();
        if (undoManager().nameOfOpenStep().isEmpty()) { undoManager().setActionName(name); }
    }
    undoManager().endEvent();
}

ImageImport::ImageSets PCDocumentWindowController::addImagesToProject(const QStringList& paths) {
    ImageImport::ImageSets sets;
    attempt(u"The Images Cannot Be Imported"_s,
            [&] { sets = ImageImport(*m_project, m_ports.alerts).addImagesToProject(paths); });
    return sets;
}

}  // namespace tweenery
