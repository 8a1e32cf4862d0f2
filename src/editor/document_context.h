#pragma once

#include <QPointF>
#include <QStringList>
#include <cstdint>

#include "base/ports.h"
#include "editor/canvas/element_selection_manager.h"
#include "editor/canvas/image_import.h"
#include "editor/command_set.h"
#include "editor/timeline/keyframe_commands.h"
#include "editor/timeline/keyframe_manager.h"
#include "editor/timeline/project_time_manager.h"
#include "model/edit_time.h"
#include "model/project.h"

namespace tweenery {

/// Names of the notifications that a window posts to its project's centre, without an object.
namespace DocumentNotification {
inline const QString additiveMode = QStringLiteral("com.lumenfold.tweenery.additivemodechanged");
}  // namespace DocumentNotification

/// Whose the keys are that mean something in more than one pane: Copy, Delete, the arrows, …
enum class KeyboardPane { Canvas, Timeline };

/// What the panes of one window share: the open document, the managers of what is selected and of
/// time, and the commands that more than one pane gives. The window's controller is it; no pane
/// knows another. Everything here lives longer than any pane.
class DocumentContext {
 public:
    virtual ~DocumentContext() = default;

    virtual const PCProject::Ptr& project() const = 0;
    virtual PCElementSelectionManager& selectionManager() = 0;
    virtual PCKeyframeManager& keyframeManager() = 0;
    virtual PCProjectTimeManager& timeManager() = 0;
    /// What an edit is written to: the setup state, or the playhead's time.
    virtual EditTime editTime() const = 0;
    virtual bool additiveModeIsOn() const = 0;
    /// Of the selected animation; -1 in setup mode, 0 without a keyframe.
    virtual int32_t lastKeyframeTimeInMS() const = 0;
    /// Null is setup. An animation that cannot be read is told to the user; then the selection
    /// stays.
    virtual void selectAnimation(const PCAnimation::Ptr& animation) = 0;

    virtual KeyframeCommands& keyframeCommands() = 0;
    /// The commands of the menu; a pane that performs some adds them.
    virtual CommandSet& commands() = 0;

    /// The timeline says so while it has the pointer or the focus.
    virtual void setKeyboardPane(KeyboardPane pane) = 0;
    virtual KeyboardPane keyboardPane() const = 0;

    // Commands of the menu that panes give too: by their context menus, keys and buttons.

    virtual void copy() = 0;
    virtual void paste() = 0;
    /// What was dropped instead of the clipboard. Tells the user what cannot be pasted.
    virtual void pasteFrom(const PasteboardPort& pasteboard) = 0;
    virtual void deleteElements() = 0;
    virtual void duplicateElements() = 0;
    virtual void duplicateElementsInPlace() = 0;
    virtual void groupElements() = 0;
    virtual void ungroupElements() = 0;
    virtual void importImages() = 0;
    virtual void togglePlayPause() = 0;
    /// Moves the selected elements, in scene points.
    virtual void shiftSelectedElementsByDelta(QPointF delta) = 0;

    /// Artwork that was dropped, on the canvas or between rows; see ImageImport.
    virtual void receivedDroppedImages(const QStringList& paths, QPointF position,
                                       const PCElement::Ptr& parent, size_t index) = 0;
    virtual ImageImport::ImageSets addImagesToProject(const QStringList& paths) = 0;
    /// Before an edit that belongs to the setup state.
    virtual void switchToSetupIfNecessary() = 0;
};

}  // namespace tweenery
