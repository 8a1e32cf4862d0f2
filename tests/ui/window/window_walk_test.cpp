// Random walks through the window by real events, against one oracle: undoing everything gives what
// was there first, and redoing it the last.

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "ui/window/window_scene.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

#if defined(__SANITIZE_ADDRESS__)
constexpr int kSteps = 400;
#else
constexpr int kSteps = 2000;
#endif
constexpr int kStepsOfALeg = 250;  // until everything is undone and redone
constexpr size_t kMostElements = 40;
constexpr size_t kMostAnimations = 3;

class Walk {
 public:
    explicit Walk(unsigned seed) : m_random(seed), m_first(storedText(m_scene.project())) {}

    // A leg of the walk, then back to where it all began, and forth again.
    void goOn() {
        for (int step = 0; step < kStepsOfALeg; ++step) {
            // Whatever is asked is answered by the first button.
            m_scene.alerts.answers = {0, 0, 0, 0};
            const Act& act = acts()[static_cast<size_t>(below(static_cast<int>(acts().size())))];
            m_acts += std::string(" ") + act.name;
            act.perform(*this);
        }
        m_scene.key(Qt::Key_Escape);
        while (m_scene.project().redo()) {  // the leg may have ended with an undo
        }
        const std::string last = storedText(m_scene.project());
        ASSERT_NE(last, m_first);
        while (m_scene.project().undo()) {}
        ASSERT_EQ(storedText(m_scene.project()), m_first) << m_acts;
        while (m_scene.project().redo()) {}
        ASSERT_EQ(storedText(m_scene.project()), last) << m_acts;
        m_acts.clear();
    }

 private:
    struct Act {
        const char* name;
        std::function<void(Walk&)> perform;
    };

    // To walk through another pane, add what a user does there.
    static const std::vector<Act>& acts() {
        static const std::vector<Act> all{
            {"drag-anywhere", &Walk::dragAnywhere},
            {"drag-element", &Walk::dragElement},
            {"drag-element", &Walk::dragElement},
            {"drag-corner", &Walk::dragCorner},
            {"cancel-drag", &Walk::cancelDrag},
            {"add", &Walk::addByKey},
            {"key", &Walk::pressKey},
            {"key", &Walk::pressKey},
            {"key", &Walk::pressKey},
            {"undo-or-redo", &Walk::undoOrRedo},
            {"animation", &Walk::chooseAnimation},
            {"playhead", &Walk::movePlayhead},
            {"command", &Walk::chooseFromMenu},
            {"play", &Walk::play},
        };
        return all;
    }

    int below(int end) { return static_cast<int>(m_random() % static_cast<unsigned>(end)); }
    template <typename List>
    const auto& oneOf(const List& list) {
        return list[static_cast<size_t>(below(static_cast<int>(std::size(list))))];
    }
    QPoint somewhere() {
        const QRect canvas(m_scene.at({0, 0}), m_scene.at({800, 300}));
        return canvas.topLeft() + QPoint(below(canvas.width()), below(canvas.height()));
    }
    QPoint distance() { return {below(60) - 30, below(60) - 30}; }
    Qt::KeyboardModifiers modifiers() {
        const Qt::KeyboardModifiers some[] = {
            {}, {}, {}, Qt::ShiftModifier, Qt::AltModifier, Qt::ControlModifier};
        return oneOf(some);
    }
    PCElement::Ptr someElement() {
        const auto elements = m_scene.project().canvas()->elementAndAllDescendants();
        return oneOf(elements);
    }
    QPoint pointOf(const PCElement& element, QPointF unitPoint) {
        const QSizeF size = element.size();
        return m_scene.at(
            element.convertToCanvas({unitPoint.x() * size.width(), unitPoint.y() * size.height()}));
    }
    bool isFull() {
        return m_scene.project().canvas()->elementAndAllDescendants().size() > kMostElements;
    }

