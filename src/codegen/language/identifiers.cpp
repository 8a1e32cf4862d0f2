#include "codegen/language/identifiers.h"

#include <QChar>
#include <QRegularExpression>
#include <QSet>
#include <algorithm>
#include <limits>
#include "base/limits.h"
#include "base/visible_text.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

// Length in code units of the first character.
qsizetype firstLength(const QString& text) {
    return text.size() > 1 && text[0].isHighSurrogate() && text[1].isLowSurrogate() ? 2 : 1;
}

bool isAlphanumeric(char32_t character) {
    return (QChar::isLetterOrNumber(character) || QChar::isMark(character)) &&
           !isInvisible(character);
}

// What no compiler takes of the characters that names keep. They know identifiers by ISO/IEC
// 9899:2011, Annex D, which of all letters, marks and digits leaves out this one.
constexpr char32_t kVerticalTilde = 0x2E2F;

// Combining marks that no identifier may begin with, by the same annex (D.2).
bool isDisallowedInitially(char32_t character) {
    static constexpr std::pair<char32_t, char32_t> ranges[] = {
        {0x0300, 0x036F}, {0x1DC0, 0x1DFF}, {0x20D0, 0x20FF}, {0xFE20, 0xFE2F}};
    return std::any_of(std::begin(ranges), std::end(ranges), [character](const auto& range) {
        return character >= range.first && character <= range.second;
    });
}

// Names that a local variable of the generated methods cannot have: the language's own words, what
// system headers define as macros, and the locals that stand there already.
const QSet<QString>& reservedWords(TargetLanguage language) {
    static const auto words = [](QStringView text) {
        const QStringList list = text.toString().split(u' ');
        return QSet<QString>(list.begin(), list.end());
    };
    static const QSet<QString> objectiveC = words(
        u"asm auto bool break case char const continue default do double else enum extern false "
        u"float for goto id if inline int long nil register restrict return self short signed "
        u"sizeof static struct super switch true typedef typeof union unsigned void volatile while "
        u"alignas alignof assert complex errno noreturn stderr stdin stdout "
        u"bundle layersByName viewsByName");
    static const QSet<QString> swift = words(
        u"as associatedtype break case catch class continue default defer deinit do dynamicType "
        u"else enum extension fallthrough false fileprivate for func guard if import in init inout "
        u"internal is let nil operator private protocol public repeat rethrows return self static "
        u"struct subscript super switch throw throws true try typealias var where while "
        u"bundle layersByName viewsByName");
    static const QSet<QString> none;  // what current Swift reserves is escaped
    if (language == TargetLanguage::CurrentSwift) { return none; }
    return language == TargetLanguage::FirstSwift ? swift : objectiveC;
}

// Words that current Swift reserves, everywhere or in places, sorted.
constexpr std::string_view kCurrentSwiftWords[] = {"Any",
                                                   "Protocol",
                                                   "Self",
                                                   "Type",
                                                   "actor",
                                                   "any",
                                                   "as",
                                                   "associatedtype",
                                                   "associativity",
                                                   "async",
                                                   "await",
                                                   "borrowing",
                                                   "break",
                                                   "case",
                                                   "catch",
                                                   "class",
                                                   "consume",
                                                   "consuming",
                                                   "continue",
                                                   "convenience",
                                                   "copy",
                                                   "default",
                                                   "defer",
                                                   "deinit",
                                                   "didSet",
                                                   "discard",
                                                   "distributed",
                                                   "do",
                                                   "dynamic",
                                                   "each",
                                                   "else",
                                                   "enum",
                                                   "extension",
                                                   "fallthrough",
                                                   "false",
                                                   "fileprivate",
                                                   "final",
                                                   "for",
                                                   "func",
                                                   "get",
                                                   "guard",
                                                   "if",
                                                   "import",
                                                   "in",
                                                   "indirect",
                                                   "infix",
                                                   "init",
                                                   "inout",
                                                   "internal",
                                                   "is",
                                                   "isolated",
                                                   "lazy",
                                                   "left",
                                                   "let",
                                                   "macro",
                                                   "module",
                                                   "mutating",
                                                   "nil",
                                                   "none",
                                                   "nonisolated",
                                                   "nonmutating",
                                                   "open",
                                                   "operator",
                                                   "optional",
                                                   "override",
                                                   "package",
                                                   "postfix",
                                                   "precedence",
                                                   "precedencegroup",
                                                   "prefix",
                                                   "private",
                                                   "protocol",
                                                   "public",
                                                   "repeat",
                                                   "required",
                                                   "rethrows",
                                                   "return",
                                                   "right",
                                                   "sending",
                                                   "set",
                                                   "some",
                                                   "static",
                                                   "struct",
                                                   "subscript",
                                                   "super",
                                                   "switch",
                                                   "then",
                                                   "throw",
                                                   "throws",
                                                   "true",
                                                   "try",
                                                   "typealias",
                                                   "unowned",
                                                   "unsafe",
                                                   "var",
                                                   "weak",
                                                   "where",
                                                   "while",
                                                   "willSet",
                                                   "yield"};
