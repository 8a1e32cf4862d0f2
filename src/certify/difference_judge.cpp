#include "certify/difference_judge.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/number_text.h"
#include "codegen/preview_likeness.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

using Record = PCAnimationExportElementTimelines;

constexpr double kThreeDecimals = 0.0005;
constexpr double kOneDecimal = 0.05;
// Between two computations of the same with 64-bit numbers, one of them a little later.
constexpr double kSameNumber = 1e-5;
// Of the preview's 32-bit numbers, over a few operations.
constexpr double kSingleRounding = 5e-7;
constexpr int kMostTimesWithinReach = 64;

QString numberText(double value) {
    return QString::number(value, 'g', 7);
}

// The same transform in other words, as near to the preview's as can be.
ElementLook inWordsOf(const ElementLook& preview, const ElementLook& exported) {
    constexpr double turn = 2 * std::numbers::pi;
    const auto turned = [&](ElementLook look) {
        look.rotation += turn * std::round((preview.rotation - look.rotation) / turn);
        return look;
    };
    const auto distance = [&](const ElementLook& look) {
        return std::abs(look.scaleX - preview.scaleX) + std::abs(look.scaleY - preview.scaleY) +
               std::abs(look.rotation - preview.rotation);
    };
    ElementLook flipped = exported;
    flipped.scaleX = -flipped.scaleX;
    flipped.scaleY = -flipped.scaleY;
    flipped.rotation += turn / 2;
    const ElementLook asItIs = turned(exported);
    flipped = turned(flipped);
    return distance(flipped) < distance(asItIs) ? flipped : asItIs;
}

// What shows of a transform, as far as it differs.
bool looksTheSame(const ElementLook& a, const ElementLook& b) {
    const auto matrix = [](const ElementLook& look) {
        const double cosine = std::cos(look.rotation);
        const double sine = std::sin(look.rotation);
        return std::array{look.scaleX * cosine, look.scaleX * sine, -look.scaleY * sine,
                          look.scaleY * cosine};
    };
    const auto first = matrix(a);
    const auto second = matrix(b);
    return std::equal(first.begin(), first.end(), second.begin(),
                      [](double x, double y) { return std::abs(x - y) <= kNoticeableDifference; });
}

bool isOfPlace(const LookProperty& property) {
    return property.value == &ElementLook::x || property.value == &ElementLook::y;
}

bool isOfTransform(const LookProperty& property) {
    return property.value == &ElementLook::scaleX || property.value == &ElementLook::scaleY ||
           property.value == &ElementLook::rotation;
}

}  // namespace

// A number of an element at a time, in the preview and in the export.
struct DifferenceJudge::Sample {
    const LookProperty* property;
    int element;
    int32_t timeInMS;
    double preview;
    double exported;
    bool isSetup;

    double amount() const { return std::abs(exported - preview); }
};

const std::array<LookProperty, 6>& lookProperties() {
    static const std::array<LookProperty, 6> properties{{
        {"x", &ElementLook::x, &Record::xPosition},
        {"y", &ElementLook::y, &Record::yPosition},
        {"scale x", &ElementLook::scaleX, &Record::xScale},
        {"scale y", &ElementLook::scaleY, &Record::yScale},
        {"rotation", &ElementLook::rotation, &Record::zRotation},
        {"opacity", &ElementLook::opacity, &Record::opacity},
    }};
    return properties;
}

DifferenceJudge::DifferenceJudge(const PreviewScene& preview, const ExportPlan& plan,
                                 const PCAnimationExportBundle* bundle, CertifiedPart& part)
    : m_preview(preview), m_plan(plan), m_bundle(bundle), m_part(part) {
    std::set<std::pair<bool, QString>> names;
    for (int i = 0; i < preview.elementCount(); ++i) {
        const PlannedElement& planned = preview.planned(i);
        if (!names.emplace(planned.isLayer(), planned.name).second) {
            m_collidingNames.insert(planned.name);
        }
    }
    if (!bundle) { return; }
    for (const Record& entry : bundle->timelinesByElement) {
        m_records[preview.numberOf(*entry.element)] = &entry;
    }
}

const Record* DifferenceJudge::record(int element) const {
    const auto found = m_records.find(element);
    return found == m_records.end() ? nullptr : found->second;
}

