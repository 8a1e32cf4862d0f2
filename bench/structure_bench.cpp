// Structure edits, selection and calculators on ten groups of a thousand elements, and on one of
// ten thousand: at most 1.1 times the time, because ten times the elements cost at most eleven
// times.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "editor/canvas/element_selection_manager.h"
#include "editor/canvas/opacity_calculator.h"
#include "editor/canvas/pasteboard_commands.h"
#include "editor/canvas/position_calculator.h"
#include "editor/canvas/rotation_calculator.h"
#include "editor/canvas/scale_calculator.h"
#include "editor/layers/project_layers.h"
#include "model/project.h"

namespace tweenery::bench {
namespace {

using namespace Qt::StringLiterals;
using Elements = PCElement::Elements;

/// On a screen, a canvas with a group of `count` elements, between two groups of one.
struct Scene {
    PCProject::Ptr project = PCProject::init();
    PCElement::Ptr below = addGroup(u"Below"_s, 1);
    PCElement::Ptr group;
    PCElement::Ptr above;
    ProjectLayers::Ptr layers;

    explicit Scene(int64_t count)
        : group(addGroup(u"Group"_s, count)), above(addGroup(u"Above"_s, 1)) {
        project->undoManager().removeAllActions();
        layers = ProjectLayers::forProject(project);
    }
    Elements elements() const { return group->subelements(); }

 private:
    PCElement::Ptr addGroup(const QString& name, int64_t count) {
        const PCElement::Ptr made = PCElement::makeGroup();
        made->setName(name);
        made->setZRotation(0.5);
        made->setScale({2, 2});
        made->setExpanded(true);
        const PCElement::Ptr& canvas = project->canvas();
        canvas->insertSubelement(made, canvas->children().size());
        for (int64_t i = 0; i < count; ++i) {
            const PCElement::Ptr element = PCElement::init();
            element->setName(u"%1 element %2"_s.arg(name, QString::number(i)));
            element->setSize({20, 10});
            element->setPosition({static_cast<double>(i % 100), static_cast<double>(i % 70)});
            made->insertSubelement(element, made->children().size());
        }
        return made;
    }
};

using Edit = void (*)(Scene& scene, const Elements& elements);

void moveIntoGroup(Scene& scene, const Elements& elements) {
    scene.project->moveItems(elements, scene.above, 0);
}
void moveIntoGroupShuffled(Scene& scene, const Elements& elements) {
    Elements shuffled = elements;
    std::shuffle(shuffled.begin(), shuffled.end(), std::minstd_rand(1));
    scene.project->moveItems(shuffled, scene.below, 0);
}
void toFront(Scene& scene, const Elements& elements) {
    scene.project->moveElementsToFront(elements);
}
void toBack(Scene& scene, const Elements& elements) {
    scene.project->moveElementsToBack(elements);
}
void forward(Scene& scene, const Elements& elements) {
    scene.project->moveElementsForward(elements);
}
void backward(Scene& scene, const Elements& elements) {
    scene.project->moveElementsBackward(elements);
}
void group(Scene& scene, const Elements& elements) {
    scene.project->groupElements(elements);
}
void ungroup(Scene& scene, const Elements&) {
    scene.project->ungroupElements({scene.group});
}
void duplicate(Scene& scene, const Elements& elements) {
    scene.project->duplicateItems(elements, 50);
}

class MemoryPasteboard : public PasteboardPort {
 public:
    void write(const std::vector<PasteboardItem>& items) override { m_items = items; }
    QVariantList read(const QString& type) const override {
        QVariantList lists;
        for (const PasteboardItem& item : m_items) {
            if (item.type == type) { lists.append(QVariant(item.propertyList)); }
        }
        return lists;
    }