    void drag(QPoint from, Qt::KeyboardModifiers keys = {}) {
        if (keys.testFlag(Qt::AltModifier) && isFull()) { return; }
        const QPoint by = distance();
        m_scene.press(from, keys);
        m_scene.move(from + by / 2);
        m_scene.move(from + by);
        m_scene.release(from + by, keys);
        QCoreApplication::processEvents();
    }
    void dragAnywhere() { drag(somewhere(), modifiers()); }
    void dragElement() { drag(pointOf(*someElement(), {0.3, 0.3}), modifiers()); }
    void dragCorner() {
        const PCElement::Ptr element = someElement();
        m_scene.click(pointOf(*element, {0.3, 0.3}));
        const QPointF corners[] = {{0, 0}, {1, 0}, {0.5, 1}, {1, 1}, {1.1, -0.1}, {0.5, 0.5}};
        drag(pointOf(*element, oneOf(corners)));
    }
    void cancelDrag() {
        const QPoint from = somewhere();
        m_scene.press(from);
        m_scene.move(from + distance());
        m_scene.key(Qt::Key_Escape);
        m_scene.release(from);
    }
    void pressKey() {
        static const std::pair<Qt::Key, Qt::KeyboardModifiers> keys[] = {
            {Qt::Key_G, Qt::ControlModifier},
            {Qt::Key_G, Qt::ControlModifier | Qt::ShiftModifier},
            {Qt::Key_A, Qt::ControlModifier},
            {Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier},
            {Qt::Key_C, Qt::ControlModifier},
            {Qt::Key_X, Qt::ControlModifier},
            {Qt::Key_L, Qt::ControlModifier},
            {Qt::Key_L, Qt::ControlModifier | Qt::ShiftModifier},
            {Qt::Key_H, Qt::ControlModifier | Qt::ShiftModifier},
            {Qt::Key_BracketRight, Qt::ControlModifier},
            {Qt::Key_BracketLeft, Qt::ControlModifier | Qt::ShiftModifier},
            {Qt::Key_Left, {}},
            {Qt::Key_Down, Qt::ShiftModifier},
            {Qt::Key_7, {}},
            {Qt::Key_Tab, {}},
            {Qt::Key_V, {}},
            {Qt::Key_A, {}},
            {Qt::Key_Delete, {}},
            {Qt::Key_Escape, {}},
        };
        const auto& [key, held] = oneOf(keys);
        m_scene.key(key, held);
    }
    void addByKey() {
        if (isFull()) { return; }
        const Qt::Key keys[] = {Qt::Key_D, Qt::Key_V};
        m_scene.key(oneOf(keys), Qt::ControlModifier);
    }
    void undoOrRedo() {
        const bool isRedo = below(2) == 0;
        for (int count = below(4); count >= 0; --count) {
            m_scene.key(Qt::Key_Z, isRedo ? Qt::ControlModifier | Qt::ShiftModifier
                                          : Qt::KeyboardModifiers(Qt::ControlModifier));
        }
    }
    void chooseAnimation() {
        const Qt::Key keys[] = {Qt::Key_Up, Qt::Key_Down, Qt::Key_Home};
        m_scene.key(oneOf(keys), Qt::ControlModifier);
    }
    void movePlayhead() {
        const int times[] = {0, 250, 1000, 2500};
        m_scene.controller().timeManager().setPlayheadPositionInMS(oneOf(times));
    }
    void chooseFromMenu() {
        const char* const names[] = {"addAnimation",    "duplicateAnimation", "deleteAnimation",
                                     "anchorAtTopLeft", "anchorAtCenter",     "toggleHidden"};
        const QString name = QString::fromLatin1(oneOf(names));
        const size_t animations = m_scene.project().animationsManager().animations().size();
        const bool isNew = name == u"addAnimation" || name == u"duplicateAnimation";
        if (isNew && animations >= kMostAnimations) { return; }
        m_scene.controller().commands().perform(name);
        QCoreApplication::processEvents();
        m_scene.key(Qt::Key_Escape);  // out of the field of a new name
    }
    void play() {
        m_scene.key(Qt::Key_Return);
        m_scene.clock.seconds += 0.3;
        QCoreApplication::processEvents();
        if (below(2) == 0) { m_scene.key(Qt::Key_Return); }
    }

    std::mt19937 m_random;
    WindowScene m_scene{"A B G{C D}"};
    std::string m_first;
    std::string m_acts;
};

TEST(WindowWalk, EverythingIsUndoneAndRedone) {
    Walk walk(1);
    for (int steps = 0; steps < kSteps; steps += kStepsOfALeg) {
        walk.goOn();
        if (HasFatalFailure()) { return; }
    }
}

}  // namespace
}  // namespace tweenery::test
