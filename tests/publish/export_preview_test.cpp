#include <gtest/gtest.h>

#include "publish/export_scene.h"
#include "support/printers.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

// Animations "walk" (A moves by 100 in a second) and "walk_fast" (A fades in half a second), "drip"
// (B turns forever), "still" (nothing).
class PreviewScene : public ExportScene {
 public:
    PreviewScene() {
        key("walk", "A", PCPropertyTypeTranslationX, "0:0 1000:100");
        key("walk_fast", "A", PCPropertyTypeOpacity, "0:1 500:0");
        key("drip", "B", PCPropertyTypeTranslationY, "0:0 400:40", PCRepeatBehaviorForever);
        selectNewAnimation(*project, u"still"_s);
        project->animationsManager().setSelectedAnimation(nullptr);
        open();
    }

    ExportPreview& preview() { return *session->preview(); }
    size_t row(const char* name) {
        const auto& rows = preview().animations();
        for (size_t i = 0; i < rows.size(); ++i) {
            if (rows[i].name == QString::fromLatin1(name)) { return i; }
        }
        throw std::logic_error(name);
    }
    void click(const char* name) { session->toggleAnimation(row(name)); }
    const LayerValues& shown(const char* element) {
        session->tick();
        const PCElement::Ptr copy = named(preview().project(), QString::fromLatin1(element));
        return PCLayer::of(*copy)->presented();
    }

 private:
    void key(const char* animation, const char* element, PCPropertyType type, const char* keys,
             PCRepeatBehavior repeat = PCRepeatBehaviorNever) {
        const auto made = selectNewAnimation(*project, QString::fromLatin1(animation));
        const PCElement::Ptr keyed = named(*project, QString::fromLatin1(element));
        made->applyTimeline(timelineWithKeys(keyed, type, keys, repeat), *keyed);
    }
};

TEST(ExportPreview, ListsAnimationsWithTheirLengths) {
    PreviewScene scene;
    QStringList rows;
    for (const ExportPreview::Animation& row : scene.preview().animations()) {
        rows << row.name + u' ' + row.length.text() +
                    (row.length.isAbove0() ? QString() : u" dim"_s);
    }
    rows.sort();
    EXPECT_EQ(rows, QStringList({u"drip ∞"_s, u"still 0.0 s dim"_s, u"walk 1.0 s"_s,
                                 u"walk_fast 0.5 s"_s}));
}

TEST(ExportPreview, EachAnimationRunsFromItsOwnStart) {
    PreviewScene scene;
    const double fromModel = named(*scene.project, u"A"_s)->position().x();
    const int64_t edits = scene.project->undoManager().changeCount();
    scene.clock.seconds += 3;
    scene.click("walk");
    EXPECT_NEAR(scene.shown("A").transform.translation.x(), 0, 1e-6);
    scene.clock.seconds += 0.25;
    EXPECT_NEAR(scene.shown("A").transform.translation.x(), 25, 1e-4);
    scene.click("drip");
    scene.clock.seconds += 0.2;
    EXPECT_NEAR(scene.shown("A").transform.translation.x(), 45, 1e-4);
    EXPECT_NEAR(scene.shown("B").transform.translation.y(), 20, 1e-4);
    scene.clock.seconds += 10;
    EXPECT_NEAR(scene.shown("A").transform.translation.x(), 100, 1e-4) << "its last value holds";
    EXPECT_NEAR(scene.shown("B").transform.translation.y(), 20, 1e-3) << "it repeats";
    EXPECT_EQ(named(*scene.project, u"A"_s)->position().x(), fromModel);
    EXPECT_EQ(scene.project->undoManager().changeCount(), edits);
}

TEST(ExportPreview, AStopLeavesTheOtherAnimationsRunning) {
    PreviewScene scene;
    scene.click("walk");
    scene.click("walk_fast");
    scene.clock.seconds += 0.25;
    EXPECT_NEAR(scene.shown("A").opacity, 0.5, 1e-4);
    scene.click("walk");
    EXPECT_NEAR(scene.shown("A").transform.translation.x(), 0, 1e-6);
    EXPECT_NEAR(scene.shown("A").opacity, 0.5, 1e-4) << "its name only begins like the other's";
    EXPECT_TRUE(scene.preview().animations()[scene.row("walk_fast")].isRunning);
    scene.click("still");
    EXPECT_TRUE(scene.preview().animations()[scene.row("still")].isRunning);
    scene.preview().stopAll();
    EXPECT_FALSE(scene.preview().isAnyRunning());
    EXPECT_NEAR(scene.shown("A").opacity, 1, 1e-6);
}

TEST(ExportPreview, ShowsTheClipAtOnce) {
    PreviewScene scene;
    const PCElement::Ptr canvas = scene.preview().project().canvas();
    for (const bool clips : {true, false}) {
        scene.session->press(scene.toggle(clips ? "Clips To Bounds" : "Unbounded"));
        EXPECT_EQ(PCLayer::of(*canvas)->masksToBounds(), clips);
    }
}

TEST(ExportPreview, FitsTheBoxOfAllElements) {
    ExportScene scene("A");
    const PCElement::Ptr a = named(*scene.project, u"A"_s);
    a->setSize({950, 100});
    a->setPosition({5000, -300});
    ExportPreview& preview = *scene.open().preview();
    preview.setViewSize({500, 400});
    const PCLayer& canvas = *PCLayer::of(*preview.project().canvas());
    EXPECT_NEAR(canvas.transform().scale.x(), 0.5, 1e-6);
    EXPECT_EQ(canvas.position(), QPointF(250, 200)) << "the canvas's middle, wherever the box is";
}

}  // namespace
}  // namespace tweenery::test
