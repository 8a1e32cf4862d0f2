#include "base/typed_number.h"

#include <cmath>

#include "base/number_text.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr double kLargest = 10'000'000;
constexpr int kDeepestNesting = 50;

double toTwoDecimals(double number) {
    return std::round(number * 100) / 100 + 0.0;  // never minus zero
}

QString nameOf(NumberUnit unit) {
    switch (unit) {
        case NumberUnit::Points:
            return u"points"_s;
        case NumberUnit::Percent:
            return u"percent"_s;
        case NumberUnit::Degrees:
            break;
    }
    return u"degrees"_s;
}

// The unit that a word stands for; none for one that is no unit.
std::optional<NumberUnit> unitNamed(const QString& word) {
    if (word == u"pt" || word == u"pts" || word == u"px") { return NumberUnit::Points; }
    if (word == u"%") { return NumberUnit::Percent; }
    if (word == u"°" || word == u"deg") { return NumberUnit::Degrees; }
    return std::nullopt;
}

// sum = product {(+|-) product}; product = factor {(*|/) factor}; factor = [+|-] factor | (sum) |
// number [unit]. The first fault ends it.
class Reader {
 public:
    Reader(QString text, NumberUnit unit, std::optional<double> present)
        : m_text(std::move(text)), m_unit(unit), m_present(present) {}

    TypedNumber read() {
        if (m_text.trimmed().isEmpty()) { return {{}, u"Type a number."_s}; }
        const double result = sum();
        skipBlanks();
        if (m_fault.isEmpty() && m_place < m_text.size()) { fail(notANumber()); }
        if (m_fault.isEmpty() && !(std::abs(result) <= kLargest)) {
            fail(u"This number is too large."_s);
        }
        if (!m_fault.isEmpty()) { return {{}, m_fault}; }
        return {toTwoDecimals(result), {}};
    }

 private:
    QString m_text;
    NumberUnit m_unit;
    std::optional<double> m_present;
    qsizetype m_place = 0;
    int m_depth = 0;
    QString m_fault;

    void fail(const QString& fault) {
        if (m_fault.isEmpty()) { m_fault = fault; }
        m_place = m_text.size();
    }
    QString notANumber() const { return u"“%1” is not a number."_s.arg(m_text.trimmed()); }
    void skipBlanks() {
        while (m_place < m_text.size() && m_text[m_place].isSpace()) {
            ++m_place;
        }
    }
    QChar next() {
        skipBlanks();
        return m_place < m_text.size() ? m_text[m_place] : QChar();
    }
    bool take(QStringView signs) {
        if (next().isNull() || !signs.contains(next())) { return false; }
        ++m_place;
        return true;
    }

    double sum() {
        double result = product();
        while (m_fault.isEmpty()) {
            if (take(u"+")) {
                result += product();
            } else if (take(u"-−–")) {
                result -= product();
            } else {
                break;
            }
        }
        return result;
    }

    double product() {
        double result = factor();
        while (m_fault.isEmpty()) {
            if (take(u"*×")) {
                result *= factor();
            } else if (take(u"/÷")) {
                const double divisor = factor();
                if (m_fault.isEmpty() && divisor == 0) { fail(u"Nothing can be divided by 0."_s); }
                result /= divisor;
            } else {
                break;
            }
        }
        return result;
    }

    double factor() {
        if (++m_depth > kDeepestNesting) { fail(notANumber()); }
        double result = 0;
        if (!m_fault.isEmpty()) {
            result = 0;
        } else if (take(u"-−–")) {
            result = -factor();
        } else if (take(u"+")) {
            result = factor();
        } else if (take(u"(")) {
            result = sum();
            if (!take(u")")) { fail(notANumber()); }
        } else {
            result = number();
        }
        --m_depth;
        return result;
    }

    double number() {
        skipBlanks();
        const qsizetype start = m_place;
        const auto isPart = [](QChar c) {
            return (c >= u'0' && c <= u'9') || c == u'.' || c == u',';
        };
        while (m_place < m_text.size() && isPart(m_text[m_place])) {
            ++m_place;
        }
        bool isNumber = false;
        const double value =
            m_text.sliced(start, m_place - start).replace(u',', u'.').toDouble(&isNumber);
        if (!isNumber) {
            fail(notANumber());
            return 0;
        }
        return withUnit(value);
    }

    double withUnit(double value) {
        skipBlanks();
        const qsizetype start = m_place;
        while (m_place < m_text.size() &&
               (m_text[m_place].isLetter() || m_text[m_place] == u'%' || m_text[m_place] == u'°')) {
            ++m_place;
        }
        const QString word = m_text.sliced(start, m_place - start).toLower();
        if (word.isEmpty()) { return value; }
        const auto unit = unitNamed(word);
        if (unit == m_unit) { return value; }
        if (unit == NumberUnit::Percent) { return ofPresent(value); }
        fail(unit ? u"This field takes %1, not “%2”."_s.arg(nameOf(m_unit), word) : notANumber());
        return 0;
    }

    double ofPresent(double percent) {
        if (m_present) { return *m_present * percent / 100; }
        fail(u"There is no single value to take a percentage of."_s);
        return 0;
    }
};

}  // namespace

TypedNumber typedNumber(const QString& text, NumberUnit unit, std::optional<double> present) {
    return Reader(text, unit, present).read();
}

QString typedNumberText(double number) {
    QString text = QString::fromStdString(fixedText(toTwoDecimals(number), 2));
    while (text.endsWith(u'0')) {
        text.chop(1);
    }
    if (text.endsWith(u'.')) { text.chop(1); }
    return text;
}

}  // namespace tweenery
