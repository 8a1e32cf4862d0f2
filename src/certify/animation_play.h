#pragma once

#include <vector>

#include "certify/difference_judge.h"
#include "certify/player_script.h"

namespace tweenery {

/// One standard animation, played: its values at all times that matter, its begin time and fill
/// mode, its removal by itself and by hand, and its completion block.
class AnimationPlay {
 public:
    /// What is not owned outlives it.
    AnimationPlay(const PreviewScene& preview, const ExportPlan& plan,
                  const PCAnimationExportBundle& bundle);

    void write(PlayerScript& script);
    /// After the script has been played, with the animation selected in the preview.
    void judge(const PlayerAnswers& answers, CertifiedPart& part) const;

 private:
    using Line = PlayerScript::Line;
    enum class Shows { Animation, AnimationUnfilled, Setup };
    struct Look {
        Line line;
        int element;  // or the parent whose order it is
        int32_t timeInMS;
        Shows shows;
    };
    struct Fact {
        enum class Kind { Completions, Finished, Animations };
        Line line;
        Kind kind;
        int32_t timeInMS;
        int expected;
    };
    struct Call {
        Line line;
        QString selector;
    };

    const PreviewScene& m_preview;
    const ExportPlan& m_plan;
    const PCAnimationExportBundle& m_bundle;
    const QString m_stem;
    std::vector<Call> m_calls;
    std::vector<Look> m_looks;
    std::vector<Look> m_orders;
    std::vector<Fact> m_facts;

    bool canComplete() const { return !m_bundle.hasLooping; }
    int32_t duration() const { return m_bundle.durationInMS; }
    double secondsAt(double timeInMS) const;
    double secondsAfterEnd() const;
    int32_t someTimeWithin() const;
    int32_t someTimeBeforeCompletion() const;
    int keyframeAnimationCount() const;

    void call(PlayerScript& script, const QString& selector, const QByteArrayList& arguments = {});
    void callMain(PlayerScript& script, double beginTime, const char* fillMode);
    void callAdd(PlayerScript& script, bool removesOnCompletion);
    void expect(PlayerScript& script, double seconds, int32_t timeInMS, int completions,
                int finished);
    void expectAnimations(PlayerScript& script, int32_t timeInMS, int count);
    void lookAtAll(PlayerScript& script, double seconds, int32_t timeInMS, Shows shows);
    void writeValues(PlayerScript& script);
    void writeBeginTimes(PlayerScript& script);
    void writeCompletion(PlayerScript& script);
    void writeLoopOn(PlayerScript& script);
    void writeRemoval(PlayerScript& script);
    void judgeFact(const Fact& fact, const PlayerAnswers& answers, DifferenceJudge& judge) const;
    bool hasStopped(const PlayerAnswers& answers, CertifiedPart& part) const;
    bool warnsOfImages() const;
};

/// The times at which a timeline is looked at: around its keyframes, between them, where its loop
/// turns, and past its end. Sorted, each once.
std::vector<int32_t> timesToLookAt(const PCKeyedPropertyTimeline& timeline, int32_t end);

}  // namespace tweenery
