#include "model/animations_manager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/errors.h"
#include "support/model_builder.h"
#include "support/model_recorders.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

/// Writes down what the manager tells; may take another listener away when told.
struct Listener : PCAnimationsManagerChangeListener {
    std::vector<std::string> calls;
    PCAnimationsManagerChangeListener* removes = nullptr;

    void record(PCAnimationsManager& manager, const char* what, const PCAnimation::Ptr& animation) {
        calls.push_back(what + (animation ? animation->name().toStdString() : "setup"));
        if (removes) { manager.removeChangeListener(removes); }
    }
    using M = PCAnimationsManager;
    using A = PCAnimation::Ptr;
    void animationManagerDidSelectAnimation(M& m, const A& a) override {
        record(m, "selected ", a);
    }
    void animationManagerDidDeleteAnimation(M& m, const A& a) override { record(m, "deleted ", a); }
    void animationManagerDidRenameAnimation(M& m, const A& a) override { record(m, "renamed ", a); }
    void animationManagerDidAddAnimation(M& m, const A& a) override { record(m, "added ", a); }
};

class AnimationsManager : public testing::Test {
 protected:
    PCProject::Ptr project = PCProject::init();
    PCAnimationsManager& manager = project->animationsManager();
    PCElement::Ptr ball = addElement(project->canvas(), u"ball"_s);

    PCAnimation::Ptr add(const QString& name) {
        return manager.renameAnimation(manager.addNewEmptyAnimation(), name);
    }
    std::string names() const {
        std::string text;
        for (const PCAnimation::Ptr& animation : manager.animations()) {
            text += animation->name().toStdString() + ", ";
        }
        return text;
    }
    PCProject::Ptr reopened() const {
        const auto copy = FileWrapper::directory(u"Copy.tweenery"_s);
        project->fileWrapper()->pc_copySubFileWrappersToFileWrapper(*copy);
        RecordingLog log;
        return PCProject::projectWithFileWrapper(copy, log);
    }
    /// The file's path in the animation's directory is there.
    bool hasFile(const PCAnimation& animation, const QString& file) const {
        const auto directory = animation.fileWrapper()->child(ball->identifier().toString());
        return directory && directory->child(file);
    }
};

TEST(NumberedNames, CountOnFromTheLastWord) {
    for (const auto& [name, next] :
         {std::pair("Bounce", "Bounce 2"), std::pair("Bounce 2", "Bounce 3"),
          std::pair("Take 0", "Take 0 2"), std::pair("Take 09b", "Take 10"),
          std::pair("Take -3", "Take -3 2"), std::pair("7", "7 2"), std::pair("A ", "A  2"),
          std::pair("A 2147483647", "A 2147483647 2"), std::pair("", " 2"),
          std::pair("A 99999999999999999999", "A 99999999999999999999 2")}) {
        EXPECT_EQ(pc_stringByGettingNextNumberedName(QString::fromLatin1(name)).toStdString(),
                  next);
    }
}

TEST_F(AnimationsManager, NamesStayUnique) {
    manager.addNewEmptyAnimation();
    manager.addNewEmptyAnimation();
    manager.addNewEmptyAnimation();
    EXPECT_EQ(names(), "Untitled Animation, Untitled Animation 2, Untitled Animation 3, ");
    manager.renameAnimation(manager.animations()[0], u"Slide"_s);
    manager.renameAnimation(manager.animations()[1], u"Slide"_s);
    manager.renameAnimation(manager.animations()[2], u"Slide"_s);
    EXPECT_EQ(names(), "Slide, Slide 2, Slide 3, ");
    const auto copy = manager.duplicateAnimation(manager.animations()[0]);
    EXPECT_EQ(copy->name(), u"Slide 4"_s);
    EXPECT_THROW(manager.renameAnimation(nullptr, u"x"_s), AssertionFailure);
    EXPECT_TRUE(manager.animationExistsWithName(u"Slide 4"_s));
    EXPECT_FALSE(manager.animationExistsWithName(u"slide 4"_s));
    EXPECT_EQ(manager.animationForIdentifier(copy->identifier()), copy);
    EXPECT_EQ(manager.animationForIdentifier({}), nullptr);
}