bool DifferenceJudge::isAnimated(int element) const {
    return m_plan.target.generateForMac || element < 0 || !m_preview.planned(element).isLayer();
}

bool DifferenceJudge::nameCollides(int element) const {
    return m_collidingNames.contains(m_preview.planned(element).name);
}

const PCKeyedPropertyTimeline* DifferenceJudge::timeline(const Sample& sample) const {
    const Record* const found = sample.isSetup ? nullptr : record(sample.element);
    return found ? (found->*sample.property->timeline).get() : nullptr;
}

bool DifferenceJudge::isSame(double exported, double expected) {
    return std::abs(exported - expected) <= kSameNumber * std::max(1.0, std::abs(expected));
}

// The number of an element as its own statement has it.
double DifferenceJudge::ownNumber(const Sample& sample, bool isPrinted) const {
    const PCElement& element = m_preview.element(sample.element);
    const double own = m_preview.setupLook(sample.element).*sample.property->value;
    if (!isPrinted) { return own; }
    if (isOfPlace(*sample.property)) { return printedValue(own, 3); }
    const bool isRotation = sample.property->value == &ElementLook::rotation;
    const bool turnsAlone = element.scale() == QPointF(1, 1);
    return printedValue(static_cast<double>(static_cast<float>(own)),
                        isRotation && turnsAlone ? 3 : 2);
}

// What the export is to show when numbers are printed like that.
double DifferenceJudge::expected(const Sample& sample, PrintedAs printed) const {
    const Timeline* const keys = timeline(sample);
    if (!keys || keys->isEmpty()) { return ownNumber(sample, printed.roundsValues); }
    if (m_showsFrames) {
        return printed.roundsValues ? printedValue(sample.preview, 3) : sample.preview;
    }
    const double value = ExpectedTrack(*keys, printed).valueAt(sample.timeInMS);
    if (isOfPlace(*sample.property)) { return value + ownNumber(sample, printed.roundsValues); }
    const bool isOpacity = sample.property->value == &ElementLook::opacity;
    return isOpacity ? std::clamp(value, 0.0, 1.0) : value;
}

// How far printed key times and durations move what is shown, in milliseconds.
double DifferenceJudge::reachOfKeyTimes(const Timeline& timeline) const {
    return isExact() ? 0 : kThreeDecimals * timeline.durationInMS() * 1.001;
}

bool DifferenceJudge::turnsAt(const Timeline& timeline, int32_t timeInMS) const {
    return timeline.repeatBehavior() == PCRepeatBehaviorForever && timeline.durationInMS() > 0 &&
           timeInMS == timeline.durationInMS();
}

// Where only a part of a transform is animated, the rest comes from the matrix, which has lost what
// a scale of 0 hides and which axis is mirrored.
bool DifferenceJudge::isTransformAmbiguous(int element) const {
    const ElementLook own = m_preview.setupLook(element);
    const Record* const keys = record(element);
    if (!keys || (keys->xScale && keys->yScale && keys->zRotation)) { return false; }
    const bool hides = (own.scaleX == 0 || own.scaleY == 0) && own.rotation != 0;
    const bool isMirrored = own.scaleX * own.scaleY < 0 || own.scaleX < 0;
    return hides || isMirrored;
}

bool DifferenceJudge::isSetByFrames(const Sample& sample) const {
    if (!m_showsFrames || !isOfTransform(*sample.property)) { return false; }
    const double neutral = sample.property->value == &ElementLook::rotation ? 0 : 1;
    const double own = m_preview.setupLook(sample.element).*sample.property->value;
    return std::abs(sample.exported - neutral) <= kNoticeableDifference ||
           std::abs(sample.exported - own) <= kNoticeableDifference;
}