static_assert(std::is_sorted(std::begin(kCurrentSwiftWords), std::end(kCurrentSwiftWords)));

}  // namespace

QString pc_stringByUppercasingFirstLetter(const QString& text) {
    const qsizetype length = firstLength(text);
    return text.left(length).toUpper() + text.mid(length);
}

QString pc_stringByLowercasingFirstLetter(const QString& text) {
    const qsizetype length = firstLength(text);
    return text.left(length).toLower() + text.mid(length);
}

namespace {

QString numbered(const QString& name, int number) {
    const QString twos(std::min(number, limits::kRepeatedTwos), u'2');
    if (number <= limits::kRepeatedTwos) { return name + twos; }
    return name + twos + u'_' + QString::number(number);
}

}  // namespace

void TakenNames::erase(const QString& name) {
    m_names.erase(name);
    // Every search that passed `name` must look at it again.
    static const QRegularExpression number(u"_[0-9]+$"_s);
    QString candidate = name;
    m_lastFree.erase(candidate);
    candidate.remove(number);
    while (candidate.endsWith(u'2')) {
        candidate.chop(1);
        m_lastFree.erase(candidate);
    }
}

QString TakenNames::firstFree(const QString& candidate) const {
    if (!contains(candidate)) { return candidate; }
    int& number = m_lastFree[candidate];
    while (contains(numbered(candidate, number))) {
        ++number;
    }
    return numbered(candidate, number);
}

QString codeFriendlyNameFromName(const QString& name, const TakenNames* uniqueInSet, bool isImage) {
    QString joined = isImage ? u"img"_s : QString();
    bool beginsWord = true;
    for (const char32_t character : name.toUcs4()) {
        if (!isAlphanumeric(character)) {
            beginsWord = true;
        } else if (beginsWord) {
            joined += QString::fromUcs4(&character, 1).toUpper();
            beginsWord = false;
        } else {
            joined += QChar::fromUcs4(character);
        }
    }
    const QString candidate =
        joined.isEmpty() ? u"var"_s : pc_stringByLowercasingFirstLetter(joined);
    return uniqueInSet ? uniqueInSet->firstFree(candidate) : candidate;
}

int32_t leadingInteger(const QString& text) {
    const QString trimmed = text.trimmed();
    const bool negative = trimmed.startsWith(u'-');
    qsizetype i = negative || trimmed.startsWith(u'+') ? 1 : 0;
    int64_t value = 0;
    for (; i < trimmed.size() && trimmed[i] >= u'0' && trimmed[i] <= u'9'; ++i) {
        value = std::min<int64_t>(value * 10 + trimmed[i].digitValue(), int64_t{1} << 32);
    }
    if (negative) { value = -value; }
    return static_cast<int32_t>(std::clamp<int64_t>(value, std::numeric_limits<int32_t>::min(),
                                                    std::numeric_limits<int32_t>::max()));
}

QString usableSwiftVariable(const QString& variable) {
    const auto characters = variable.toUcs4();
    const char32_t first = characters.value(0);
    const bool isDigit = first >= U'0' && first <= U'9';
    return isDigit || variable == u"self" || isDisallowedInitially(first) ? u'_' + variable
                                                                          : variable;
}

std::string escapedIdentifier(TargetLanguage language, std::string_view identifier) {
    const bool isReserved = language == TargetLanguage::CurrentSwift &&
                            std::binary_search(std::begin(kCurrentSwiftWords),
                                               std::end(kCurrentSwiftWords), identifier);
    const std::string text(identifier);
    return isReserved ? '`' + text + '`' : text;
}

IdentifierFault faultOfIdentifier(TargetLanguage language, const QString& identifier) {
    if (reservedWords(language).contains(identifier)) { return IdentifierFault::ReservedWord; }
    const auto characters = identifier.toUcs4();
    if (characters.isEmpty()) { return IdentifierFault::UnusableCharacter; }
    const char32_t first = characters.front();
    if (first >= U'0' && first <= U'9') { return IdentifierFault::LeadingDigit; }
    if (characters.contains(kVerticalTilde) || isDisallowedInitially(first)) {
        return IdentifierFault::UnusableCharacter;
    }
    return IdentifierFault::None;
}

}  // namespace tweenery