TEST_F(AnimationsManager, ListsByNameUntilRenamed) {
    for (const QString& name : {u"b"_s, u"A"_s, u"c"_s}) {
        const UndoRegistrationPause pause(project->undoManager());
        const auto animation = PCAnimation::initWithAnimationFileWrapper(
            FileWrapper::directory(Identifier::generate().toString()), project);
        animation->setName(name);
        manager.addAnimation(animation);
    }
    EXPECT_EQ(names(), "A, b, c, ");
    manager.renameAnimation(manager.animations()[0], u"Z"_s);
    EXPECT_EQ(names(), "Z, b, c, ");
    const auto again = reopened();
    EXPECT_EQ(again->animationsManager().debugDescription(),
              u"<PCProjectAnimationsManager (count:3)\nb\nc\nZ\n/PCProjectAnimationsManager>"_s);
    EXPECT_FALSE(again->animationsManager().hasUnsavedChanges());
}

TEST_F(AnimationsManager, TellsItsListeners) {
    Listener first, second;
    const Subscription once = manager.addChangeListener(&first);
    const Subscription again = manager.addChangeListener(&first);  // once is enough
    const auto animation = add(u"Bounce"_s);
    EXPECT_THAT(first.calls, ElementsAre("renamed Untitled Animation", "added Untitled Animation",
                                         "renamed Bounce"));
    first.calls.clear();
    project->undoManager().removeAllActions();
    manager.renameAnimation(animation, u"Bounce"_s);
    EXPECT_THAT(first.calls, ElementsAre("renamed Bounce"));
    EXPECT_FALSE(project->undoManager().canUndo());
    first.calls.clear();
    const Subscription other = manager.addChangeListener(&second);
    first.removes = &second;
    manager.setSelectedAnimation(animation);
    manager.deleteAnimation(animation);
    EXPECT_THAT(first.calls, ElementsAre("selected Bounce", "selected setup", "deleted Bounce"));
    EXPECT_TRUE(second.calls.empty());
}

TEST_F(AnimationsManager, WalksBackAndForth) {
    UndoWalk walk(*project, [this] {
        project->fileWrapper();
        std::string text;
        for (const PCAnimation::Ptr& animation : manager.animations()) {
            text += '|' + animation->identifier().toStdString() + animation->name().toStdString();
        }
        for (const auto& [identifier, directory] : manager.fileWrapper()->fileWrappers()) {
            text += '|' + identifier.toStdString() +
                    directory->child(kAnimationNameFile)->contents().toStdString();
            const auto keyed = directory->child(ball->identifier().toString());
            const auto file = keyed ? keyed->child(u"opacity.data"_s) : nullptr;
            if (!file) { continue; }
            text += keysText(*PCKeyedPropertyTimeline::unarchive(file->contents(), u"opacity"_s));
        }
        return text;
    });
    walk.edit([&] { manager.addNewEmptyAnimation(); });
    walk.edit([&] { manager.renameAnimation(manager.animations()[0], u"Bounce"_s); });
    manager.setSelectedAnimation(manager.animations()[0]);
    walk.edit([&] { ball->setOpacity(0.5F, 100); });
    walk.edit([&] { manager.duplicateAnimation(manager.animations()[0]); });
    walk.edit([&] { manager.deleteAnimation(manager.animations()[0]); });
    manager.setSelectedAnimation(manager.animations()[0]);
    walk.edit([&] { ball->setOpacity(0.25F, 50); });
    walk.check();
}

// Selecting is no edit, but undo and redo go to where the edit was made.
TEST_F(AnimationsManager, UndoSelectsTheAnimationOfTheEdit) {
    const auto bounce = add(u"Bounce"_s);
    const auto walk = add(u"Walk"_s);
    project->undoManager().endEvent();
    manager.setSelectedAnimation(bounce);
    ball->setOpacity(0.5F, 100);
    project->undoManager().endEvent();
    manager.setSelectedAnimation(nullptr);
    ball->setOpacity(0.25);
    project->undoManager().endEvent();
    manager.setSelectedAnimation(walk);

    const int64_t count = project->undoManager().changeCount();
    const auto selectedAfter = [this](bool (PCProject::*step)()) {
        EXPECT_TRUE((*project.*step)());
        const auto selected = manager.selectedAnimation();
        return selected ? selected->name() : u"setup"_s;
    };
    EXPECT_EQ(selectedAfter(&PCProject::undo), u"setup");
    EXPECT_EQ(ball->opacity(), 1);
    EXPECT_EQ(selectedAfter(&PCProject::undo), u"Bounce");
    EXPECT_EQ(keysText(*ball->opacityTimeline()), "");
    manager.setSelectedAnimation(walk);
    EXPECT_EQ(selectedAfter(&PCProject::redo), u"Bounce");
    EXPECT_EQ(selectedAfter(&PCProject::redo), u"setup");
    EXPECT_EQ(project->undoManager().changeCount(), count);
    manager.setSelectedAnimation(walk);
    EXPECT_EQ(project->undoManager().changeCount(), count);
}