 private:
    std::vector<PasteboardItem> m_items;
};

void copyAndPaste(Scene& scene, const Elements& elements) {
    PCElementSelectionManager selection(scene.project);
    selection.selectElements(elements);
    MemoryPasteboard pasteboard;
    copySelectedElements(*scene.project, selection, pasteboard);
    pasteElements(*scene.project, selection, pasteboard);
}
void selectAndDeselectAll(Scene& scene, const Elements& elements) {
    PCElementSelectionManager selection(scene.project);
    selection.selectElements(elements);
    scene.layers->flush();
    selection.deselectAllElements();
}
void position(Scene&, const Elements& elements) {
    PCPositionCalculator::updateElements(elements, false, {10, 5}, EditTime::setup());
}
void scale(Scene&, const Elements& elements) {
    PCScaleCalculator::updateElements(elements, true, {0.01, 0}, EditTime::setup(), {50, 50});
}
void rotation(Scene&, const Elements& elements) {
    PCRotationCalculator::updateElements(elements, true, 0.01, EditTime::setup(), {50, 50});
}
void opacity(Scene&, const Elements& elements) {
    PCOpacityCalculator::updateElementsWithDelta(elements, false, -0.5, EditTime::setup(), {});
}

constexpr int64_t kElements = 10000;

// The edit and its undo, one of them outside of the measured time. Each round works on as many
// elements, in ten groups or in one: a single small group, edited again and again, would lie in the
// cache, and the ratio would tell of the cache. What is linear takes as long either way.
void measure(benchmark::State& state, Edit edit, bool measuresUndo) {
    std::vector<std::unique_ptr<Scene>> scenes;
    std::vector<Elements> elements;
    for (int64_t i = 0; i < kElements / state.range(0); ++i) {
        scenes.push_back(std::make_unique<Scene>(state.range(0)));
        elements.push_back(scenes.back()->elements());
    }
    const auto undoManager = [](Scene& scene) -> UndoManager& {
        return scene.project->undoManager();
    };
    const auto forEachIf = [&](bool isMeasured, const auto& work) {
        if (!isMeasured) { state.PauseTiming(); }
        for (size_t i = 0; i < scenes.size(); ++i) {
            work(*scenes[i], elements[i]);
            benchmark::DoNotOptimize(scenes[i]->layers->flush());
        }
        if (!isMeasured) { state.ResumeTiming(); }
    };
    for (auto _ : state) {
        forEachIf(!measuresUndo, edit);
        forEachIf(measuresUndo, [&](Scene& scene, auto&) { undoManager(scene).undo(); });
        forEachIf(false, [&](Scene& scene, auto&) { undoManager(scene).removeAllActions(); });
    }
    state.SetItemsProcessed(state.iterations() * kElements);
}

struct NamedEdit {
    const char* name;
    Edit edit;
};

const bool isRegistered = [] {
    for (const NamedEdit& row : {NamedEdit{"moveIntoGroup", moveIntoGroup},
                                 {"moveIntoGroupShuffled", moveIntoGroupShuffled},
                                 {"toFront", toFront},
                                 {"toBack", toBack},
                                 {"forward", forward},
                                 {"backward", backward},
                                 {"group", group},
                                 {"ungroup", ungroup},
                                 {"duplicate", duplicate},
                                 {"copyAndPaste", copyAndPaste},
                                 {"selectAndDeselectAll", selectAndDeselectAll},
                                 {"position", position},
                                 {"scale", scale},
                                 {"rotation", rotation},
                                 {"opacity", opacity}}) {
        for (const bool measuresUndo : {false, true}) {
            if (measuresUndo && row.edit == selectAndDeselectAll) {
                continue;  // has no undo
            }
            const std::string name = std::string(measuresUndo ? "undo/" : "edit/") + row.name;
            benchmark::RegisterBenchmark(name.c_str(), measure, row.edit, measuresUndo)
                ->ArgName("group")
                ->Arg(1000)
                ->Arg(kElements)
                ->Unit(benchmark::kMicrosecond);
        }
    }
    return true;
}();

}  // namespace
}  // namespace tweenery::bench
