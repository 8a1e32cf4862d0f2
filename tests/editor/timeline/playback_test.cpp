#include "editor/timeline/playback.h"

#include <gmock/gmock.h>

#include "editor/editor_scene.h"
#include "editor/timeline/timeline_outline.h"
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
    PCKeyframeManager keyframes{project};
    TimelineOutline outline{*project, selection, keyframes};
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
        playback.emplace(project, time, selection, outline, layers);
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

// How far it plays: where it starts, for how long, and where the playhead is then.
TEST_F(PlaybackTest, LoopsARangeOrKeepsToTheLastKeyframe) {
    using enum PCPlaybackEnd;
    struct RunCase {
        const char* what;
        std::optional<LoopRange> range;
        PCPlaybackEnd end;
        int32_t start;
        int32_t milliseconds;
        int32_t expected;
        bool stillPlays = true;
    };
    for (const RunCase& c : {
             RunCase{"on and on", {}, PlayOn, 900, 5000, 5900},
             {"to the last keyframe, and stays there", {}, Stop, 900, 5000, 1000, false},
             {"from 0 when it is there already", {}, Stop, 1000, 300, 300},
             {"over and over", {}, Loop, 900, 1300, 200},
             {"a range before all else", LoopRange{200, 500}, Stop, 250, 1000, 350},
             {"up to, but without, its end", LoopRange{200, 500}, PlayOn, 200, 600, 200},
             {"from its start when it stands before", LoopRange{200, 500}, PlayOn, 0, 100, 300},
             {"or behind", LoopRange{200, 500}, PlayOn, 500, 100, 300},
             {"a range beyond the last keyframe", LoopRange{3000, 4000}, Loop, 0, 1500, 3500},
             {"a range that is off", LoopRange{200, 500, false}, PlayOn, 300, 1000, 1300},
         }) {
        SCOPED_TRACE(c.what);
        PCAppPreferences::setPlaybackEnd(c.end);
        playback->clearLoopRange();
        if (c.range) {
            playback->setLoopRange(c.range->startInMS, c.range->endInMS);
            playback->setLoopRangeIsOn(c.range->isOn);
        }
        time.setPlayheadPositionInMS(c.start);
        playback->togglePlayPause();
        for (int i = 0; i < 10; ++i) {
            frameAfter((c.milliseconds + 1e-3) / 10'000);
        }
        EXPECT_EQ(time.playheadPositionInMS(), c.expected);
        EXPECT_EQ(time.isPlayingBack(), c.stillPlays);
        if (!c.stillPlays) { continue; }
        playback->togglePlayPause();
        EXPECT_EQ(time.playheadPositionInMS(), c.start);
    }
    PCAppPreferences::setPlaybackEnd(PlayOn);
}

TEST_F(PlaybackTest, TheRangeIsSetAtThePlayheadAndBelongsToItsAnimation) {
    int told = 0;
    const auto subscription = playback->addLoopRangeHandler([&told] { ++told; });
    playback->setLoopEnd(0);
    EXPECT_FALSE(playback->loopRange());
    playback->setLoopRangeIsOn(true);
    EXPECT_EQ(playback->loopRange(), (LoopRange{0, 1000}));
    playback->setLoopStart(300);
    EXPECT_EQ(playback->loopRange(), (LoopRange{300, 1000}));
    playback->setLoopEnd(700);
    EXPECT_EQ(playback->loopRange(), (LoopRange{300, 700}));
    playback->setLoopEnd(300);
    EXPECT_EQ(playback->loopRange(), (LoopRange{0, 300}));
    playback->setLoopStart(400);
    EXPECT_EQ(playback->loopRange(), (LoopRange{400, 1000}));
    playback->setLoopStart(5000);
    EXPECT_EQ(playback->loopRange(), (LoopRange{5000, 6000}));
    EXPECT_EQ(told, 6);
    selectNewAnimation(*project, u"run"_s);
    EXPECT_FALSE(playback->loopRange());
    project->animationsManager().setSelectedAnimation(walk);
    EXPECT_EQ(playback->loopRange(), (LoopRange{5000, 6000}));
    project->animationsManager().setSelectedAnimation(nullptr);
    playback->setLoopRangeIsOn(true);
    EXPECT_FALSE(playback->loopRange());
}

// To a thousandth of what changes, also after the range has changed, after pauses, skims and edits
// in between.
TEST_F(PlaybackTest, ShowsTheValuesOfTheTimeShownWhileItLoops) {
    back->timeline(PCPropertyTypeTranslationX)
        ->setRepeatBehavior(PCRepeatBehaviorForeverAutoreverse);
    back->setZRotation(2, 777);
    const auto expectShown = [this] {
        const int32_t shown = time.playheadPositionInMS();
        const LayerValues& seen = layer(back).presented();
        const QPointF moved = seen.position + seen.transform.translation - back->position();
        EXPECT_NEAR(moved.x(), back->translationAtTimeInMS(shown).x(), 1e-3 * 100) << shown;
        EXPECT_NEAR(seen.transform.rotation, back->zRotationAtTimeInMS(shown), 1e-3 * 2) << shown;
    };
    const auto play = [&](int frames) {
        for (int i = 0; i < frames; ++i) {
            frameAfter(0.0171);
            expectShown();
        }
    };
    playback->setLoopRange(300, 1700);
    playback->togglePlayPause();
    play(200);
    const int32_t before = time.playheadPositionInMS();
    playback->clearLoopRange();
    frameAfter(0.001);
    EXPECT_LE(std::abs(time.playheadPositionInMS() - before), 2) << "goes on from where it is";
    playback->setLoopRange(100, 160);
    play(50);
    EXPECT_LT(time.playheadPositionInMS(), 160);
    playback->stopHere();
    expectShown();
    time.setSkimPositionInMS(1234);
    back->setXTranslation(40, 500);
    playback->togglePlayPause();
    play(50);
    playback->togglePlayPause();
    expectShown();
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
    Playback barePlayback(project, bareTime, selection, outline, nullptr);
    barePlayback.togglePlayPause();
    EXPECT_TRUE(bareTime.isPlayingBack());
    project->animationsManager().setSelectedAnimation(nullptr);
    barePlayback.togglePlayPause();
    barePlayback.togglePlayPause();
    EXPECT_FALSE(bareTime.isPlayingBack());
}

}  // namespace
}  // namespace tweenery::test
