#include "editor/timeline/playback.h"

#include <gmock/gmock.h>

#include "editor/editor_scene.h"
#include "support/model_recorders.h"
#include "support/scripted_clock.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace tweenery::test {
namespace {

/// A document without a window: back and front, of which back moves to x 100 and comes in front
/// within a second.
class PlaybackTest : public testing::Test, protected EditorScene {
 protected:
    ScriptedClock clock;
    RecordingLog log;
    PCProjectTimeManager time{clock, log};
    std::optional<Playback> playback;
    PCElement::Ptr back;
    PCElement::Ptr front;
    PCAnimation::Ptr walk;

    void SetUp() override {
        back = addElement(canvas, u"back"_s, {.position = {10, 20}});
        front = addElement(canvas, u"front"_s);
        walk = selectNewAnimation(*project, u"walk"_s);
        back->setXTranslation(0, 0);
        back->setXTranslation(100, 1000);
        canvas->setChildrenZPositions(idsOf({back, front}), 0);
        canvas->setChildrenZPositions(idsOf({front, back}), 1000);
        time.prepareToAnimateLayer(layer(canvas));
        playback.emplace(project, time, selection, layers);
    }
    void TearDown() override { playback.reset(); }
    static QStringList idsOf(const PCElement::Elements& elements) {
        QStringList ids;
        for (const auto& element : elements) {
            ids << element->identifier().toString();
        }
        return ids;
    }
    void frameAfter(double seconds) {
        clock.seconds += seconds;
        time.displaylinkAdapter()->tick();
    }
    /// What is seen of back: its x, and its place among the two.
    std::string backAsSeen() const {
        const LayerValues& seen = layer(back).presented();
        const double x = seen.position.x() + seen.transform.translation.x();
        return std::to_string(std::lround(x)) + " at " +
               std::to_string(std::lround(seen.zPosition));
    }
    std::vector<QString> keys(const PCElement::Ptr& element) const {
        return layer(element).animationKeys();
    }
};

TEST_F(PlaybackTest, PlaysWhatTheModelShows) {
    time.setPlayheadPositionInMS(500);
    EXPECT_EQ(backAsSeen(), "60 at 0") << "standing still, the layers follow the model";
    EXPECT_THAT(keys(back), IsEmpty());
    selection.selectElements({front, back});

    playback->togglePlayPause();
    EXPECT_THAT(selection.selectedElements(), IsEmpty());
    EXPECT_THAT(keys(back), ElementsAre(u"walk_Translation.X"_s, u"walk_ZPosition"_s));
    EXPECT_THAT(keys(front), ElementsAre(u"walk_ZPosition"_s));
    EXPECT_EQ(layer(back).position(), QPointF(10, 20)) << "at its setup state";
    EXPECT_EQ(backAsSeen(), "60 at 0");
    frameAfter(0.3001);
    EXPECT_EQ(backAsSeen(), "90 at 0");
    frameAfter(60);
    EXPECT_EQ(backAsSeen(), "110 at 1") << "held at the end";

    playback->togglePlayPause();
    EXPECT_EQ(time.playheadPositionInMS(), 500);
    EXPECT_THAT(keys(back), IsEmpty());
    EXPECT_THAT(keys(front), IsEmpty());
    EXPECT_EQ(backAsSeen(), "60 at 0");
    EXPECT_THAT(selection.selectedElements(), ElementsAre(front, back));
    EXPECT_THAT(playback->selectionBeforePlayback(), IsEmpty());
}

TEST_F(PlaybackTest, StoppingBeforeTheFirstFrameKeepsTheStacking) {
    time.setPlayheadPositionInMS(1000);
    playback->togglePlayPause();
    playback->togglePlayPause();
    EXPECT_EQ(backAsSeen(), "110 at 1");
}

TEST_F(PlaybackTest, SkimmingShowsTheSkimmedTimeUnlessPlaying) {
    time.setSkimPositionInMS(250);
    EXPECT_EQ(backAsSeen(), "35 at 0");
    playback->togglePlayPause();
    time.setSkimPositionInMS(750);
    EXPECT_EQ(layer(back).position(), QPointF(10, 20));
}

TEST_F(PlaybackTest, PlayAfterASkimShowsThePlayheadAtOnce) {
    time.setPlayheadPositionInMS(500);
    time.setSkimPositionInMS(250);
    playback->togglePlayPause();
    EXPECT_EQ(backAsSeen(), "60 at 0");
}

TEST_F(PlaybackTest, AnotherAnimationEndsIt) {
    struct Case {
        const char* name;  // null: setup
        const char* seen;
    };
    for (const Case& c : {Case{nullptr, "10 at 0"}, Case{"run", "10 at 0"}}) {
        project->animationsManager().setSelectedAnimation(walk);
        time.setPlayheadPositionInMS(700);
        selection.selectElements({back});
        playback->togglePlayPause();
        frameAfter(1);
        if (c.name) {
            selectNewAnimation(*project, QString::fromLatin1(c.name));
        } else {
            project->animationsManager().setSelectedAnimation(nullptr);
        }
        EXPECT_FALSE(time.isPlayingBack());
        EXPECT_EQ(time.playheadPositionInMS(), 700);
        EXPECT_THAT(selection.selectedElements(), IsEmpty());
        EXPECT_THAT(playback->selectionBeforePlayback(), IsEmpty());
        EXPECT_THAT(keys(back), IsEmpty());
        EXPECT_EQ(backAsSeen(), c.seen);
    }
    project->animationsManager().setSelectedAnimation(walk);
    EXPECT_EQ(backAsSeen(), "80 at 0") << "at the playhead";
}

TEST_F(PlaybackTest, AnElementThatWentMeanwhileIsPassedOver) {
    selection.selectElements({front, back});
    playback->togglePlayPause();
    front->removeFromParentElement();
    playback->togglePlayPause();
    EXPECT_THAT(selection.selectedElements(), ElementsAre(back));
    playback->togglePlayPause();  // the animation still names it
    EXPECT_THAT(keys(back), ElementsAre(u"walk_Translation.X"_s, u"walk_ZPosition"_s));
}

TEST_F(PlaybackTest, AHiddenElementStaysHidden) {
    back->setOpacity(0.5F, 0);
    back->setHidden(true);
    playback->togglePlayPause();
    frameAfter(0.5);
    EXPECT_EQ(layer(back).presented().opacity, 0);
}

TEST_F(PlaybackTest, NeedsNoLayersAndNoAnimation) {
    playback.reset();
    project->setViewLayerFactory(nullptr);
    PCProjectTimeManager bareTime(clock, log);
    Playback barePlayback(project, bareTime, selection, nullptr);
    barePlayback.togglePlayPause();
    EXPECT_TRUE(bareTime.isPlayingBack());
    project->animationsManager().setSelectedAnimation(nullptr);
    barePlayback.togglePlayPause();
    barePlayback.togglePlayPause();
    EXPECT_FALSE(bareTime.isPlayingBack());
}

}  // namespace
}  // namespace tweenery::test
