#pragma once

#include <algorithm>
#include <sstream>

#include "editor/controller_scene.h"

namespace tweenery::test {

inline constexpr Qt::KeyboardModifiers kNone = Qt::NoModifier;
inline constexpr Qt::KeyboardModifiers kShift = Qt::ShiftModifier;
inline constexpr Qt::KeyboardModifiers kAlt = Qt::AltModifier;
inline constexpr Qt::KeyboardModifiers kControl = Qt::ControlModifier;

/// The timeline of an animation of one element, "kite", at a point per millisecond with a tick
/// every 25 ms, in a view of 800 by 281 points with eight rows. Rows: 0 the canvas, 1 the element,
/// 2 its translation in x, 3 in y, 4 its opacity, 5 blank. Times are places.
class TimelineEditScene : public ControllerScene {
 public:
    static constexpr int kX = 2, kY = 3, kOpacity = 4, kBlank = 5;
    PCElement::Ptr kite = named(*project, QStringLiteral("kite"));
    PCAnimation::Ptr animation;
    PCProjectTimeManager& time = controller.timeManager();
    PCKeyframeManager& keyframes = controller.keyframeManager();
    TimelineOutline& outline = controller.timelineOutline();
    TimelineViewport& viewport = controller.timelineViewport();
    TimelineInteraction& interaction = controller.timelineInteraction();

    explicit TimelineEditScene(const char* x = "100:1 200:2 300:3 500:4",
                               const char* y = "150:1 250:1 400:5", const char* opacity = "300:0.5")
        : ControllerScene("kite") {
        animation = selectNewAnimation(*project, QStringLiteral("Fly"));
        setKeys(PCPropertyTypeTranslationX, x);
        setKeys(PCPropertyTypeTranslationY, y);
        setKeys(PCPropertyTypeOpacity, opacity);
        viewport.setSize({800, 281});
        viewport.setZoomIndex(15);
        viewport.scrollTo({});
        project->undoManager().removeAllActions();
    }
    void setKeys(PCPropertyType type, const char* keys) {
        kite->timeline(type)->setKeyframes(
            timelineWithKeys(kite, type, keys)->keyframesSortedByTime());
    }
    PCKeyedPropertyTimeline& timeline(int row) { return *outline.row(row).timeline; }
    std::string keys(int row) { return keysText(timeline(row)); }
    std::string allKeys() {
        std::string text = keysText(*animation->masterKeyframesTimeline());
        for (const auto& timeline : TimelineOutline::timelinesForElement(*kite)) {
            text += '\n' + keysText(*timeline);
        }
        return text;
    }
    PCKeyedPropertyTimeline::KeyframePtr key(int row, int32_t timeInMS) {
        return timeline(row).existingKeyframeAtTimeInMS(timeInMS);
    }
    PCKeyedPropertyTimeline::KeyframePtr addMasterKeyframe(int32_t timeInMS) {
        const UndoRegistrationPause pause(project->undoManager());
        return animation->masterKeyframesTimeline()->setFloatPropertyValue(0, timeInMS);
    }
    /// "x100 y150", by row and time.
    std::string selectedKeys() { return names(keyframes.selectedKeyframes()); }
    std::string selectedTweens() { return names(keyframes.selectedTweens()); }
    /// In that notation.
    void selectKeys(const std::string& text) {
        PCKeyframeManager::KeyframeSet wanted;
        std::istringstream words(text);
        for (std::string word; words >> word;) {
            wanted.insert(key(word[0] == 'x'   ? kX
                              : word[0] == 'y' ? kY
                                               : kOpacity,
                              std::stoi(word.substr(1))));
        }
        keyframes.selectKeyframes(wanted);
    }
    int32_t playhead() { return time.playheadPositionInMS(); }

    // The pointer. A row of -1 is the ruler.

    static PointerEvent at(double x, int row, Qt::KeyboardModifiers modifiers = kNone) {
        return {{x, row < 0 ? 20.0 : 42 + 28 * row + 14.0}, {}, modifiers, Qt::LeftButton};
    }
    void press(double x, int row, Qt::KeyboardModifiers modifiers = kNone) {
        interaction.press(at(x, row, modifiers));
    }
    void drag(double x, int row, Qt::KeyboardModifiers modifiers = kNone) {
        interaction.drag(at(x, row, modifiers));
    }
    void release(double x, int row, Qt::KeyboardModifiers modifiers = kNone) {
        interaction.release(at(x, row, modifiers));
    }
    void click(double x, int row, Qt::KeyboardModifiers modifiers = kNone) {
        press(x, row, modifiers);
        release(x, row, modifiers);
    }
    void dragFromTo(double from, double to, int row, Qt::KeyboardModifiers modifiers = kNone) {
        press(from, row, modifiers);
        drag((from + to) / 2, row, modifiers);
        drag(to, row, modifiers);
        release(to, row, modifiers);
    }
    void tick(int count = 1) {
        for (; count > 0; --count) {
            interaction.tick(std::chrono::milliseconds(10));
        }
    }
    int stepsOfUndo() {
        int steps = 0;
        UndoManager& undo = project->undoManager();
        while (undo.undo()) {
            ++steps;
        }
        for (int i = 0; i < steps; ++i) {
            undo.redo();
        }
        return steps;
    }

 private:
    std::string names(const PCKeyframeManager::KeyframeSet& set) const {
        std::vector<std::pair<std::string, int32_t>> found;
        for (const auto& keyframe : set) {
            const PCPropertyType type = keyframe->timeline()->propertyType();
            found.emplace_back(type == PCPropertyTypeTranslationX   ? "x"
                               : type == PCPropertyTypeTranslationY ? "y"
                               : type == PCPropertyTypeOpacity      ? "o"
                                                                    : "master",
                               keyframe->timeInMS());
        }
        std::sort(found.begin(), found.end());
        std::string text;
        for (const auto& [name, timeInMS] : found) {
            text += (text.empty() ? "" : " ") + name + std::to_string(timeInMS);
        }
        return text;
    }
};

}  // namespace tweenery::test
