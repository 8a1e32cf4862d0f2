#include "editor/element_outline.h"

#include <gtest/gtest.h>

#include <QMimeData>

#include "editor/controller_scene.h"
#include "editor/mime_pasteboard.h"
#include "editor/outline_drop.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

QStringList words(const char* text) {
    return QString::fromLatin1(text).split(u' ', Qt::SkipEmptyParts);
}

// In the list E stands at the top, then D, the group G with C and B, and A.
constexpr const char* kTree = "A G+{B C} D E";

// The order of selection goes outward from what was selected first, and nothing locked is selected.
TEST(ElementOutline, RowsThatTheUserSelects) {
    struct Case {
        const char* before;
        const char* locked;
        const char* rows;  // proposed, from the top
        const char* after;
    };
    const std::vector<Case> cases = {
        {"", "", "E D", "E D"},      {"E", "", "E D G", "E D G"},
        {"A", "", "D G A", "A G D"}, {"C", "", "E D G C", "C G D E"},
        {"G", "", "G C", "G C"},     {"E A", "", "D", "D"},
        {"D", "", "", ""},           {"", "D", "E D G", "E G"},
        {"A", "D", "D", ""},         {"D E", "", "E D G", "D E G"},
        {"A", "", "E E", "E"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.before << " -> " << c.rows);
        ControllerScene scene(kTree);
        ElementOutline outline(scene.controller);
        scene.select(words(c.before));
        for (const QString& name : words(c.locked)) {
            named(*scene.project, name)->setLocked(true);
        }
        outline.select(allNamed(*scene.project, words(c.rows)));
        EXPECT_EQ(scene.selected().toStdString(), c.after);
    }
}

TEST(ElementOutline, TintsRowsInAdditiveMode) {
    ControllerScene scene("A G+{B C} D");
    ElementOutline outline(scene.controller);
    const auto tint = [&](const char* name) {
        return outline.tintOf(*named(*scene.project, QString::fromLatin1(name)));
    };
    scene.select({u"D"_s, u"A"_s, u"G"_s});
    EXPECT_EQ(tint("A").selected, 0) << "additive mode is off";
    scene.controller.setAdditiveMode(true);
    EXPECT_DOUBLE_EQ(tint("D").selected, 0);
    EXPECT_DOUBLE_EQ(tint("A").selected, 1 / 3.75);
    EXPECT_DOUBLE_EQ(tint("G").selected, 2 / 3.75);
    EXPECT_FALSE(tint("B").unselected.has_value()) << "G is one of several";
    scene.select({u"G"_s});
    EXPECT_DOUBLE_EQ(tint("C").unselected.value_or(-1), 1 / 2.5)
        << "the front one is the strongest";
    EXPECT_DOUBLE_EQ(tint("B").unselected.value_or(-1), 2 / 2.5);
    EXPECT_FALSE(tint("A").unselected.has_value());
}

TEST(ElementOutline, NamesAreUniqueAndNeverBlank) {
    struct Case {
        const char* typed;
        const char* name;
        bool isStep;
    };
    const std::vector<Case> cases = {
        {"kite", "kite", true}, {"B", "B 1", true},  {"A", "A", false},
        {"  ", "A", false},     {" A ", "A", false}, {"", "A", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.typed);
        ControllerScene scene("A B");
        ElementOutline outline(scene.controller);
        const auto element = named(*scene.project, u"A"_s);
        outline.rename(*element, QString::fromLatin1(c.typed));
        EXPECT_EQ(element->name().toStdString(), c.name);
        UndoManager& undo = scene.project->undoManager();
        EXPECT_EQ(undo.canUndo(), c.isStep);
        if (undo.undo()) { EXPECT_EQ(element->name(), u"A"_s); }
    }
}

TEST(ElementOutline, LockingTakesOutOfTheSelectionWhateverItLocks) {
    ControllerScene scene(kTree);
    ElementOutline outline(scene.controller);
    scene.select({u"B"_s, u"D"_s});
    outline.setLocked(*named(*scene.project, u"G"_s), true);
    EXPECT_TRUE(named(*scene.project, u"B"_s)->locked());
    EXPECT_EQ(scene.selected(), u"D"_s);
    UndoManager& undo = scene.project->undoManager();
    EXPECT_EQ(undo.undoActionName(), u"Lock"_s);
    undo.undo();
    EXPECT_FALSE(named(*scene.project, u"B"_s)->locked());
    EXPECT_FALSE(undo.canUndo());
}

