#pragma once

#include "base/ports.h"
#include "editor/canvas/element_selection_manager.h"

namespace tweenery {

/// Puts the selected elements on the pasteboard, in the order in which they were selected, after
/// one image for each image set that they use. With nothing selected the pasteboard is cleared.
/// Throws InputError when artwork is damaged; then the pasteboard stays as it is.
void copySelectedElements(PCProject& project, const PCElementSelectionManager& selection,
                          PasteboardPort& pasteboard);

/// Adds what is on the pasteboard to the project: images take the place of sets of their name,
/// elements come in front of the element selected first, in its group, or at the back of the
/// canvas. They stand on the canvas where they stood. One undo step, "Paste", for the elements;
/// image sets have none. Returns the new elements. Throws InputError when anything there is no
/// image or element that the project could hold; then nothing has changed.
PCElement::Elements pasteElements(PCProject& project, const PCElementSelectionManager& selection,
                                  const PasteboardPort& pasteboard);

}  // namespace tweenery