// An export that shows what is expected of it differs for one of the reasons that were expected;
// the one that weighs most is told.
std::optional<DifferenceCause> DifferenceJudge::expectedCause(const Sample& sample) const {
    const bool rounds = !isExact();
    const double exact = expected(sample, {});
    const double values = expected(sample, {rounds, false});
    const double all = expected(sample, {rounds, rounds});
    if (!isSame(sample.exported, all)) { return {}; }
    const double steps = std::abs(exact - sample.preview);
    const double ofValues = std::abs(values - exact);
    const double ofTimes = std::abs(all - values);
    if (ofTimes >= steps && ofTimes >= ofValues && ofTimes > 0) {
        return DifferenceCause::KeyTimes;
    }
    if (ofValues >= steps && ofValues > 0) { return DifferenceCause::PrintedNumbers; }
    const Timeline* const keys = timeline(sample);
    if (keys && turnsAt(*keys, sample.timeInMS)) { return DifferenceCause::LoopTurn; }
    if (sample.property->value == &ElementLook::opacity && keys && tweensBeyondOpacities(*keys)) {
        return DifferenceCause::Warning;
    }
    const double rounding = kSingleRounding * std::max(std::abs(sample.preview), 1.0);
    if (steps <= rounding) { return DifferenceCause::SingleNumbers; }
    return keys && steps <= rounding + stepsOf(*keys) ? std::optional(DifferenceCause::EasingSteps)
                                                      : std::nullopt;
}

std::optional<DifferenceCause> DifferenceJudge::causeOf(const Sample& sample) const {
    if (const auto cause = expectedCause(sample)) { return cause; }
    if (isSetByFrames(sample)) { return DifferenceCause::FrameTransform; }
    if (isOfTransform(*sample.property) && isTransformAmbiguous(sample.element)) {
        return DifferenceCause::Transform;
    }
    return {};
}

// How far the preview's steps can be from the curve: no easing rises more than 2.5 times as fast
// as a line, and tables round to the nearest of 1,000 steps.
double DifferenceJudge::stepsOf(const Timeline& timeline) {
    constexpr double step = 0.0015;
    double widest = 0;
    auto before = static_cast<double>(floatOfValue(timeline.setupValue()));
    for (size_t i = 0; i < timeline.keyframesCount(); ++i) {
        const auto value = static_cast<double>(timeline.floatValueOfKeyframeAtIndex(i));
        widest = std::max(widest, std::abs(value - before));
        before = value;
    }
    return widest * step;
}

void DifferenceJudge::compareNumbers(int element, int32_t timeInMS, const ElementLook& preview,
                                     ElementLook exported, bool isSetup) {
    exported = inWordsOf(preview, exported);
    const bool hasSameTransform = looksTheSame(preview, exported);
    const bool collides = nameCollides(element);
    for (const LookProperty& property : lookProperties()) {
        Sample sample{
            &property, element, timeInMS, preview.*property.value, exported.*property.value,
            isSetup};
        Difference difference{sample.amount(),
                              QString::fromLatin1(property.name),
                              m_preview.planned(element).name,
                              static_cast<double>(timeInMS),
                              numberText(sample.preview),
                              numberText(sample.exported),
                              {}};
        if (hasSameTransform && isOfTransform(property)) {
            difference.amount = std::min(difference.amount, kNoticeableDifference);
        }
        if (difference.amount > kNoticeableDifference) {
            difference.cause = causeOf(sample);
            const bool stands = !isSetup && !isAnimated(element) && record(element);
            if (!difference.cause && stands) {
                sample.isSetup = true;
                if (isSame(sample.exported, ownNumber(sample, !isExact()))) {
                    difference.cause = DifferenceCause::LayersOnMobile;
                }
            }
            if (!difference.cause && collides) { difference.cause = DifferenceCause::Warning; }
        }
        m_part.add(difference);
    }
}

std::optional<DifferenceCause> DifferenceJudge::causeOfImage(int element, int32_t timeInMS,
                                                             const QString& exported) const {
    const Record* const keys = record(element);
    if (nameCollides(element)) { return DifferenceCause::Warning; }
    if (!keys || !keys->contents) { return {}; }
    if (!isAnimated(element) && exported == m_preview.element(element).imageName()) {
        return DifferenceCause::LayersOnMobile;
    }
    const auto imageBy = [&](PrintedAs printed) {
        const int keyframe = ExpectedTrack(*keys->contents, printed).keyframeAt(timeInMS);
        return keyframe == ExpectedTrack::kStart
                   ? m_preview.element(element).imageName()
                   : stringOfValue(
                         keys->contents->storedValueOfKeyframe(static_cast<size_t>(keyframe)));
    };
    if (exported == imageBy({})) {
        return turnsAt(*keys->contents, timeInMS) ? std::optional(DifferenceCause::LoopTurn)
                                                  : std::nullopt;
    }
    if (!isExact() && exported == imageBy({true, true})) { return DifferenceCause::KeyTimes; }
    return {};
}

