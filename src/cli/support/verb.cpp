#include "cli/support/verb.h"

#include <algorithm>

#include "cli/support/report.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

QString optionText(const VerbOption& option) {
    const QString name = u"--"_s + QString::fromLatin1(option.name);
    return option.value ? name + u' ' + QString::fromLatin1(option.value) : name;
}

void printHelp(const Verb& verb, Console& console) {
    QString text = u"Usage: %1\n\n%2\n"_s.arg(usageLine(verb), QString::fromUtf8(verb.summary));
    if (!verb.options.empty()) { text += u"\nOptions:\n"_s; }
    for (const VerbOption& option : verb.options) {
        text += u"    %1  %2\n"_s.arg(optionText(option).leftJustified(24),
                                      QString::fromUtf8(option.help));
    }
    console.out << text.toStdString();
}

void addOptions(QCommandLineParser& parser, const Verb& verb) {
    parser.addOption(QCommandLineOption(u"help"_s));
    for (const VerbOption& option : verb.options) {
        const QString name = QString::fromLatin1(option.name);
        parser.addOption(option.value
                             ? QCommandLineOption(name, {}, QString::fromLatin1(option.value))
                             : QCommandLineOption(name));
    }
}

const VerbOption* optionNamed(const QString& name, const Verb& verb) {
    const auto found = std::find_if(
        verb.options.begin(), verb.options.end(),
        [&](const VerbOption& option) { return name == QLatin1StringView(option.name); });
    return found == verb.options.end() ? nullptr : &*found;
}

// The parser takes whatever comes behind an option for its value, and a name that begins with a
// dash for options of one letter.
void requireNoOptionForAValue(const QStringList& arguments, const Verb& verb) {
    for (qsizetype i = 0; i < arguments.size() && arguments[i] != u"--"; ++i) {
        const QString& argument = arguments[i];
        if (!argument.startsWith(u'-') || argument == u"-") { continue; }
        if (!argument.startsWith(u"--")) {
            throw UsageError{
                u"%1 is no option; a name that begins with a dash goes behind --"_s.arg(argument)};
        }
        const VerbOption* option = optionNamed(argument.sliced(2), verb);
        if (!option || !option->value) { continue; }
        const QString value = arguments.value(++i);
        const bool isNegative = value.size() > 1 && value[1].isDigit();
        if (i >= arguments.size() || (value.startsWith(u'-') && !isNegative)) {
            throw UsageError{
                u"%1 takes a value%2; one that begins with a dash is given as %1=..."_s.arg(
                    argument, value.isEmpty() ? QString() : u", not "_s + value)};
        }
    }
}

void requireOnce(const QCommandLineParser& parser, const VerbOption& option) {
    const QString name = QString::fromLatin1(option.name);
    if (option.value && parser.values(name).size() > 1) {
        throw UsageError{u"takes --%1 once"_s.arg(name)};
    }
    if (parser.isSet(name) && name.startsWith(u"no-") && parser.isSet(name.sliced(3))) {
        throw UsageError{u"takes --%1 or --%2, not both"_s.arg(name.sliced(3), name)};
    }
}

void requireOption(const QCommandLineParser& parser, const VerbOption& option) {
    const QString name = QString::fromLatin1(option.name);
    if (!parser.isSet(name)) {
        if (option.isRequired) { throw UsageError{u"needs "_s + optionText(option)}; }
        return;
    }
    const QStringList allowed = QString::fromLatin1(option.value).split(u'|');
    if (allowed.size() > 1 && !allowed.contains(parser.value(name))) {
        throw UsageError{
            u"--%1 takes %2, not '%3'"_s.arg(name, allowed.join(u" or "_s), parser.value(name))};
    }
}

void requireUsage(const QCommandLineParser& parser, const Verb& verb) {
    const qsizetype count = parser.positionalArguments().size();
    if (count < verb.fewestOperands) {
        throw UsageError{u"needs "_s + QString::fromUtf8(verb.operands)};
    }
    if (count > verb.mostOperands) {
        throw UsageError{u"takes only "_s + QString::fromUtf8(verb.operands)};
    }
    if (parser.positionalArguments().contains(QString())) {
        throw UsageError{u"got an empty path"_s};
    }
    for (const VerbOption& option : verb.options) {
        requireOption(parser, option);
        requireOnce(parser, option);
    }
}

}  // namespace

QStringList Invocation::operands() const {
    QStringList paths = m_parser.positionalArguments();
    for (QString& path : paths) {
        while (path.size() > 1 && path.endsWith(u'/')) {
            path.chop(1);
        }
    }
    return paths;
}

bool Invocation::knows(const char* option) const {
    return optionNamed(QString::fromLatin1(option), m_verb) != nullptr;
}

std::optional<bool> Invocation::choice(const char* name) const {
    const QString yes = QString::fromLatin1(name);
    if (m_parser.isSet(yes)) { return true; }
    return m_parser.isSet(u"no-"_s + yes) ? std::optional(false) : std::nullopt;
}

void Invocation::requireNotBoth(const VerbOption& option,
                                std::initializer_list<VerbOption> others) const {
    if (!has(option.name)) { return; }
    for (const VerbOption& other : others) {
        if (has(other.name)) {
            throw UsageError{u"takes --%1 or --%2, not both"_s.arg(QLatin1StringView(option.name),
                                                                   QLatin1StringView(other.name))};
        }
    }
}

QString usageLine(const Verb& verb) {
    QString line =
        u"tweenc %1 %2"_s.arg(QString::fromLatin1(verb.name), QString::fromUtf8(verb.operands));
    for (const VerbOption& option : verb.options) {
        line += (option.isRequired ? u" %1"_s : u" [%1]"_s).arg(optionText(option));
    }
    return line;
}

ExitCode runVerb(const Verb& verb, const QStringList& arguments, Console& console) {
    QCommandLineParser parser;
    addOptions(parser, verb);
    const QString name = QString::fromLatin1(verb.name);
    try {
        // The parser skips the first argument, the program's name.
        const bool isParsed = parser.parse(QStringList{name} + arguments);
        if (parser.isSet(u"help"_s)) {
            printHelp(verb, console);
            return ExitCode::Done;
        }
        requireNoOptionForAValue(arguments, verb);
        if (!isParsed) { throw UsageError{parser.errorText()}; }
        requireUsage(parser, verb);
        return verb.run(Invocation(parser, verb), console);
    } catch (const UsageError& error) {
        console.err << errorLine(name, error.reason) << "tweenc " << verb.name
                    << " --help tells how it is used\n";
        return ExitCode::WrongUsage;
    }
}

}  // namespace tweenery
