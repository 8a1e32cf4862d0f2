#include "certify/animation_play.h"

#include <algorithm>

#include "codegen/preview_likeness.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

// An animation without a duration takes as long as a transaction.
constexpr double kShortestPlay = 0.25;
constexpr double kAfterwards = 0.001;
constexpr double kBegin = 0.5;
constexpr int32_t kLongAfterEnd = 1000;
constexpr int32_t kShortest = 10;
// More than these are thinned out.
constexpr size_t kMostTimes = 4000;

using Record = PCAnimationExportElementTimelines;

class Times {
 public:
    void add(int64_t time) {
        if (time >= 0 && time <= INT32_MAX) { m_times.push_back(static_cast<int32_t>(time)); }
    }
    void addAround(int64_t time) {
        add(time - 1);
        add(time);
        add(time + 1);
    }
    void addBetween(int64_t from, int64_t to) {
        for (const int quarter : {1, 2, 3}) {
            add(from + (to - from) * quarter / 4);
        }
    }
    std::vector<int32_t> take() {
        std::sort(m_times.begin(), m_times.end());
        m_times.erase(std::unique(m_times.begin(), m_times.end()), m_times.end());
        const size_t step = m_times.size() / kMostTimes + 1;
        if (step == 1) { return std::move(m_times); }
        std::vector<int32_t> some;
        for (size_t i = 0; i < m_times.size(); i += step) {
            some.push_back(m_times[i]);
        }
        return some;
    }

 private:
    std::vector<int32_t> m_times;
};

void addTimesOf(const PCKeyedPropertyTimeline& timeline, int32_t end, Times& times) {
    int64_t before = 0;
    for (size_t i = 0; i < timeline.keyframesCount(); ++i) {
        const int64_t time = timeline.timeOfKeyframe(i);
        times.addBetween(before, time);
        times.addAround(time);
        before = time;
    }
    times.addAround(end);
    times.add(int64_t{end} + kLongAfterEnd);
    if (timeline.repeatBehavior() == PCRepeatBehaviorNever) { return; }
    // The second pass, which may run backward, and a later one.
    const int64_t pass = timeline.durationInMS();
    before = 0;
    for (size_t i = 0; i < timeline.keyframesCount(); ++i) {
        const int64_t time = timeline.timeOfKeyframe(i);
        times.addBetween(pass + before, pass + time);
        times.addBetween(2 * pass - time, 2 * pass - before);
        before = time;
    }
    for (const int64_t turn : {pass, 2 * pass, 3 * pass}) {
        times.addAround(turn);
    }
    times.add(10 * pass + pass / 3);
}

}  // namespace

std::vector<int32_t> timesToLookAt(const PCKeyedPropertyTimeline& timeline, int32_t end) {
    Times times;
    addTimesOf(timeline, end, times);
    return times.take();
}

AnimationPlay::AnimationPlay(const PreviewScene& preview, const ExportPlan& plan,
                             const PCAnimationExportBundle& bundle)
    : m_preview(preview),
      m_plan(plan),
      m_bundle(bundle),
      m_stem(QString::fromStdString(methodStem(bundle.baseMethodName))) {}

// The tag "speed" changes how fast time runs, not what the preview shows.
double AnimationPlay::secondsAt(double timeInMS) const {
    const double scalar = m_bundle.timeScalar > 0 ? static_cast<double>(m_bundle.timeScalar) : 1;
    return (timeInMS + kBehindInMS) / 1000 / scalar;
}

// Completion is reported after the unscaled duration.
double AnimationPlay::secondsAfterEnd() const {
    return std::max({secondsAt(duration()), duration() / 1000.0, kShortestPlay}) + kAfterwards;
}

int32_t AnimationPlay::someTimeWithin() const {
    return static_cast<int32_t>(int64_t{duration()} * 2 / 5);
}

// A slow one goes on when completion has long been reported.
int32_t AnimationPlay::someTimeBeforeCompletion() const {
    const double scalar = m_bundle.timeScalar > 0 ? static_cast<double>(m_bundle.timeScalar) : 1;
    return std::min(someTimeWithin(), static_cast<int32_t>(duration() * scalar * 0.8));
}

void AnimationPlay::call(PlayerScript& script, const QString& selector,
                         const QByteArrayList& arguments) {
    m_calls.push_back({script.call(selector, arguments), selector});
}

void AnimationPlay::callMain(PlayerScript& script, double beginTime, const char* fillMode) {
    QByteArrayList arguments{'d' + QByteArray::number(beginTime), fillMode, "b0"};
    QString selector = u"add%1WithBeginTime:andFillMode:andRemoveOnCompletion:"_s.arg(m_stem);
    if (canComplete()) {
        selector += u"completion:"_s;
        arguments << "n";
    }
    call(script, selector, arguments);
}

