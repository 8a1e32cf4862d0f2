#include "certify/certificate.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

struct CauseWords {
    const char* name;
    const char* sentence;
};
const CauseWords kCauseWords[] = {
    {"single-numbers", "the preview computes with 32-bit numbers"},
    {"printed-numbers", "numbers are printed with few decimals"},
    {"key-times", "key times are printed with three decimals"},
    {"easing-steps", "the preview's easing has steps of a thousandth"},
    {"loop-turn", "a loop shows its end and its beginning at one moment"},
    {"transform", "the platform takes mirrored and vanished transforms apart in its own way"},
    {"frame-transform", "a frame sets the whole transform, also what the state has set of it"},
    {"layers-on-mobile", "layers are not animated on the mobile platform"},
    {"warning", "the export warns of it"},
};

const CauseWords& wordsOf(DifferenceCause cause) {
    return kCauseWords[static_cast<size_t>(cause)];
}

QString amountText(double amount) {
    return QString::number(amount, 'g', 3);
}

bool isLarger(const Difference& difference, const std::optional<Difference>& other) {
    return !other || difference.amount > other->amount;
}

}  // namespace

QString nameOf(DifferenceCause cause) {
    return QString::fromLatin1(wordsOf(cause).name);
}

QString sentenceOf(DifferenceCause cause) {
    return QString::fromLatin1(wordsOf(cause).sentence);
}

QString nameOf(CertifiedPart::Kind kind) {
    static const char* const names[] = {"scene", "animation", "frame-slices", "left-out", "swift"};
    return QString::fromLatin1(names[static_cast<size_t>(kind)]);
}

void CertifiedPart::add(const Difference& difference) {
    ++comparisons;
    if (isLarger(difference, largest)) { largest = difference; }
    if (difference.amount <= kNoticeableDifference) { return; }
    if (difference.cause) {
        Explained& entry = explained[*difference.cause];
        if (++entry.count == 1 || difference.amount > entry.largest.amount) {
            entry.largest = difference;
        }
    } else if (++unexplainedCount <= static_cast<int64_t>(kMostListed)) {
        unexplained.push_back(difference);
    }
}

bool Certificate::holds() const {
    return obstacle.isEmpty() &&
           std::all_of(parts.begin(), parts.end(), [](const auto& part) { return part.holds(); });
}

int64_t Certificate::comparisons() const {
    int64_t sum = 0;
    for (const CertifiedPart& part : parts) {
        sum += part.comparisons;
    }
    return sum;
}

std::optional<Difference> Certificate::largest() const {
    std::optional<Difference> found;
    for (const CertifiedPart& part : parts) {
        if (part.largest && isLarger(*part.largest, found)) { found = part.largest; }
    }
    return found;
}

QString Certificate::summary() const {
    if (!obstacle.isEmpty()) { return u"not certified: "_s + obstacle.section(u'\n', 0, 0); }
    int64_t failures = 0;
    for (const CertifiedPart& part : parts) {
        failures += part.unexplainedCount;
    }
    if (failures > 0) {
        return u"not certified: %1 of %2 comparisons differ without a cause"_s.arg(failures).arg(
            comparisons());
    }
    QString text = u"certified: %1 comparisons, "_s.arg(comparisons());
    const auto most = largest();
    if (!most || most->amount <= kNoticeableDifference) {
        text += u"no difference above %1"_s.arg(kNoticeableDifference);
    } else {
        text += u"largest difference "_s + textOf(*most);
        if (most->cause) { text += u", since "_s + sentenceOf(*most->cause); }
    }
    const auto uncompared = std::count_if(parts.begin(), parts.end(),
                                          [](const auto& part) { return !part.isCompared; });
    if (uncompared > 0) {
        text += u"; not compared, as the export warns: %1 of the animations"_s.arg(uncompared);
    }
    return text;
}

QString textOf(const Difference& difference) {
    QString text = difference.property;
    if (!difference.element.isEmpty()) { text += u" of '%1'"_s.arg(difference.element); }
    text += u" at %1 ms"_s.arg(QString::number(difference.timeInMS, 'g', 9));
    if (difference.preview.isEmpty() && difference.exported.isEmpty()) { return text; }
    return text + u": %1 (%2, not %3)"_s.arg(amountText(difference.amount), difference.exported,
                                             difference.preview);
}

}  // namespace tweenery
