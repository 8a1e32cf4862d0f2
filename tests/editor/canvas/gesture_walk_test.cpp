// Presses at random, with everything that may happen in the middle of one.

#include <gtest/gtest.h>

#include <random>

#include "editor/canvas/interaction_scene.h"
#include "editor/canvas/keyboard_edits.h"
#include "support/scripted_clock.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

class GestureWalk : public InteractionScene {
 public:
    explicit GestureWalk(uint32_t seed) : m_random(seed) {
        for (int i = 0; i < 4; ++i) {
            addPicture(canvas, u"p%1"_s.arg(i), anyLook());
        }
        const auto group =
            addGroup(canvas, u"g"_s, {.position = {200, 150}, .scale = {1.5, -1}, .rotation = 0.4});
        addPicture(group, u"in"_s, {.position = {10, 5}, .size = {40, 30}});
        addElement(group, u"line"_s, {.position = {-40, 5}, .size = {0, 30}});
        addPicture(canvas, u"locked"_s, anyLook())->setLocked(true);
    }

    /// Setup, and all keyframes.
    std::string state() const {
        std::string text = exactState(*canvas);
        for (const PCElement::Ptr& element : canvas->elementAndAllDescendants()) {
            for (const PCPropertyType type : elementTimelineTypes()) {
                const auto timeline = element->timeline(type);
                if (timeline) { text += "\n" + keysText(*timeline); }
            }
        }
        return text;
    }
    /// A nudge, or a press from beginning to end. What is not a step must not change anything, and
    /// in setup mode the other way round.
    void step() {
        changeView();
        if (chance(10)) { return m_series.nudge(anyPoint() / 10, {editTime(), false}); }
        const std::string before = state();
        const int64_t count = project->undoManager().changeCount();
        const PCElement::Elements selected = selection.selectedElements();
        interaction.press(at(pointOfInterest(), anyModifiers()));
        for (int i = number(5); i > 0; --i) {
            happenMeanwhile();
        }
        if (chance(5)) {
            interaction.cancel();
            EXPECT_EQ(selection.selectedElements(), selected);
            EXPECT_EQ(state(), before);
        } else {
            interaction.lost();
        }
        EXPECT_FALSE(interaction.isPressed());
        if (project->isSetupMode()) {
            EXPECT_EQ(state() != before, project->undoManager().changeCount() != count);
        }
    }

 private:
    std::mt19937 m_random;
    ScriptedClock m_clock;
    NudgeSeries m_series{*project, selection, m_clock};

    int number(int end) { return std::uniform_int_distribution(0, end - 1)(m_random); }
    bool chance(int outOf) { return number(outOf) == 0; }
    QPointF anyPoint() { return QPointF(number(460) - 30, number(360) - 30); }
    PCElement::Ptr anyElement() {
        const auto all = canvas->elementAndAllDescendants();
        return all[static_cast<size_t>(1 + number(static_cast<int>(all.size()) - 1))];
    }
    Look anyLook() {
        return {.position = anyPoint(),
                .scale = {0.5 + number(3), 1},
                .rotation = number(8) / 3.0,
                .size = {20.0 + number(60), 20.0 + number(60)}};
    }
    Qt::KeyboardModifiers anyModifiers() {
        Qt::KeyboardModifiers modifiers;
        for (const auto modifier : {Qt::ShiftModifier, Qt::AltModifier, Qt::ControlModifier}) {
            if (chance(4)) { modifiers |= modifier; }
        }
        return modifiers;
    }
    // Near a handle, the middle or an edge of something, or anywhere.
    QPointF pointOfInterest() {
        if (chance(5)) { return anyPoint(); }
        const PCElement& element = chance(8) ? *canvas : *anyElement();
        const QPointF unit(number(3) / 2.0, number(3) / 2.0);
        const QPointF own(unit.x() * element.size().width(), unit.y() * element.size().height());
        return element.convertToCanvas(own) + QPointF(number(25) - 12, number(25) - 12);
    }
    void changeView() {
        if (chance(8)) { viewport.zoomAbout({300, 200}, 0.5 + number(10) / 5.0); }
        if (chance(3)) { layers->show(EditTime::at(100 * number(8))); }
        if (chance(6)) { interaction.setTool(PCSelectionState{number(3)}); }
        if (chance(4)) { selection.selectElements({anyElement(), anyElement()}); }
        m_clock.seconds += 2;  // every nudge is a step
    }
    void happenMeanwhile() {
        switch (number(8)) {
            case 0:
                return interaction.modifiersChanged(anyModifiers());
            case 1:
                return interaction.setSpaceIsDown(chance(2));
            case 2:
                viewport.zoomAbout({300, 200}, 1.1);
                return letTimePass();
            case 3:
                return interaction.drag(at(pointOfInterest(), anyModifiers()));
            default:
                interaction.drag(at(anyPoint(), anyModifiers()));
        }
    }
};

TEST(GestureWalk, UndoAndRedoLeadThroughEveryState) {
    constexpr int kPresses = 200;
    for (const bool inAnimation : {false, true}) {
        for (const uint32_t seed : {1U, 2U, 3U}) {
            GestureWalk walk(seed);
            if (inAnimation) { walk.animateAt(200); }
            UndoWalk undo(*walk.project, [&walk] { return walk.state(); });
            for (int i = 0; i < kPresses && !testing::Test::HasFailure(); ++i) {
                undo.edit([&walk] { walk.step(); });
            }
            EXPECT_FALSE(testing::Test::HasFailure()) << "seed " << seed;
            undo.check();
        }
    }
}

}  // namespace
}  // namespace tweenery::test