void DifferenceJudge::compareImage(int element, int32_t timeInMS, const QString& preview,
                                   const QString& exported, bool isSetup) {
    Difference difference{preview == exported ? 0.0 : 1.0,
                          u"image"_s,
                          m_preview.planned(element).name,
                          static_cast<double>(timeInMS),
                          preview.isEmpty() ? u"none"_s : preview,
                          exported.isEmpty() ? u"none"_s : exported,
                          {}};
    if (difference.amount > 0) {
        if (!isSetup || nameCollides(element)) {
            difference.cause = causeOfImage(element, timeInMS, exported);
        }
        if (!difference.cause && exported.isEmpty() && !m_preview.hasImage(preview)) {
            difference.cause = DifferenceCause::Warning;
        }
    }
    m_part.add(difference);
}

void DifferenceJudge::reportMissing(int element, int32_t timeInMS) {
    Difference difference{1,
                          u"presence"_s,
                          m_preview.planned(element).name,
                          static_cast<double>(timeInMS),
                          u"there"_s,
                          u"not in the view"_s,
                          {}};
    if (nameCollides(element)) { difference.cause = DifferenceCause::Warning; }
    m_part.add(difference);
}

void DifferenceJudge::compareLook(int element, int32_t timeInMS,
                                  const std::optional<ElementLook>& exported) {
    if (!exported) { return reportMissing(element, timeInMS); }
    const ElementLook preview = m_preview.look(element, timeInMS);
    compareNumbers(element, timeInMS, preview, *exported, false);
    compareImage(element, timeInMS, preview.image, exported->image, false);
}

void DifferenceJudge::compareSetupLook(int element, int32_t timeInMS,
                                       const std::optional<ElementLook>& exported) {
    if (!exported) { return reportMissing(element, timeInMS); }
    const ElementLook preview = m_preview.setupLook(element);
    compareNumbers(element, timeInMS, preview, *exported, true);
    compareImage(element, timeInMS, preview.image, exported->image, true);
}

QString DifferenceJudge::namesOf(const std::vector<int>& order) const {
    QStringList names;
    for (const int element : order) {
        const bool isKnown = element >= 0 && element < m_preview.elementCount();
        names << (isKnown ? m_preview.planned(element).name : u"?"_s);
    }
    return names.join(u", "_s);
}

void DifferenceJudge::addOrder(int parent, int32_t timeInMS, const std::vector<int>& preview,
                               const std::vector<int>& exported,
                               std::optional<DifferenceCause> cause) {
    const bool isSame = preview == exported;
    const QString name = parent < 0 ? QString() : m_preview.planned(parent).name;
    Difference difference{
        isSame ? 0.0 : 1.0, u"order"_s,        name, static_cast<double>(timeInMS),
        namesOf(preview),   namesOf(exported), {}};
    if (!isSame) { difference.cause = cause; }
    if (!isSame && !cause) {
        const bool collides = std::any_of(preview.begin(), preview.end(),
                                          [&](int element) { return nameCollides(element); });
        if (collides) { difference.cause = DifferenceCause::Warning; }
    }
    m_part.add(difference);
}

void DifferenceJudge::compareSetupOrder(int parent, int32_t timeInMS,
                                        const std::vector<int>& exported) {
    addOrder(parent, timeInMS, m_preview.setupOrder(parent), exported, {});
}

