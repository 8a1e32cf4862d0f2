#include "cli/support/json_writer.h"

#include <array>
#include <charconv>
#include <cmath>

#include "base/errors.h"
#include "base/visible_text.h"
#include "cli/support/output_limit.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// Everything but quotes, backslashes, halves of surrogate pairs and what would not show stands as
// it is, in UTF-8.
bool needsEscape(const QString& text, qsizetype at) {
    const QChar c = text[at];
    if (c == u'"' || c == u'\\') { return true; }
    if (c.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate()) {
        return isInvisible(QChar::surrogateToUcs4(c, text[at + 1]));
    }
    if (c.isLowSurrogate() && at > 0 && text[at - 1].isHighSurrogate()) {
        return isInvisible(QChar::surrogateToUcs4(text[at - 1], c));
    }
    return isInvisible(c.unicode());
}

std::string escape(QChar c) {
    switch (c.unicode()) {
        case u'"':
            return "\\\"";
        case u'\\':
            return "\\\\";
        case u'\n':
            return "\\n";
        case u'\t':
            return "\\t";
        default:
            return u"\\u%1"_s.arg(static_cast<uint>(c.unicode()), 4, 16, QChar(u'0')).toStdString();
    }
}

}  // namespace

JsonWriter& JsonWriter::begin(char bracket, Layout layout) {
    beginValue();
    const bool isInLine = !m_levels.empty() && m_levels.back().layout == Layout::OneLine;
    m_levels.push_back({isInLine ? Layout::OneLine : layout, true, {}});
    m_text += bracket;
    return *this;
}

JsonWriter& JsonWriter::end(char bracket) {
    assertContract(!m_levels.empty() && !m_followsKey, u"JSON ends what it has not begun"_s);
    const Level level = std::move(m_levels.back());
    m_levels.pop_back();
    if (!level.isEmpty && level.layout == Layout::Lines) { breakLine(); }
    m_text += bracket;
    return *this;
}

void JsonWriter::breakLine() {
    constexpr size_t indent = 2;
    m_text += '\n';
    m_text.append((m_depth + m_levels.size()) * indent, ' ');
}

// The comma and the break before a value of a list, or before a key.
void JsonWriter::beginValue() {
    requireFitForOutput(m_text.size());
    if (std::exchange(m_followsKey, false) || m_levels.empty()) { return; }
    Level& level = m_levels.back();
    if (!level.isEmpty) { m_text += level.layout == Layout::Lines ? "," : ", "; }
    level.isEmpty = false;
    if (level.layout == Layout::Lines) { breakLine(); }
}

JsonWriter& JsonWriter::key(std::string_view name) {
    beginValue();
    std::string& last = m_levels.back().lastKey;
    assertContract(m_keys == Keys::AsGiven || last < name, u"JSON keys are out of order"_s);
    last = name;
    m_text.append("\"").append(name).append("\": ");
    m_followsKey = true;
    return *this;
}

JsonWriter& JsonWriter::raw(std::string_view text) {
    beginValue();
    m_text += text;
    return *this;
}

JsonWriter& JsonWriter::string(const QString& value) {
    if (value.isNull()) { return null(); }
    beginValue();
    m_text += '"';
    qsizetype plainFrom = 0;
    const auto appendPlain = [&](qsizetype end) {
        m_text += QStringView(value).sliced(plainFrom, end - plainFrom).toUtf8().toStdString();
    };
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (!needsEscape(value, i)) { continue; }
        appendPlain(i);
        m_text += escape(value[i]);
        plainFrom = i + 1;
    }
    appendPlain(value.size());
    m_text += '"';
    return *this;
}

JsonWriter& JsonWriter::integer(int64_t value) {
    return raw(std::to_string(value));
}

JsonWriter& JsonWriter::number(double value, int digits) {
    if (!std::isfinite(value)) { return null(); }
    if (value == 0) {
        return raw("0");  // also for a zero with a sign
    }
    std::array<char, 32> buffer;  // sign, 17 digits, point, exponent
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                      std::chars_format::general, digits);
    return raw({buffer.data(), static_cast<size_t>(result.ptr - buffer.data())});
}

JsonWriter& JsonWriter::single(float value) {
    return number(static_cast<double>(value), 9);
}

JsonWriter& JsonWriter::real(double value) {
    return number(value, 17);
}

JsonWriter& JsonWriter::pair(double x, double y) {
    return beginArray(Layout::OneLine).real(x).real(y).endArray();
}

std::string JsonWriter::takeValue() {
    assertContract(m_levels.empty(), u"JSON has not ended"_s);
    return std::exchange(m_text, {});
}

}  // namespace tweenery
