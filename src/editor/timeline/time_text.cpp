#include "editor/timeline/time_text.h"

#include <QRegularExpression>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tweenery {

std::optional<int32_t> timeInMSFromText(const QString& text, TimeUnit unit) {
    static const QRegularExpression form(
        u"^\\s*(?:(\\d+):)?(\\d+\\.?\\d*|\\.\\d+)\\s*(ms|s)?\\s*$"_s,
        QRegularExpression::CaseInsensitiveOption);
    const auto match = form.match(QString(text).replace(u',', u'.'));
    if (!match.hasMatch()) { return std::nullopt; }
    const QString minutes = match.captured(1);
    const QString typedUnit = match.captured(3).toLower();
    if (!minutes.isEmpty() && typedUnit == u"ms"_s) { return std::nullopt; }
    const bool isInMS = minutes.isEmpty() && (typedUnit.isEmpty() ? unit == TimeUnit::Milliseconds
                                                                  : typedUnit == u"ms"_s);
    constexpr double kMinute = 60'000;
    constexpr double kSecond = 1000;
    const double time =
        minutes.toDouble() * kMinute + match.captured(2).toDouble() * (isInMS ? 1 : kSecond);
    if (!(std::round(time) <= INT32_MAX)) { return std::nullopt; }
    return static_cast<int32_t>(std::lround(time));
}

QString textFromTimeInMS(int32_t timeInMS) {
    return u"%1 ms"_s.arg(timeInMS);
}

}  // namespace tweenery
