#include "editor/outline_drop.h"

#include <QFileInfo>
#include <algorithm>
#include <unordered_set>

#include "editor/element_outline.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

using Elements = PCElement::Elements;

// From the top; without those whose ancestors are among them.
Elements topmostInListOrder(const PCProject& project, const Elements& elements) {
    Elements ordered = inListOrder(project, elements);
    std::unordered_set<const PCElement*> dragged;
    for (const PCElement::Ptr& element : ordered) {
        dragged.insert(element.get());
    }
    std::erase_if(ordered, [&dragged](const PCElement::Ptr& element) {
        const PCElement* above = element->parentElement();
        while (above && !dragged.contains(above)) {
            above = above->parentElement();
        }
        return above != nullptr;
    });
    return ordered;
}

bool lieIn(const Elements& ordered, const PCElement& parent, size_t index) {
    const bool areSiblings = std::all_of(
        ordered.begin(), ordered.end(),
        [&parent](const PCElement::Ptr& element) { return element->parentElement() == &parent; });
    if (!areSiblings) { return false; }
    const auto first = static_cast<size_t>(ordered.front()->index());
    const auto last = static_cast<size_t>(ordered.back()->index());
    const bool areTogether = first - last + 1 == ordered.size();
    return areTogether && index >= last && index <= first + 1;
}

// Where an element stands to the gap at `index`: those that lie alike can move together.
enum class Side { Behind, InFront, OtherParent };

Side sideOf(const PCElement& element, const PCElement& parent, size_t index) {
    if (element.parentElement() != &parent) { return Side::OtherParent; }
    return static_cast<size_t>(element.index()) < index ? Side::Behind : Side::InFront;
}

// Each lot goes behind the one before it.
void moveInLots(PCProject& project, const Elements& ordered, const PCElement::Ptr& parent,
                size_t index) {
    for (auto lot = ordered.begin(); lot != ordered.end();) {
        const Side side = sideOf(**lot, *parent, index);
        const auto isOfThisLot = [&](const PCElement::Ptr& element) {
            return side != Side::OtherParent && sideOf(*element, *parent, index) == side;
        };
        const auto end = std::find_if_not(lot + 1, ordered.end(), isOfThisLot);
        const size_t target = side == Side::Behind ? index - 1 : index;
        project.moveItems({lot, end}, parent, static_cast<int32_t>(target));
        index = static_cast<size_t>((*(end - 1))->index());
        lot = end;
    }
}

}  // namespace

size_t OutlineGap::index() const {
    return parent->children().size() - std::min(row, parent->children().size());
}

OutlineGap gapAt(const PCElement::Ptr& element, RowPart part, bool showsChildren) {
    const bool isInside = element->isGroup() &&
                          (part == RowPart::Middle || (part == RowPart::Lower && showsChildren));
    if (isInside) { return {element, 0}; }
    const PCElement::Ptr parent = element->parentElement()->shared_from_this();
    const size_t row = parent->children().size() - 1 - static_cast<size_t>(element->index());
    return {parent, part == RowPart::Upper ? row : row + 1};
}

QStringList filesOf(const QList<QUrl>& urls) {
    QStringList paths;
    for (const QUrl& url : urls) {
        if (url.isLocalFile()) { paths += url.toLocalFile(); }
    }
    return paths;
}

bool hasPictures(const QStringList& paths) {
    return std::any_of(paths.begin(), paths.end(), [](const QString& path) {
        static const QStringList kSuffixes{u"png"_s, u"jpg"_s, u"jpeg"_s};
        return kSuffixes.contains(QFileInfo(path).suffix().toLower());
    });
}

Qt::DropAction actionOfDrop(const OutlineDrag& drag, const PCElement& parent) {
    if (drag.source == OutlineDrag::Source::ThisWindow) { return Qt::IgnoreAction; }
    if (drag.hasFiles) { return drag.hasPictures ? Qt::CopyAction : Qt::IgnoreAction; }
    if (drag.source == OutlineDrag::Source::Elsewhere) {
        return drag.hasElements ? Qt::CopyAction : Qt::IgnoreAction;
    }
    const int depth = parent.depth();
    const bool fit =
        std::all_of(drag.elements.begin(), drag.elements.end(), [&](const PCElement::Ptr& element) {
            return element.get() != &parent && !element->isAncestorOf(parent) &&
                   depth + element->maxHierarchyDepth() <= PCElement::kMaximumDepth;
        });
    return fit && !drag.elements.empty() ? Qt::MoveAction : Qt::IgnoreAction;
}

void moveToGap(DocumentContext& document, const Elements& elements, const OutlineGap& gap) {
    PCProject& project = *document.project();
    const Elements ordered = topmostInListOrder(project, elements);
    const size_t index = gap.index();
    if (ordered.empty() || lieIn(ordered, *gap.parent, index)) { return; }
    document.selectionManager().deselectAllElements();
    {
        const UndoGroup step(project.undoManager());
        moveInLots(project, ordered, gap.parent, index);
        project.undoManager().setActionName(u"Move"_s);
    }
    document.selectionManager().selectElements(ordered);
}

void importToGap(DocumentContext& document, const QStringList& paths, const OutlineGap& gap) {
    const QSizeF size = document.project()->canvas()->size();
    const QStringList lastFirst(paths.rbegin(), paths.rend());
    document.receivedDroppedImages(lastFirst, QPointF(size.width() / 2, size.height() / 2),
                                   gap.parent, gap.index());
}

}  // namespace tweenery