void AnimationPlay::callAdd(PlayerScript& script, bool removesOnCompletion) {
    if (removesOnCompletion) {
        QByteArrayList arguments{"b1"};
        if (canComplete()) { arguments << "c"; }
        call(script,
             u"add%1AndRemoveOnCompletion:%2"_s.arg(m_stem,
                                                    canComplete() ? u"completion:"_s : QString()),
             arguments);
    } else if (canComplete()) {
        call(script, u"add%1WithCompletion:"_s.arg(m_stem), {"c"});
    } else {
        call(script, u"add%1"_s.arg(m_stem));
    }
}

void AnimationPlay::expect(PlayerScript& script, double seconds, int32_t timeInMS, int completions,
                           int finished) {
    const Line line = script.clock(seconds);
    m_facts.push_back({line, Fact::Kind::Completions, timeInMS, completions});
    m_facts.push_back({line, Fact::Kind::Finished, timeInMS, finished});
}

void AnimationPlay::expectAnimations(PlayerScript& script, int32_t timeInMS, int count) {
    m_facts.push_back({script.animations(), Fact::Kind::Animations, timeInMS, count});
}

// Of those that reach a layer; a change of order is one for each child.
int AnimationPlay::keyframeAnimationCount() const {
    const auto isReached = [&](const PCElement& element) {
        const int number = m_preview.numberOf(element);
        return number >= 0 &&
               (m_plan.target.generateForMac || !m_preview.planned(number).isLayer());
    };
    int count = 0;
    for (const Record& record : m_bundle.timelinesByElement) {
        const auto own = static_cast<int>(record.allNonNilTimelines().size());
        if (isReached(*record.element)) { count += own - (record.zPosition ? 1 : 0); }
        if (!record.zPosition) { continue; }
        for (const PCElement::Ptr& child : record.element->children()) {
            if (isReached(*child)) { ++count; }
        }
    }
    return count;
}

void AnimationPlay::lookAtAll(PlayerScript& script, double seconds, int32_t timeInMS, Shows shows) {
    for (const Record& record : m_bundle.timelinesByElement) {
        const int element = m_preview.numberOf(*record.element);
        if (element >= 0) {
            m_looks.push_back({script.look(seconds, element), element, timeInMS, shows});
        }
        if (record.zPosition) {
            m_orders.push_back({script.order(seconds, element), element, timeInMS, shows});
        }
    }
}

void AnimationPlay::writeValues(PlayerScript& script) {
    call(script, u"add%1"_s.arg(m_stem));
    const auto look = [&](int element, int32_t time) {
        m_looks.push_back({script.look(secondsAt(time), element), element, time, Shows::Animation});
    };
    std::vector<bool> isKeyed(static_cast<size_t>(m_preview.elementCount()));
    for (const Record& record : m_bundle.timelinesByElement) {
        const int element = m_preview.numberOf(*record.element);
        Times times;
        for (const auto* timeline : record.allNonNilTimelines()) {
            if (timeline->propertyType() != PCPropertyTypeChildrenZPositions) {
                addTimesOf(*timeline, duration(), times);
            }
        }
        if (element >= 0) {
            isKeyed[static_cast<size_t>(element)] = true;
            for (const int32_t time : times.take()) {
                look(element, time);
            }
        }
        if (!record.zPosition) { continue; }
        for (const int32_t time : timesToLookAt(*record.zPosition, duration())) {
            m_orders.push_back(
                {script.order(secondsAt(time), element), element, time, Shows::Animation});
        }
    }
    // All others stand still.
    for (int element = 0; element < m_preview.elementCount(); ++element) {
        if (isKeyed[static_cast<size_t>(element)]) { continue; }
        look(element, someTimeWithin());
        look(element, duration());
    }
}

void AnimationPlay::writeBeginTimes(PlayerScript& script) {
    script.makeView(m_plan.generatedClassName);
    callMain(script, kBegin, "sboth");
    lookAtAll(script, kBegin / 2, 0, Shows::Animation);
    lookAtAll(script, kBegin + secondsAt(someTimeWithin()), someTimeWithin(), Shows::Animation);
    if (canComplete()) {
        lookAtAll(script, kBegin + secondsAfterEnd(), duration(), Shows::Animation);
    }
    script.makeView(m_plan.generatedClassName);
    callMain(script, kBegin, "sremoved");
    lookAtAll(script, kBegin / 2, 0, Shows::Setup);
    lookAtAll(script, kBegin + secondsAt(someTimeWithin()), someTimeWithin(),
              Shows::AnimationUnfilled);
    if (canComplete()) { lookAtAll(script, kBegin + secondsAfterEnd(), duration(), Shows::Setup); }
}

void AnimationPlay::writeCompletion(PlayerScript& script) {
    for (const bool removes : {true, false}) {
        script.makeView(m_plan.generatedClassName);
        callAdd(script, removes);
        if (duration() > kShortest) {
            const int32_t time = someTimeBeforeCompletion();
            expect(script, secondsAt(time), time, 0, 0);
            lookAtAll(script, secondsAt(time), time,
                      removes ? Shows::AnimationUnfilled : Shows::Animation);
            expect(script, (duration() - 1) / 1000.0, duration() - 1, 0, 0);
        }
        expect(script, secondsAfterEnd(), duration(), 1, 1);
        lookAtAll(script, secondsAfterEnd(), duration(), removes ? Shows::Setup : Shows::Animation);
        expectAnimations(script, duration(), removes ? 0 : keyframeAnimationCount());
    }
}

