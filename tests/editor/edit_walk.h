#pragma once

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "editor/editor_scene.h"

namespace tweenery::test {

/// Edits a project on a screen at random, with everything that a user can do to it: setup and keyed
/// edits, timelines, structure, images, animations, selection, time, zoom, undo and redo. The same
/// seed gives the same walk. An empty project gets a tree to begin with.
class EditWalk {
 public:
    EditWalk(EditorScene& scene, uint32_t seed);

    /// One edit. The event loop's turn goes on.
    void step();
    /// Ends the turn: its undo step is closed. Layers are not brought up to date.
    void endTurn();
    size_t steps() const { return m_count; }
    /// What the last steps did, for a failure's message.
    std::string lastSteps() const;

 private:
    struct Kind {
        const char* name;
        void (EditWalk::*edit)();
    };
    static const std::vector<Kind>& kinds();

    EditorScene& m_scene;
    std::mt19937 m_random;
    size_t m_count = 0;
    std::vector<const char*> m_steps;  // with a stroke between turns

    PCProject& project() { return *m_scene.project; }
    int number(int end) { return std::uniform_int_distribution(0, end - 1)(m_random); }
    double real(double from, double to) {
        return std::uniform_real_distribution(from, to)(m_random);
    }
    void oneOf(const std::vector<std::function<void()>>& edits);
    bool chance(int outOf) { return number(outOf) == 0; }
    QPointF point(double reach) { return {real(-reach, reach), real(-reach, reach)}; }
    int32_t time() { return number(21) * 50; }
    QString imageName();
    EditTime shown();
    PCElement::Ptr element();
    PCElement::Ptr group();
    PCElement::Elements elements();
    PCKeyedPropertyTimeline::Ptr timeline();

    void setField();
    void setLook();
    void setFlag();
    void keyNumber();
    void keyOther();
    void editTimeline();
    void calculate();
    void addElementOrGroup();
    void removeElement();
    void moveElements();
    void groupElements();
    void duplicateElements();
    void chooseAnimation();
    void deleteAnimation();
    void chooseTime();
    void select();
    void changeImages();
    void changeScreen();
    void undo();
    void redo();
};

}  // namespace tweenery::test