// To come into line with the tree follows from the edit of the tree, and is undone with it.
TEST_F(AnimationsManager, AnUndoneChildrenOrderIsSavedThoughItsAnimationIsNotSelected) {
    const Subscription told = manager.addChangeListener(project.get());
    const auto animation = add(u"Bounce"_s);
    addElement(project->canvas(), u"box"_s);
    manager.setSelectedAnimation(animation);
    const QStringList order = PCProject::sortedSubelementIdentifiers(*project->canvas());
    project->canvas()->setChildrenZPositions(order, 100);
    manager.setSelectedAnimation(nullptr);
    project->undoManager().endEvent();
    project->canvas()->removeSubelementAtIndex(1);
    project->undoManager().endEvent();
    const auto storedOrder = [&] {
        project->fileWrapper();
        const auto file = animation->fileWrapper()
                              ->child(project->canvas()->identifier().toString())
                              ->child(u"zPosition.data"_s);
        return PCKeyedPropertyTimeline::unarchive(file->contents(), u"zPosition.data"_s)
            ->arrayValueAtTimeInMS(100);
    };
    for (int i = 0; i < 2; ++i) {
        manager.setSelectedAnimation(animation);
        EXPECT_EQ(storedOrder(), QStringList(order[0]));
        project->undo();
        EXPECT_TRUE(project->isSetupMode());
        EXPECT_EQ(storedOrder(), order);
        project->redo();
    }
}

// A deleted animation that comes back has to be in the package again.
TEST_F(AnimationsManager, UndoneDeletionIsSaved) {
    const auto animation = add(u"Bounce"_s);
    manager.setSelectedAnimation(animation);
    ball->setOpacity(0.5F, 100);
    project->undoManager().endEvent();
    manager.deleteAnimation(animation);
    EXPECT_TRUE(project->isSetupMode());
    EXPECT_EQ(manager.fileWrapper()->child(animation->identifier()), nullptr);
    project->undoManager().undo();
    EXPECT_EQ(manager.selectedAnimation(), animation);
    const auto again = reopened();
    ASSERT_EQ(again->animationsManager().animations().size(), 1U);
    const auto stored = again->animationsManager().animations()[0];
    EXPECT_EQ(stored->identifier(), animation->identifier());
    again->animationsManager().setSelectedAnimation(stored);
    EXPECT_EQ(keysText(*again->elementForIdentifier(ball->identifier())->opacityTimeline()),
              "100:0.5");
}

TEST_F(AnimationsManager, SelectionSavesAndAttaches) {
    const auto a = add(u"A"_s), b = add(u"B"_s);
    manager.setSelectedAnimation(a);
    ball->setSelected(true);
    ball->setOpacity(0.5F, 100);
    ball->setXScale(2, 100);
    a->masterKeyframesTimeline()->setFloatPropertyValue(0, 70);
    EXPECT_FALSE(hasFile(*a, u"opacity.data"_s));
    manager.setSelectedAnimation(b);
    EXPECT_FALSE(ball->selected());
    EXPECT_TRUE(ball->opacityTimeline()->isEmpty());
    EXPECT_TRUE(hasFile(*a, u"opacity.data"_s) && hasFile(*a, u"xScale.data"_s));
    EXPECT_FALSE(hasFile(*a, u"yScale.data"_s));
    EXPECT_TRUE(a->fileWrapper()->child(kAnimationKeyAllFile));
    const PCAnimation::Summary summary = a->storedSummary();
    EXPECT_EQ(summary.durationInMS, 100);
    EXPECT_EQ(summary.timelinesCount, 2U);
    EXPECT_EQ(summary.keyframesCount, 2U);

    // New since A was made: empty timelines of A, which are saved with it.
    manager.setSelectedAnimation(a);
    const auto late = addElement(project->canvas(), u"late"_s);
    late->setOpacity(0.25F, 30);
    EXPECT_EQ(a->timelineGroup(late->identifier())->timeline(PCPropertyTypeOpacity),
              late->opacityTimeline());
    ball->opacityTimeline()->removeAllKeyframes();
    ball->scaleXTimeline()->removeAllKeyframes();
    a->masterKeyframesTimeline()->removeAllKeyframes();
    project->fileWrapper();
    EXPECT_FALSE(hasFile(*a, u"opacity.data"_s));
    EXPECT_TRUE(a->fileWrapper()->child(ball->identifier().toString()))
        << "the directory of an element that is there stays";
    EXPECT_EQ(a->fileWrapper()->child(kAnimationKeyAllFile), nullptr);
    EXPECT_TRUE(a->fileWrapper()->child(late->identifier().toString()));
    manager.setSelectedAnimation(nullptr);
    EXPECT_EQ(ball->opacityTimeline(), nullptr);
}