void AnimationPlay::writeLoopOn(PlayerScript& script) {
    script.makeView(m_plan.generatedClassName);
    callAdd(script, true);
    int32_t longest = 0;
    for (const Record& record : m_bundle.timelinesByElement) {
        longest = std::max(longest, record.maxDurationInMS());
    }
    if (longest > INT32_MAX / 8) { return; }
    const int32_t later = 5 * longest + longest / 3;
    expect(script, secondsAt(later), later, 0, 0);
    for (const Record& record : m_bundle.timelinesByElement) {
        const int element = m_preview.numberOf(*record.element);
        const auto keys = record.allNonNilTimelines();
        const bool allLoop = std::all_of(keys.begin(), keys.end(), [](const auto* timeline) {
            return timeline->repeatBehavior() != PCRepeatBehaviorNever;
        });
        if (element < 0 || !allLoop || record.zPosition) { continue; }
        m_looks.push_back(
            {script.look(secondsAt(later), element), element, later, Shows::Animation});
    }
}

void AnimationPlay::writeRemoval(PlayerScript& script) {
    for (const QString& selector : {u"remove%1"_s.arg(m_stem), u"removeAllAnimations"_s}) {
        script.makeView(m_plan.generatedClassName);
        callAdd(script, false);
        expect(script, 0, 0, 0, 0);
        call(script, selector);
        expectAnimations(script, 0, 0);
        lookAtAll(script, secondsAt(someTimeWithin()), someTimeWithin(), Shows::Setup);
        // Told, but not as finished.
        expect(script, secondsAfterEnd(), duration(), canComplete() ? 1 : 0, 0);
    }
}

void AnimationPlay::write(PlayerScript& script) {
    script.makeView(m_plan.generatedClassName);
    writeValues(script);
    writeBeginTimes(script);
    if (canComplete()) {
        writeCompletion(script);
    } else {
        writeLoopOn(script);
    }
    writeRemoval(script);
}

// Where generated code stops for want of an image, as the export warns.
bool AnimationPlay::warnsOfImages() const {
    for (const Record& record : m_bundle.timelinesByElement) {
        if (!record.contents) { continue; }
        for (const QString& name : imagesShown(*record.contents)) {
            const bool isFound = m_plan.target.generateForMac || name.endsWith(u".png");
            if (name.isEmpty() || !isFound || !m_preview.hasImage(name)) { return true; }
        }
    }
    return false;
}

bool AnimationPlay::hasStopped(const PlayerAnswers& answers, CertifiedPart& part) const {
    for (const Call& call : m_calls) {
        const QString reason = answers.whyStopped(call.line);
        if (reason.isEmpty()) { continue; }
        Difference difference{
            1, u"running "_s + call.selector, {}, 0, u"goes on"_s, u"stops: "_s + reason, {}};
        if (warnsOfImages()) { difference.cause = DifferenceCause::Warning; }
        part.isCompared = false;
        part.add(difference);
        part.remarks << u"%1 stops (%2)%3"_s.arg(
            call.selector, reason,
            difference.cause ? u", as the export warns; the animation is not compared"_s
                             : QString());
        return true;
    }
    return false;
}

void AnimationPlay::judgeFact(const Fact& fact, const PlayerAnswers& answers,
                              DifferenceJudge& judge) const {
    switch (fact.kind) {
        case Fact::Kind::Completions:
            judge.compareFact(u"calls of the completion block"_s, fact.timeInMS, fact.expected,
                              answers.completions(fact.line).first);
            break;
        case Fact::Kind::Finished:
            judge.compareFact(u"completions that finished"_s, fact.timeInMS, fact.expected,
                              answers.completions(fact.line).second);
            break;
        case Fact::Kind::Animations:
            judge.compareFact(u"animations left"_s, fact.timeInMS, fact.expected,
                              answers.animations(fact.line));
            break;
    }
}

void AnimationPlay::judge(const PlayerAnswers& answers, CertifiedPart& part) const {
    if (hasStopped(answers, part)) { return; }
    DifferenceJudge judge(m_preview, m_plan, &m_bundle, part);
    for (const Look& look : m_looks) {
        const auto exported = answers.look(look.line);
        if (look.shows == Shows::Setup) {
            judge.compareSetupLook(look.element, look.timeInMS, exported);
        } else {
            judge.compareLook(look.element, look.timeInMS, exported);
        }
    }
    for (const Look& look : m_orders) {
        const std::vector<int> exported = answers.order(look.line);
        if (look.shows == Shows::Setup) {
            judge.compareSetupOrder(look.element, look.timeInMS, exported);
        } else {
            judge.compareOrder(look.element, look.timeInMS, exported,
                               look.shows == Shows::Animation);
        }
    }
    for (const Fact& fact : m_facts) {
        judgeFact(fact, answers, judge);
    }
}

}  // namespace tweenery
