#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "codegen/language/source_text.h"

namespace tweenery {

/// `text` with its first character in upper case; "ß" becomes "SS".
QString pc_stringByUppercasingFirstLetter(const QString& text);
/// `text` with its first character in lower case.
QString pc_stringByLowercasingFirstLetter(const QString& text);

/// Identifiers that are taken, and the search for a free one. Numbering a name many times over
/// costs one look-up each, not one for every name tried before.
class TakenNames {
 public:
    bool contains(const QString& name) const { return m_names.contains(name); }
    void insert(const QString& name) { m_names.insert(name); }
    void erase(const QString& name);
    /// `candidate`, followed by as many "2" as it takes (hero, hero2, hero22), or, of a name that
    /// very many share, by some and a number, so that names do not grow without end.
    QString firstFree(const QString& candidate) const;

 private:
    std::unordered_set<QString> m_names;
    // Where the last search for a candidate ended. What lies before that is taken.
    mutable std::unordered_map<QString, int> m_lastFree;
};

/// An identifier made of `name`: its runs of letters, marks and digits joined, each with its first
/// letter in upper case but the first of all; "var" when there are none. For an image it begins
/// with "img". Numbered while `uniqueInSet` (may be null) has it; the result is not inserted there.
QString codeFriendlyNameFromName(const QString& name, const TakenNames* uniqueInSet = nullptr,
                                 bool isImage = false);

/// The number at the head of `text`, held within 32 bits; 0 when there is none.
int32_t leadingInteger(const QString& text);

/// `variable` with a "_" in front when no Swift variable of generated code can be called so, not
/// even in backticks: names that begin with a digit or a mark, and those of the method's own
/// variables. No identifier made of a name begins like that.
QString usableSwiftVariable(const QString& variable);
/// The identifier as it stands in source text: in backticks when current Swift reserves the word,
/// and as it is in the other languages.
std::string escapedIdentifier(TargetLanguage language, std::string_view identifier);

/// Why `identifier` cannot stand as a variable in generated code.
enum class IdentifierFault { None, ReservedWord, LeadingDigit, UnusableCharacter };
IdentifierFault faultOfIdentifier(TargetLanguage language, const QString& identifier);

}  // namespace tweenery
