#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <numbers>

#include "base/errors.h"
#include "storage/bitmap.h"
#include "support/model_builder.h"
#include "support/model_recorders.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double pi = std::numbers::pi;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

/// One element on a canvas, with everything recorded that it tells.
struct Scene {
    RecordingLayerFactory layers;  // outlives the layers that it made
    PCProject::Ptr project = PCProject::init();
    PCElement::Ptr element;
    NotificationRecorder notifications{*project};

    Scene() {
        project->setViewLayerFactory(&layers);
        element = addElement(project->canvas(), u"ball"_s,
                             {{10, 20}, {2, 3}, 1, {40, 60}, {0.5, 0.5}, 0.5});
        forget();
    }
    UndoManager& undo() { return project->undoManager(); }
    void forget() {
        undo().removeAllActions();
        project->canvas()->setModified(false);
        element->setModified(false);
        layers.calls.clear();
        notifications.posts.clear();
    }
};

// Each setter: what it changes, undone and redone, what it tells, and what it does not take.
TEST(ElementSetters, StoreTellAndUndo) {
    using E = PCElement;
    using Set = std::function<void(E&)>;
    struct Case {
        const char* what;
        Set set;
        std::vector<Set> ignored;  // after the first: equal, or not to be taken
        std::vector<std::string> layer;
        std::vector<std::string> posted;
    };
    const auto position = [](double x, double y) {
        return Set([=](E& e) { e.setPosition({x, y}); });
    };
    const auto scale = [](double x, double y) { return Set([=](E& e) { e.setScale({x, y}); }); };
    const auto anchor = [](double x, double y) {
        return Set([=](E& e) { e.setAnchorPoint({x, y}); });
    };
    const auto size = [](double x, double y) { return Set([=](E& e) { e.setSize({x, y}); }); };
    const auto rotation = [](double to) { return Set([=](E& e) { e.setZRotation(to); }); };
    const auto opacity = [](double to) { return Set([=](E& e) { e.setOpacity(to); }); };
    const Set name = [](E& e) { e.setName(u"Ball"_s); };
    const Set image = [](E& e) { e.setImageName(u"gone.png"_s); };
    const Set hidden = [](E& e) { e.setHidden(true); };
    const Set locked = [](E& e) { e.setLocked(true); };
    const Set expanded = [](E& e) { e.setExpanded(true); };
    const Set scalesLocked = [](E& e) { e.setScalesLocked(true); };
    // clang-format off
    const std::vector<Case> cases = {
        {"position", position(1, 2), {position(1, 2), position(nan, 2), position(1, infinity)},
         {"ball: position"}, {"ball: elementpositionchangenotification"}},
        {"position, by less than a fuzzy comparison sees", position(10, std::nextafter(20.0, 21)), {},
         {"ball: position"}, {"ball: elementpositionchangenotification"}},
        {"rotation", rotation(-pi / 2), {rotation(1.5 * pi), rotation(nan), rotation(-infinity)},
         {"ball: transforms"}, {"ball: elementrotationchangenotification"}},
        {"scale", scale(-1, 0), {scale(-1, 0), scale(1, nan), scale(1e200, 1)},
         {"ball: transforms"}, {"ball: elementscalechangenotification"}},
        {"anchor", anchor(0, 1), {anchor(0, 1), anchor(nan, 1), anchor(1e308, 1)},
         {"ball: anchor"}, {"ball: elementanchorpointchangenotification"}},
        {"opacity, clamped", opacity(1.5), {opacity(7), opacity(nan)},
         {"ball: opacity"}, {"ball: elementopacitychangenotification"}},
        {"size, negative as it stands", size(-5, 7), {size(-5, 7), size(nan, 7)},
         {"ball: bounds"}, {"ball: elementsizechangenotification"}},
        {"name", name, {name}, {}, {"Ball: namechangednotification"}},
        {"image, whose set is not there", image, {image}, {"ball: bounds", "ball: contents"},
         {"ball: elementsizechangenotification", "ball: elementimagenamechangenotification"}},
        {"hidden", hidden, {hidden}, {"ball: hidden"}, {"ball: elementhiddenchangenotification"}},
        {"locked", locked, {locked}, {}, {"ball: elementlockedchangenotification"}},
        {"expanded", expanded, {expanded}, {}, {"ball: elementexpandedchangenotification"}},
        {"scales locked", scalesLocked, {scalesLocked}, {}, {"ball: elementscaleslockedchangenotification"}},
    };
    // clang-format on
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Scene scene;
        PCElement& element = *scene.element;
        const std::string before = exactState(element);
        c.set(element);
        scene.undo().endEvent();
        const std::string after = exactState(element);
        EXPECT_NE(after, before);
        EXPECT_TRUE(element.modified() && scene.project->canvas()->modified());
        EXPECT_EQ(scene.layers.calls, c.layer);
        EXPECT_EQ(scene.notifications.posts, c.posted);

        const int64_t count = scene.undo().changeCount();
        for (const auto& ignored : c.ignored) {
            ignored(element);
            EXPECT_EQ(exactState(element), after);
        }
        EXPECT_EQ(scene.undo().changeCount(), count);
        EXPECT_EQ(scene.layers.calls, c.layer);
        EXPECT_EQ(scene.notifications.posts, c.posted);

        scene.undo().undo();
        EXPECT_EQ(exactState(element), before);
        EXPECT_EQ(scene.notifications.posts.size(), 2 * c.posted.size());
        scene.undo().redo();
        EXPECT_EQ(exactState(element), after);
    }
}

