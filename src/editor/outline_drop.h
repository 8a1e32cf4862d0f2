#pragma once

#include <QList>
#include <QStringList>
#include <QUrl>

#include "editor/document_context.h"

namespace tweenery {

/// A place between the rows of the list of elements: among the children of `parent` (the canvas is
/// one), with `row` of them above it.
struct OutlineGap {
    PCElement::Ptr parent;
    size_t row = 0;  // at most the number of children

    /// The same place in the model, where the children lie back to front.
    size_t index() const;
};

/// The part of a row that the pointer is over.
enum class RowPart { Upper, Middle, Lower };

/// The gap that is meant there. The middle of a group means its front, the lower part of one whose
/// children are shown too; an element that is no group takes nothing in.
OutlineGap gapAt(const PCElement::Ptr& element, RowPart part, bool showsChildren);

/// What is dragged over the list of elements.
struct OutlineDrag {
    enum class Source { ThisList, ThisWindow, Elsewhere };

    Source source = Source::Elsewhere;
    PCElement::Elements elements;  // of this list
    bool hasElements = false;      // in the form of the pasteboard
    bool hasFiles = false;
    bool hasPictures = false;  // among the files
};

/// The paths of local files.
QStringList filesOf(const QList<QUrl>& urls);
/// Whether one of them can be imported, by its name.
bool hasPictures(const QStringList& paths);

/// What a drop into `parent` would do; Qt::IgnoreAction where nothing can be dropped.
Qt::DropAction actionOfDrop(const OutlineDrag& drag, const PCElement& parent);

/// Moves elements into the gap; they end up there in the order of the list, whatever their old
/// parents. What has a dragged ancestor moves with it. One undo step, "Move"; none where nothing
/// changes place. The moved elements are selected afterwards.
void moveToGap(DocumentContext& document, const PCElement::Elements& elements,
               const OutlineGap& gap);
/// Adds pictures in the gap, in the middle of the canvas.
void importToGap(DocumentContext& document, const QStringList& paths, const OutlineGap& gap);

}  // namespace tweenery