// However many eyes a drag crosses, it is one step; taken back, none.
TEST(EyeDrag, SetsRowsAlike) {
    ControllerScene scene("A G{B} C");
    const auto hidden = [&] {
        QStringList names;
        for (const auto& element : scene.project->heirarchyWithRoot(*scene.project->canvas())) {
            if (element->hidden()) { names << element->name(); }
        }
        return names.join(u' ');
    };
    const auto drag = [&](const char* over, bool isCancelled) {
        const auto elements = allNamed(*scene.project, words(over));
        EyeDrag press(*scene.project, *elements.front());
        for (const auto& element : elements) {
            press.reach(*element);
        }
        if (isCancelled) { press.cancel(); }
    };
    UndoManager& undo = scene.project->undoManager();
    drag("C G A", true);
    EXPECT_EQ(hidden(), u""_s);
    EXPECT_FALSE(undo.canUndo());

    drag("C", false);
    drag("G C", false);  // C is hidden already
    EXPECT_EQ(hidden(), u"C G B"_s);
    EXPECT_EQ(undo.undoActionName(), u"Hide"_s);
    drag("C G A", false);
    EXPECT_EQ(hidden(), u""_s);
    EXPECT_EQ(undo.undoActionName(), u"Show"_s);
    for (const QString& before : {u"C G B"_s, u"C"_s, u""_s}) {
        EXPECT_TRUE(undo.undo());
        EXPECT_EQ(hidden(), before);
    }
    EXPECT_FALSE(undo.canUndo());
}

// What is dragged lands where the line was, in the order of the list, whatever its old parents.
TEST(OutlineDrop, MovesToTheGap) {
    struct Case {
        const char* tree;
        const char* dragged;
        const char* parent;  // empty: the canvas
        size_t row;          // so many children above the gap
        const char* after;
        bool isStep = true;
    };
    const std::vector<Case> cases = {
        {"A B C D", "A", "", 0, "B C D A"},           {"A B C D", "D", "", 4, "D A B C"},
        {"A B C D", "B", "", 1, "A C B D"},           {"A B C D", "C", "", 3, "A C B D"},
        {"A B C D", "A D", "", 2, "B A D C"},         {"A B C D E", "D E", "", 4, "A D E B C"},
        {"A B C D E", "A B", "", 1, "C D A B E"},     {"A B C D E", "E C A", "", 3, "B A C E D"},
        {"A G{B C} D", "B C", "", 0, "A D B C"},      {"A G{B C} D", "D A", "G", 0, "G{B C A D}"},
        {"A G{B C} D", "D A", "G", 1, "G{B A D C}"},  {"A G{B C} D", "D B A", "G", 2, "G{A B D C}"},
        {"A G{B C} D", "B", "", 3, "B A G{C} D"},     {"A G{B} H{C} D", "B C", "", 4, "B C A D"},
        {"A G{B C} D", "G C", "", 0, "A D G{B C}"},   {"A B C D", "C", "", 1, "A B C D", false},
        {"A B C D", "C", "", 2, "A B C D", false},    {"A B C D", "B C", "", 2, "A B C D", false},
        {"A G{B} D", "B", "G", 0, "A G{B} D", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << c.tree << ": " << c.dragged << " to " << c.parent << c.row);
        ControllerScene scene(c.tree);
        const auto parent = *c.parent ? named(*scene.project, QString::fromLatin1(c.parent))
                                      : scene.project->canvas();
        const std::string before = scene.stored();
        const auto dragged = allNamed(*scene.project, words(c.dragged));
        moveToGap(scene.controller, dragged, {parent, c.row});
        EXPECT_EQ(scene.tree(), c.after);
        UndoManager& undo = scene.project->undoManager();
        ASSERT_EQ(undo.canUndo(), c.isStep);
        if (!c.isStep) { continue; }
        EXPECT_EQ(undo.undoActionName(), u"Move"_s);
        EXPECT_EQ(scene.selected().isEmpty(), false);
        undo.undo();
        EXPECT_EQ(scene.stored(), before);
        EXPECT_FALSE(undo.canUndo());
    }
}

