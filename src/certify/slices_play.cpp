#include "certify/slices_play.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

// Of a long table some are looked at, the first and the last among them.
constexpr int kMostFrames = 240;
constexpr int kMostPlayed = 16;

}  // namespace

QString SlicesPlay::selector(const char* before, const char* after) const {
    return QString::fromLatin1(before) + QString::fromStdString(m_bundle.baseMethodName) +
           QString::fromLatin1(after);
}

void SlicesPlay::call(PlayerScript& script, const QString& selector,
                      const QByteArrayList& arguments) {
    m_calls.emplace_back(script.call(selector, arguments), selector);
}

void SlicesPlay::makeView(PlayerScript& script) {
    script.makeView(m_plan.generatedClassName);
    call(script, selector("apply", "State"));
}

// As the table was sampled: in 32-bit steps, to the nearest millisecond.
int32_t SlicesPlay::timeOfFrame(int frame) const {
    const float step = static_cast<float>(m_bundle.durationInMS) /
                       static_cast<float>(m_bundle.numberOfFrameSlices);
    const float time = static_cast<float>(frame) * step;
    return cutToInt32(static_cast<double>(time) + 0.5);
}

void SlicesPlay::lookAtAll(PlayerScript& script, double seconds, int frame) {
    for (const PCAnimationExportElementTimelines& record : m_bundle.timelinesByElement) {
        const int element = m_preview.numberOf(*record.element);
        if (element < 0) { continue; }
        m_looks.push_back({script.look(seconds, element), element, timeOfFrame(frame)});
    }
}

void SlicesPlay::writePlayback(PlayerScript& script) {
    makeView(script);
    const int frames = m_bundle.numberOfFrameSlices;
    const int played = std::min(frames, kMostPlayed);
    QByteArrayList shares;
    QByteArrayList times;
    // Backward, half a second apart; the time of the last one is the whole duration.
    std::vector<int> order;
    for (int i = 0; i < played; ++i) {
        order.push_back((played - 1 - i) * frames / played);
        shares << QByteArray::number(static_cast<double>(order.back()) / frames, 'g', 9);
        times << QByteArray::number(i * 0.5);
    }
    if (played < 2) { return; }
    call(script, selector("animate", "ForPlaybackFromPercentValues:andTimes:"),
         {'a' + shares.join(','), 'a' + times.join(',')});
    for (int i = 0; i < played; ++i) {
        // Key times are 32-bit quotients there; the clock stands where the frame is sure to show.
        lookAtAll(script, i * 0.5, order[static_cast<size_t>(i)]);
    }
}

void SlicesPlay::write(PlayerScript& script) {
    makeView(script);
    const int frames = m_bundle.numberOfFrameSlices;
    const int step = std::max(1, frames / kMostFrames);
    for (int frame = 0; frame < frames; frame += step) {
        call(script, selector("apply", "Frame:"), {'i' + QByteArray::number(frame)});
        lookAtAll(script, 0, frame);
    }
    for (const double share : {0.0, 0.3, 0.5, 0.95, 1.0}) {
        const auto single = static_cast<float>(share);
        const int frame =
            static_cast<int>(static_cast<double>(single * static_cast<float>(frames)) + 0.5) %
            frames;
        call(script, selector("apply", "Percent:"), {'f' + QByteArray::number(share)});
        lookAtAll(script, 0, frame);
    }
    writePlayback(script);
}

void SlicesPlay::judge(const PlayerAnswers& answers, CertifiedPart& part) const {
    for (const auto& [line, selector] : m_calls) {
        const QString reason = answers.whyStopped(line);
        if (reason.isEmpty()) { continue; }
        part.add({1, u"running "_s + selector, {}, 0, u"goes on"_s, u"stops: "_s + reason, {}});
        return;
    }
    DifferenceJudge judge(m_preview, m_plan, &m_bundle, part);
    judge.setShowsFrames();
    for (const Look& look : m_looks) {
        judge.compareLook(look.element, look.timeInMS, answers.look(look.line));
    }
}

}  // namespace tweenery
