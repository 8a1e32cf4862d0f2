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

std::optional<bool> Invocation::choice(const char* name) const {
    const QString yes = QString::fromLatin1(name);
    const QString no = u"no-"_s + yes;
    const QStringList given = m_parser.optionNames();
    const auto last = std::find_if(given.rbegin(), given.rend(), [&](const QString& option) {
        return option == yes || option == no;
    });
    if (last == given.rend()) { return std::nullopt; }
    return *last == yes;
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
        if (!isParsed) { throw UsageError{parser.errorText()}; }
        requireUsage(parser, verb);
        return verb.run(Invocation(parser), console);
    } catch (const UsageError& error) {
        console.err << errorLine(name, error.reason) << "Usage: " << usageLine(verb).toStdString()
                    << '\n';
        return ExitCode::WrongUsage;
    }
}

}  // namespace tweenery