TEST(OutlineDrop, IsRefusedWhereItCannotGo) {
    using Source = OutlineDrag::Source;
    struct Case {
        Source source;
        const char* elements;
        bool hasElements, hasFiles, hasPictures;
        const char* parent;
        Qt::DropAction action;
    };
    const std::vector<Case> cases = {
        {Source::ThisList, "A", true, false, false, "G", Qt::MoveAction},
        {Source::ThisList, "G", true, false, false, "G", Qt::IgnoreAction},
        {Source::ThisList, "A G", true, false, false, "H", Qt::IgnoreAction},
        {Source::ThisList, "H", true, false, false, "G", Qt::MoveAction},
        {Source::ThisWindow, "", true, false, false, "G", Qt::IgnoreAction},
        {Source::ThisWindow, "", false, true, true, "G", Qt::IgnoreAction},
        {Source::Elsewhere, "", true, false, false, "G", Qt::CopyAction},
        {Source::Elsewhere, "", false, false, false, "G", Qt::IgnoreAction},
        {Source::Elsewhere, "", false, true, true, "G", Qt::CopyAction},
        {Source::Elsewhere, "", false, true, false, "G", Qt::IgnoreAction},
    };
    for (const Case& c : cases) {
        ControllerScene scene("A G{H{B} C}");
        const OutlineDrag drag{c.source, allNamed(*scene.project, words(c.elements)), c.hasElements,
                               c.hasFiles, c.hasPictures};
        const auto parent = named(*scene.project, QString::fromLatin1(c.parent));
        EXPECT_EQ(actionOfDrop(drag, *parent), c.action) << c.elements << " into " << c.parent;
    }
    EXPECT_TRUE(hasPictures({u"/a/notes.txt"_s, u"/a/KITE.PNG"_s}));
    EXPECT_FALSE(hasPictures({u"/a/png"_s, u"/a/kite.gif"_s}));
    EXPECT_EQ(filesOf({QUrl(u"https://a.b/c.png"_s), QUrl(u"file:///a b.png"_s)}),
              QStringList{u"/a b.png"_s});
}

TEST(OutlineDrop, TheGapBesideARow) {
    struct Case {
        const char* row;
        RowPart part;
        bool showsChildren;
        const char* parent;
        size_t above;
    };
    const std::vector<Case> cases = {
        {"D", RowPart::Upper, false, "Canvas", 0},  {"D", RowPart::Lower, false, "Canvas", 1},
        {"D", RowPart::Middle, false, "Canvas", 1}, {"G", RowPart::Upper, true, "Canvas", 1},
        {"G", RowPart::Middle, false, "G", 0},      {"G", RowPart::Lower, true, "G", 0},
        {"G", RowPart::Lower, false, "Canvas", 2},  {"B", RowPart::Lower, false, "G", 2},
    };
    ControllerScene scene("A G{B C} D");
    for (const Case& c : cases) {
        const auto element = named(*scene.project, QString::fromLatin1(c.row));
        const OutlineGap gap = gapAt(element, c.part, c.showsChildren);
        EXPECT_EQ(gap.parent->name().toStdString(), c.parent) << c.row;
        EXPECT_EQ(gap.row, c.above) << c.row;
    }
}

// The same bytes on the clipboard and in drags; what others put there does no harm.
TEST(MimePasteboard, KeepsItemsByTypeAndIgnoresGarbage) {
    const QVariantMap nested{{u"n"_s, 0.1}, {u"b"_s, true}, {u"d"_s, QByteArray("\0\xff", 2)}};
    QMimeData mime;
    MimePasteboard pasteboard(mime);
    pasteboard.write({{u"x/a"_s, QVariantList{nested}}, {u"x/b"_s, nested}, {u"x/a"_s, 7}});
    EXPECT_EQ(pasteboard.read(u"x/a"_s), (QVariantList{QVariantList{nested}, 7}));
    EXPECT_EQ(pasteboard.read(u"x/b"_s), QVariantList{nested});
    EXPECT_EQ(pasteboard.read(u"x/c"_s), QVariantList());
    const QByteArray whole = mime.data(u"x/a"_s);
    for (const QByteArray& damaged :
         {whole.left(whole.size() - 1), QByteArray("\x01"), QByteArray(5000, '\x81'),
          QByteArray("\x9b\xff\xff\xff\xff\xff\xff\xff\xff")}) {
        mime.setData(u"x/a"_s, damaged);
        EXPECT_EQ(ReceivedPasteboard(mime).read(u"x/a"_s), QVariantList());
    }
}

}  // namespace
}  // namespace tweenery::test
