#pragma once

#include <QCommandLineParser>
#include <QStringList>
#include <limits>
#include <optional>
#include <vector>

#include "cli/support/console.h"

namespace tweenery {

/// One option of a verb, always in its long form.
struct VerbOption {
    const char* name;
    /// What the usage line calls its value; null for a flag. "a|b" allows just these.
    const char* value;
    const char* help;
    bool isRequired = false;
};

struct Verb;

/// A verb's operands and options as they were given, checked against what the verb allows.
class Invocation {
 public:
    Invocation(const QCommandLineParser& parser, const Verb& verb)
        : m_parser(parser), m_verb(verb) {}

    /// Paths lose the slashes at their end.
    QStringList operands() const;
    /// The verb has that option.
    bool knows(const char* option) const;
    bool has(const char* option) const { return m_parser.isSet(QLatin1StringView(option)); }
    /// Null when the option was not given.
    QString value(const char* option) const { return m_parser.value(QLatin1StringView(option)); }
    /// True or false as `--name` or `--no-name` says; nothing when neither was given.
    std::optional<bool> choice(const char* name) const;
    /// Throws UsageError when the option and any of the others were given.
    void requireNotBoth(const VerbOption& option, std::initializer_list<VerbOption> others) const;

 private:
    const QCommandLineParser& m_parser;
    const Verb& m_verb;
};

/// A command that was given wrongly; it ends with ExitCode::WrongUsage. `reason` is one line.
struct UsageError {
    QString reason;
};

/// One verb of the command line.
struct Verb {
    static constexpr qsizetype kMany = std::numeric_limits<qsizetype>::max();

    const char* name;
    const char* operands;  // for the usage line
    qsizetype fewestOperands;
    qsizetype mostOperands;
    const char* summary;
    std::vector<VerbOption> options;
    ExitCode (*run)(const Invocation& invocation, Console& console);
};

/// Runs the verb on its arguments, or prints its help.
ExitCode runVerb(const Verb& verb, const QStringList& arguments, Console& console);
/// "tweenc info PKG... [--json]"
QString usageLine(const Verb& verb);

inline constexpr VerbOption kJsonOption{
    "json", nullptr, "print one JSON document, a list with an object for each PKG"};
inline constexpr VerbOption kQuietOption{"quiet", nullptr, "print errors only"};
inline constexpr VerbOption kVerboseOption{
    "verbose", nullptr, "print every warning and note, not one for each subject"};
inline constexpr VerbOption kLanguageOption{"lang", "objc|swift", "the language"};
inline constexpr VerbOption kPlatformOption{"platform", "ios|mac", "the platform"};
inline constexpr VerbOption kStrictOption{"strict", nullptr, "end with 3 when there are warnings"};
inline constexpr VerbOption kForceOption{"force", nullptr, "replace a package that is there"};

}  // namespace tweenery