// An order that ends before its animation is held by the fill mode alone.
void DifferenceJudge::compareOrder(int parent, int32_t timeInMS, const std::vector<int>& exported,
                                   bool isFilled) {
    const std::vector<int> preview = m_preview.order(parent, timeInMS);
    if (preview == exported) { return addOrder(parent, timeInMS, preview, exported, {}); }
    const PCElement& owner =
        parent < 0 ? *m_plan.elements.front().element : m_preview.element(parent);
    const auto keys =
        std::find_if(m_bundle->timelinesByElement.begin(), m_bundle->timelinesByElement.end(),
                     [&](const Record& entry) { return entry.element.get() == &owner; });
    std::optional<DifferenceCause> cause;
    if (keys != m_bundle->timelinesByElement.end() && keys->zPosition) {
        cause = causeOfOrder(parent, timeInMS, *keys->zPosition, exported, isFilled);
    }
    addOrder(parent, timeInMS, preview, exported, cause);
}

std::optional<DifferenceCause> DifferenceJudge::causeOfOrder(int parent, int32_t timeInMS,
                                                             const Timeline& keys,
                                                             const std::vector<int>& exported,
                                                             bool isFilled) const {
    const std::vector<int> own = m_preview.setupOrder(parent);
    const bool endsEarly = keys.repeatBehavior() == PCRepeatBehaviorNever &&
                           keys.durationInMS() < m_bundle->durationInMS;
    if (!isFilled && endsEarly && timeInMS >= keys.durationInMS() && exported == own) {
        return DifferenceCause::Warning;
    }
    if (turnsAt(keys, timeInMS) && exported == m_preview.order(parent, 2 * timeInMS)) {
        return DifferenceCause::LoopTurn;
    }
    const int reach = static_cast<int>(std::ceil(reachOfKeyTimes(keys)));
    const int step = std::max(1, reach / kMostTimesWithinReach);
    for (int shift = -reach; shift <= reach; shift += step) {
        const int32_t time = std::max(0, timeInMS + shift);
        if (m_preview.order(parent, time) == exported) { return DifferenceCause::KeyTimes; }
        if (!m_plan.target.generateForMac &&
            m_preview.orderOfViewsAlone(parent, time) == exported) {
            return DifferenceCause::LayersOnMobile;
        }
    }
    return {};
}

void DifferenceJudge::comparePlace(int element, const std::optional<ElementPlace>& exported) {
    if (!exported) { return reportMissing(element, 0); }
    const PlannedElement& planned = m_preview.planned(element);
    const int parent = static_cast<int>(planned.parent) - 1;
    const auto nameOfParent = [&](int number) {
        return number == ElementPlace::kElsewhere ? u"nowhere"_s
               : number < 0                       ? u"the scene"_s
                                                  : m_preview.planned(number).name;
    };
    Difference place{
        parent == exported->parent ? 0.0 : 1.0, u"parent"_s, planned.name, 0, nameOfParent(parent),
        nameOfParent(exported->parent),         {}};
    if (nameCollides(element)) { place.cause = DifferenceCause::Warning; }
    m_part.add(place);

    const auto compare = [&](const char* property, double preview, double found, double printed) {
        Difference difference{std::abs(preview - found),
                              QString::fromLatin1(property),
                              planned.name,
                              0,
                              numberText(preview),
                              numberText(found),
                              {}};
        if (!isExact() && difference.amount <= printed * 1.001) {
            difference.cause = DifferenceCause::PrintedNumbers;
        }
        if (nameCollides(element)) { difference.cause = DifferenceCause::Warning; }
        m_part.add(difference);
    };
    const PCElement& own = *planned.element;
    compare("anchor point x", own.anchorPoint().x(), exported->anchorX, kThreeDecimals);
    compare("anchor point y", own.anchorPoint().y(), exported->anchorY, kThreeDecimals);
    compare("width", own.size().width(), exported->width, kOneDecimal);
    compare("height", own.size().height(), exported->height, kOneDecimal);
}

void DifferenceJudge::compareScene(const QString& property, double preview, double exported,
                                   double printed) {
    Difference difference{std::abs(preview - exported), property, {}, 0, numberText(preview),
                          numberText(exported),         {}};
    if (!isExact() && difference.amount <= printed) {
        difference.cause = DifferenceCause::PrintedNumbers;
    }
    m_part.add(difference);
}

void DifferenceJudge::compareFact(const QString& property, int32_t timeInMS, double preview,
                                  double exported) {
    m_part.add({std::abs(preview - exported),
                property,
                {},
                static_cast<double>(timeInMS),
                numberText(preview),
                numberText(exported),
                {}});
}

}  // namespace tweenery