TEST_F(AnimationsManager, DuplicatesShareNothing) {
    const auto a = add(u"A"_s);
    manager.setSelectedAnimation(a);
    ball->setOpacity(0.5F, 100);
    const auto copy = manager.duplicateAnimation(a);
    ball->setOpacity(0.25F, 100);
    manager.setSelectedAnimation(copy);
    EXPECT_EQ(keysText(*ball->opacityTimeline()), "100:0.5");
    EXPECT_NE(copy->identifier(), a->identifier());
    EXPECT_EQ(copy->fileWrapper()->child(kAnimationNameFile)->contents(), QByteArray("A 2"));
    manager.setSelectedAnimation(a);
    EXPECT_EQ(keysText(*ball->opacityTimeline()), "100:0.25");
}

// Damage is found before anything has changed.
TEST_F(AnimationsManager, DamagedTimelinesChangeNothing) {
    const auto a = add(u"A"_s), b = add(u"B"_s);
    const auto damage = [&](const QString& file) {
        b->fileWrapper()
            ->pc_ensureSubfileWrapperDirectoryExistsWithName(ball->identifier().toString())
            ->pc_replaceSubFileWrapperNamed(file, "noise");
    };
    damage(u"opacity.data"_s);
    manager.setSelectedAnimation(a);
    ball->setOpacity(0.5F, 100);
    project->fileWrapper();
    const auto again = reopened();
    PCAnimationsManager& opened = again->animationsManager();
    opened.setSelectedAnimation(opened.animations()[0]);
    again->undoManager().removeAllActions();
    try {
        opened.setSelectedAnimation(opened.animations()[1]);
        ADD_FAILURE() << "accepted";
    } catch (const InputError& error) {
        EXPECT_EQ(error.entry(), u"animations/%1/%2/opacity.data"_s.arg(
                                     b->identifier(), ball->identifier().toString()));
    }
    EXPECT_EQ(opened.selectedAnimation()->name(), u"A"_s);
    EXPECT_EQ(keysText(*again->elementForIdentifier(ball->identifier())->opacityTimeline()),
              "100:0.5");
    EXPECT_FALSE(again->undoManager().canUndo());
}

// The entries that somebody else put into an animation's directory.
TEST_F(AnimationsManager, CarriesWhatItDoesNotKnow) {
    const auto a = add(u"A"_s);
    a->fileWrapper()->pc_replaceSubFileWrapperNamed(u".notes"_s, "mine");
    a->fileWrapper()->pc_replaceSubFileWrapperNamed(kAnimationNameFile, "\xFF\xFE");
    manager.fileWrapper()->pc_replaceSubFileWrapperNamed(u"readme"_s, "file");
    const auto again = reopened();
    PCAnimationsManager& opened = again->animationsManager();
    ASSERT_EQ(opened.animations().size(), 1U);
    const auto stored = opened.animations()[0];
    EXPECT_TRUE(stored->name().isNull());
    opened.setSelectedAnimation(stored);
    again->fileWrapper();
    EXPECT_EQ(stored->fileWrapper()->child(u".notes"_s)->contents(), QByteArray("mine"));
    EXPECT_EQ(again->preferences().selectedAnimationIdentifier(), stored->identifier());
    EXPECT_TRUE(opened.fileWrapper()->child(u"readme"_s));
}

TEST_F(AnimationsManager, AnimationsOutliveTheirProject) {
    const auto a = add(u"A"_s);
    manager.setSelectedAnimation(a);
    ball->setOpacity(0.5F, 100);
    std::weak_ptr<PCProject> gone = project;
    const PCElement::Ptr kept = ball;
    const auto timeline = ball->opacityTimeline();
    project.reset();
    ASSERT_TRUE(gone.expired());
    EXPECT_EQ(a->animationsManager(), nullptr);
    a->saveChangesToFileWrapper();
    EXPECT_TRUE(hasFile(*a, u"opacity.data"_s));
    kept->setOpacity(0.25);
    timeline->setFloatPropertyValue(1, 7);
    EXPECT_EQ(kept->parentElement(), nullptr);
}

}  // namespace
}  // namespace tweenery::test
