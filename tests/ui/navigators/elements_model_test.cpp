#include "ui/navigators/elements_model.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <random>

#include "editor/controller_scene.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

/// The rows below `parent` in the notation of treeText(), which goes from the back.
std::string rowText(const ElementsModel& model, const QModelIndex& parent = {}) {
    std::string text;
    for (int row = model.rowCount(parent) - 1; row >= 0; --row) {
        const QModelIndex index = model.index(row, 0, parent);
        const auto element = model.element(index);
        if (!text.empty()) { text += ' '; }
        const QString name = index.siblingAtColumn(ElementsModel::Name).data().toString();
        text += QString(name).replace(u' ', u'_').toStdString();
        if (element->expanded()) { text += '+'; }
        if (element->isGroup()) { text += '{' + rowText(model, index) + '}'; }
    }
    return text;
}

/// What happened to rows since the last call.
class Signals {
 public:
    explicit Signals(ElementsModel& model) {
        using M = QAbstractItemModel;
        const auto count = [this](const char* what) { m_text += what; };
        QObject::connect(&model, &M::rowsInserted, &m_context, [=] { count("i"); });
        QObject::connect(&model, &M::rowsRemoved, &m_context, [=] { count("r"); });
        QObject::connect(&model, &M::rowsMoved, &m_context, [=] { count("m"); });
        QObject::connect(&model, &M::dataChanged, &m_context, [=] { count("d"); });
        QObject::connect(&model, &M::modelReset, &m_context, [=] { count("RESET"); });
        QObject::connect(&model, &M::layoutChanged, &m_context, [=] { count("LAYOUT"); });
    }
    std::string take() { return std::exchange(m_text, {}); }

 private:
    QObject m_context;
    std::string m_text;
};

struct Rows {
    ControllerScene scene;
    ElementOutline outline{scene.controller};
    ElementsModel model{scene.controller, outline};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};

    explicit Rows(std::string_view tree) : scene(tree) {}
    PCElement::Ptr at(const char* name) const {
        return named(*scene.project, QString::fromLatin1(name));
    }
};

// Each edit costs as few signals as it can, so that open fields and scrolling stay.
TEST(ElementsModel, TellsOfSingleRows) {
    struct Case {
        const char* what;
        std::function<void(Rows&)> edit;
        const char* signals;
    };
    const auto project = [](Rows& rows) -> PCProject& { return *rows.scene.project; };
    const std::vector<Case> cases = {
        {"rename", [](Rows& r) { r.at("A")->setName(u"kite"_s); }, "d"},
        {"hide a group", [](Rows& r) { r.at("G")->setHidden(true); }, "dd"},
        {"remove", [](Rows& r) { r.at("A")->removeFromParentElement(); }, "r"},
        {"to the front", [&](Rows& r) { project(r).moveElementsToFront({r.at("A")}); }, "m"},
        {"to the back", [&](Rows& r) { project(r).moveElementsToBack({r.at("E")}); }, "m"},
        {"into a group", [&](Rows& r) { project(r).moveItems({r.at("A")}, r.at("G"), 1); }, "m"},
        {"group",
         [&](Rows& r) {
             project(r).groupElements({r.at("A"), r.at("D")});
         },
         "imm"},
        {"ungroup", [&](Rows& r) { project(r).ungroupElements({r.at("G")}); }, "mmr"},
        {"duplicate a group", [&](Rows& r) { project(r).duplicateItems({r.at("G")}, 0); }, "iid"},
        {"back to where it was",
         [&](Rows& r) {
             project(r).moveElementsToFront({r.at("A")});
             project(r).moveElementsToBack({r.at("A")});
         },
         ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Rows rows("A G+{B C} D E");
        Signals signals_(rows.model);
        c.edit(rows);
        EXPECT_EQ(signals_.take(), "") << "before the turn ends";
        rows.model.refresh();
        EXPECT_EQ(signals_.take(), c.signals);
        EXPECT_EQ(rowText(rows.model), rows.scene.tree());
        while (rows.scene.project->undoManager().undo()) {}
        rows.model.refresh();
        EXPECT_EQ(rowText(rows.model), "A G+{B C} D E");
    }
}

TEST(ElementsModel, FollowsRandomEdits) {
    for (uint32_t seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        Rows rows("A G+{B C} D H{I J{K L}} E F");
        PCProject& project = *rows.scene.project;
        std::mt19937 random(seed);
        const auto number = [&random](size_t end) { return random() % end; };
        const auto some = [&] {
            const auto all = project.heirarchyWithRoot(*project.canvas());
            PCElement::Elements chosen;
            for (size_t i = 0; i <= number(3) && !all.empty(); ++i) {
                const auto& element = all[number(all.size())];
                if (std::find(chosen.begin(), chosen.end(), element) == chosen.end()) {
                    chosen.push_back(element);
                }
            }
            return chosen;
        };
        const std::vector<std::function<void()>> edits = {
            [&] { project.groupElements(some()); },
            [&] { project.ungroupElements(some()); },
            [&] { project.duplicateItems(some(), 0); },
            [&] { project.moveElementsForward(some()); },
            [&] { project.moveElementsBackward(some()); },
            [&] { project.moveElementsToBack(some()); },
            [&] {
                const auto chosen = some();
                const auto parents = some();
                const auto parent = parents.empty() ? project.canvas() : parents.front();
                project.moveItems(chosen, parent, static_cast<int32_t>(number(4)));
            },
            [&] {
                for (const auto& element : some()) {
                    if (element->parentElement()) { element->removeFromParentElement(); }
                }
            },
            [&] { project.undoManager().undo(); },
            [&] { project.undoManager().undo(); },
            [&] { project.undoManager().redo(); },
        };
        for (int turn = 0; turn < 60; ++turn) {
            for (size_t edit = 0; edit <= number(3); ++edit) {
                edits[number(edits.size())]();
                project.undoManager().endEvent();
            }
            rows.model.refresh();
            ASSERT_EQ(rowText(rows.model), rows.scene.tree()) << "turn " << turn;
        }
    }
}

// Eyes and locks are check cells with names of their own, for whoever reads the screen.
TEST(ElementsModel, ChecksEyesAndLocks) {
    Rows rows("A G{B}");
    const auto cell = [&](ElementsModel::Column column) {
        return rows.model.indexOf(*rows.at("A"), column);
    };
    const auto check = [&](ElementsModel::Column column, bool isOn) {
        return rows.model.setData(cell(column), isOn ? Qt::Checked : Qt::Unchecked,
                                  Qt::CheckStateRole);
    };
    EXPECT_EQ(cell(ElementsModel::Visibility).data(Qt::AccessibleTextRole), u"Visible, A"_s);
    EXPECT_EQ(cell(ElementsModel::Lock).data(Qt::AccessibleTextRole), u"Locked, A"_s);
    EXPECT_TRUE(check(ElementsModel::Visibility, true));
    EXPECT_FALSE(rows.scene.project->undoManager().canUndo()) << "it was visible";
    EXPECT_TRUE(check(ElementsModel::Visibility, false));
    EXPECT_TRUE(rows.at("A")->hidden());
    EXPECT_EQ(cell(ElementsModel::Visibility).data(Qt::CheckStateRole), Qt::Unchecked);
    EXPECT_TRUE(check(ElementsModel::Lock, true));
    EXPECT_TRUE(rows.at("A")->locked());
    EXPECT_FALSE(rows.model.flags(cell(ElementsModel::Name)) & Qt::ItemIsSelectable);
    EXPECT_FALSE(check(ElementsModel::Name, true));
}

}  // namespace
}  // namespace tweenery::test