TEST(ElementSetters, NormaliseRotations) {
    const auto element = PCElement::init();
    const double degree = pi / 180;
    for (const auto& [given, stored] :
         {std::pair(-pi / 2, 1.5 * pi), std::pair(2 * pi, 0.0), std::pair(359.6 * degree, 0.0),
          std::pair(359.5 * degree, 359.5 * degree), std::pair(-0.4 * degree, 0.0),
          std::pair(5 * pi, pi), std::pair(-1e-20, 0.0)}) {
        element->setZRotation(1);
        element->setZRotation(given);
        EXPECT_NEAR(element->zRotation(), stored, 1e-12) << given;
    }
}

TEST(ElementSetters, WithoutUndoStore) {
    Scene scene;
    scene.element->setScaleTimelineSplit(false);
    EXPECT_TRUE(scene.element->modified()) << "even an equal value marks";
    scene.element->setModified(false);
    scene.element->setSelected(true);
    EXPECT_FALSE(scene.element->modified());
    EXPECT_FALSE(scene.undo().canUndo());
    EXPECT_THAT(scene.layers.calls, ElementsAre("ball: selected"));
    EXPECT_THAT(scene.notifications.posts, IsEmpty());
    scene.project->canvas()->setSize({-5, 7});
    EXPECT_EQ(scene.project->canvas()->size().width(), 0);
}

// The size that an image brings, and the size that an undo brings back.
TEST(ElementSetters, ImagesBringTheirSize) {
    Scene scene;
    const auto& element = scene.element;
    QImage red(20, 30, QImage::Format_ARGB32);
    red.fill(Qt::red);
    scene.project->imageSetManager().addImageSetWithPCImage(
        PCImage::pcimageWithData(encodeImage(red, ImageFormat::Png), u"ball.png"_s));
    element->setImageName(u"ball.png"_s);
    EXPECT_EQ(element->size().height(), 30);
    element->setSize({1, 2});
    UndoWalk walk(*scene.project, [&] { return exactState(*element); });
    walk.edit([&] { element->setImageName(u"gone.png"_s); });
    EXPECT_EQ(element->size().width(), 0);
    walk.edit([&] { element->setImageName(u"ball.png"_s); });
    EXPECT_EQ(element->size().width(), 20);
    walk.check();
    EXPECT_EQ(element->size().width(), 1);
}

TEST(ElementSetters, DamagedArtworkChangesNothing) {
    const auto root = PCProject::init()->fileWrapper();
    root->child(u"images"_s)
        ->pc_ensureSubfileWrapperDirectoryExistsWithName(u"bad.png"_s)
        ->pc_replaceSubFileWrapperNamed(u"Original.png"_s, "noise");
    const auto project = PCProject::projectForReadingWithFileWrapper(root);
    const auto element = addElement(project->canvas(), u"ball"_s);
    const std::string before = exactState(*element);
    EXPECT_THROW(element->setImageName(u"bad.png"_s), InputError);
    EXPECT_EQ(exactState(*element), before);
    EXPECT_FALSE(project->undoManager().canUndo());
}

/// "name" for each element, "h" when it is hidden, "l" when it is locked.
std::string flags(const PCElement& root) {
    std::string text;
    for (const PCElement::Ptr& element : root.children()) {
        text += element->name().toStdString() + (element->hidden() ? "h" : "") +
                (element->locked() ? "l" : "") + ' ' + flags(*element);
    }
    return text;
}

TEST(ElementCascades, GoDownAndUp) {
    const auto project = PCProject::init();
    buildTree(*project, "G{A H{B C}} D");
    const auto e = [&](const char* name) { return named(*project, QString::fromLatin1(name)); };
    const auto hide = [&](const char* name, bool is) { return [=] { e(name)->setHidden(is); }; };
    const auto lock = [&](const char* name, bool is) { return [=] { e(name)->setLocked(is); }; };
    struct Step {
        std::function<void()> edit;
        const char* after;
    };
    // Showing one shows the groups above, and thereby all their children.
    const std::vector<Step> steps = {
        {hide("B", true), "G A H Bh C D "},     {hide("G", true), "Gh Ah Hh Bh Ch D "},
        {hide("C", false), "G A H B C D "},     {hide("A", true), "G Ah H B C D "},
        {hide("G", true), "Gh Ah Hh Bh Ch D "}, {hide("G", false), "G A H B C D "},
        {lock("A", true), "G Al H B C D "},     {lock("G", true), "Gl Al Hl Bl Cl D "},
    };
    UndoWalk walk(*project, [&] { return flags(*project->canvas()); });
    for (const Step& step : steps) {
        walk.edit(step.edit);
        EXPECT_EQ(flags(*project->canvas()), step.after);
    }
    walk.check();
    steps.back().edit();
    e("B")->setLocked(false);
    EXPECT_EQ(flags(*project->canvas()), "G Al H B Cl D ") << "siblings stay locked";
    EXPECT_FALSE(project->canvas()->locked());
}

TEST(ElementCascades, SurviveEditsByTheirListeners) {
    const auto project = PCProject::init();
    buildTree(*project, "G{A B C}");
    const auto group = named(*project, u"G"_s);
    const auto subscription = project->notificationCentre().subscribe(
        ElementNotification::hidden, group->children()[0].get(),
        [&group](const void*) { group->removeSubelementAtIndex(1); });
    group->setHidden(true);
    EXPECT_EQ(flags(*project->canvas()), "Gh Ah Ch ");
}

}  // namespace
}  // namespace tweenery::test
