#pragma once

#include <vector>

#include "certify/difference_judge.h"
#include "certify/player_script.h"

namespace tweenery {

/// One frame-sliced animation, played: its state and frames, by number and by share, and the
/// playback of some of them.
class SlicesPlay {
 public:
    /// What is not owned outlives it.
    SlicesPlay(const PreviewScene& preview, const ExportPlan& plan,
               const PCAnimationExportBundle& bundle)
        : m_preview(preview), m_plan(plan), m_bundle(bundle) {}

    void write(PlayerScript& script);
    /// After the script has been played, with the animation selected in the preview.
    void judge(const PlayerAnswers& answers, CertifiedPart& part) const;

 private:
    using Line = PlayerScript::Line;
    struct Look {
        Line line;
        int element;
        int32_t timeInMS;
    };

    const PreviewScene& m_preview;
    const ExportPlan& m_plan;
    const PCAnimationExportBundle& m_bundle;
    std::vector<std::pair<Line, QString>> m_calls;
    std::vector<Look> m_looks;

    QString selector(const char* before, const char* after) const;
    void call(PlayerScript& script, const QString& selector, const QByteArrayList& arguments = {});
    void makeView(PlayerScript& script);
    int32_t timeOfFrame(int frame) const;
    void lookAtAll(PlayerScript& script, double seconds, int frame);
    void writePlayback(PlayerScript& script);
};

}  // namespace tweenery
