#include "cli/shell_documents.h"

#include "cli/verbs.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

using Verbs = std::span<const Verb* const>;

QString textOf(const char* text) {
    return QString::fromUtf8(text);
}

QStringList choicesOf(const VerbOption& option) {
    const QString value = option.value ? textOf(option.value) : QString();
    return value.contains(u'|') ? value.split(u'|') : QStringList();
}

bool takesPath(const VerbOption& option) {
    const QString value = option.value ? textOf(option.value) : QString();
    return value == u"DIR"_s || value == u"PATTERN"_s || value.startsWith(u"FILE"_s);
}

QString namesOf(Verbs verbs) {
    QStringList names;
    for (const Verb* verb : verbs) {
        names << textOf(verb->name);
    }
    return names.join(u' ');
}

// One line of roff, which has signs of its own for dashes and backslashes, and for what begins with
// a point or an apostrophe.
QString roff(QString text) {
    text.replace(u'\\', u"\\e"_s).replace(u'-', u"\\-"_s);
    return text.startsWith(u'.') || text.startsWith(u'\'') ? u"\\&"_s + text : text;
}

QString manualOfVerb(const Verb& verb) {
    QString page = u".SS %1\n.B %2\n.PP\n%3\n"_s.arg(roff(textOf(verb.name)), roff(usageLine(verb)),
                                                     roff(textOf(verb.summary)));
    for (const VerbOption& option : verb.options) {
        const QString value =
            option.value ? u" \\fI%1\\fR"_s.arg(roff(textOf(option.value))) : QString();
        page += u".TP\n\\fB\\-\\-%1\\fR%2\n%3\n"_s.arg(roff(textOf(option.name)), value,
                                                       roff(textOf(option.help)));
    }
    return page;
}

// In single quotes, which end at a quote.
QString quoted(const QString& text) {
    return u'\'' + QString(text).replace(u'\'', u"'\\''"_s) + u'\'';
}

// The words behind an option: "choice" lines of the case that completes its value.
QString bashValueCases(const Verb& verb) {
    QString cases;
    for (const VerbOption& option : verb.options) {
        if (!option.value) { continue; }
        const QStringList choices = choicesOf(option);
        const QString words = takesPath(option) ? u"_tweenc_paths"_s
                                                : u"_tweenc_words '%1'"_s.arg(choices.join(u' '));
        cases += u"            %1:--%2) %3; return ;;\n"_s.arg(textOf(verb.name),
                                                               textOf(option.name), words);
    }
    return cases;
}

// Within a description of zsh, brackets and colons have a meaning.
QString zshText(const char* text) {
    return textOf(text)
        .replace(u'\\', u"\\\\"_s)
        .replace(u':', u"\\:"_s)
        .replace(u'[', u"\\["_s)
        .replace(u']', u"\\]"_s);
}

QString zshValue(const VerbOption& option) {
    if (!option.value) { return {}; }
    const QStringList choices = choicesOf(option);
    QString action = u" "_s;
    if (!choices.isEmpty()) { action = u'(' + choices.join(u' ') + u')'; }
    if (takesPath(option)) { action = u"_files"_s; }
    return u":%1:%2"_s.arg(zshText(option.value), action);
}

QString zshVerb(const Verb& verb) {
    QString lines = u"        %1)\n            _arguments \\\n"_s.arg(textOf(verb.name));
    for (const VerbOption& option : verb.options) {
        lines += u"                %1 \\\n"_s.arg(quoted(
            u"--%1[%2]%3"_s.arg(textOf(option.name), zshText(option.help), zshValue(option))));
    }
    return lines + u"                '--help[tells more]' '*:path:_files' ;;\n"_s;
}

QString fishOption(const Verb& verb, const VerbOption& option) {
    QString line = u"complete -c tweenc -n '__fish_seen_subcommand_from %1' -l %2 -d %3"_s.arg(
        textOf(verb.name), textOf(option.name),
        QString(quoted(textOf(option.help))).replace(u"'\\''"_s, u"\\'"_s));
    if (!option.value) { return line + u'\n'; }
    const QStringList choices = choicesOf(option);
    line += takesPath(option) ? u" -rF"_s : u" -x"_s;
    if (!choices.isEmpty()) { line += u" -a "_s + quoted(choices.join(u' ')); }
    return line + u'\n';
}

}  // namespace

QByteArray manualPage(Verbs verbs, const QString& date) {
    QString page =
        u".TH TWEENC 1 \"%1\" \"Tweenery %2\" \"User Commands\"\n"
        u".SH NAME\ntweenc \\- reads, checks, copies, exports and draws Tweenery projects\n"
        u".SH SYNOPSIS\n.B tweenc\n.I VERB\n[\\fIPKG\\fR...] [\\fIOPTION\\fR...]\n"
        u".SH DESCRIPTION\n.B tweenc\nworks on the projects of\n.BR tweenery (1)\n"
        u"without a window. \\fIPKG\\fR is a project, a folder whose name ends in .tweenery.\n"
        u"The settings of the desktop program are neither read nor changed.\n"
        u".SH VERBS\n"_s.arg(date, roff(QStringLiteral(TWEENERY_VERSION)));
    for (const Verb* verb : verbs) {
        page += manualOfVerb(*verb);
    }
    page +=
        u".SH EXIT STATUS\n.TP\n0\ndone\n.TP\n1\nthe input is bad\n.TP\n2\nwrong usage\n"
        u".TP\n3\nexported with warnings under \\fB\\-\\-strict\\fR\n"
        u".SH SEE ALSO\n.BR tweenery (1)\n"_s;
    return page.toUtf8();
}

QByteArray bashCompletion(Verbs verbs) {
    QString cases;
    QString options;
    for (const Verb* verb : verbs) {
        cases += bashValueCases(*verb);
        QStringList names{u"--help"_s};
        for (const VerbOption& option : verb->options) {
            names << u"--"_s + textOf(option.name);
        }
        options += u"        %1) options='%2' ;;\n"_s.arg(textOf(verb->name), names.join(u' '));
    }
    return u"# Completion of tweenc for bash.\n"
           u"_tweenc_words() { mapfile -t COMPREPLY < <(compgen -W \"$1\" -- \"$word\"); }\n"
           u"_tweenc_paths() { compopt -o filenames 2>/dev/null; mapfile -t COMPREPLY < "
           u"<(compgen -f -- \"$word\"); }\n"
           u"_tweenc() {\n"
           u"    local word=${COMP_WORDS[COMP_CWORD]} verb=${COMP_WORDS[1]} options=\n"
           u"    if ((COMP_CWORD == 1)); then _tweenc_words '%1 --help --version'; return; fi\n"
           u"    case $verb:${COMP_WORDS[COMP_CWORD-1]} in\n%2    esac\n"
           u"    case $verb in\n%3    esac\n"
           u"    if [[ $word == -* ]]; then _tweenc_words \"$options\"; else _tweenc_paths; fi\n"
           u"}\n"
           u"complete -F _tweenc tweenc\n"_s.arg(namesOf(verbs), cases, options)
               .toUtf8();
}

QByteArray zshCompletion(Verbs verbs) {
    QString described;
    QString cases;
    for (const Verb* verb : verbs) {
        described += u"        %1\n"_s.arg(
            quoted(u"%1:%2"_s.arg(textOf(verb->name), zshText(verb->summary))));
        cases += zshVerb(*verb);
    }
    return u"#compdef tweenc\n"
           u"# Completion of tweenc for zsh.\n"
           u"if ((CURRENT == 2)); then\n"
           u"    local -a verbs=(\n%1    )\n"
           u"    _describe verb verbs\n"
           u"else\n"
           u"    local verb=$words[2]\n"
           u"    shift words; ((CURRENT--))\n"
           u"    case $verb in\n%2    esac\n"
           u"fi\n"_s.arg(described, cases)
               .toUtf8();
}

QByteArray fishCompletion(Verbs verbs) {
    QString text =
        u"# Completion of tweenc for fish.\n"
        u"complete -c tweenc -n __fish_use_subcommand -l version -d 'prints the version'\n"
        u"complete -c tweenc -l help -d 'tells more'\n"_s;
    for (const Verb* verb : verbs) {
        text += u"complete -c tweenc -f -n __fish_use_subcommand -a %1 -d %2\n"_s.arg(
            textOf(verb->name),
            QString(quoted(textOf(verb->summary))).replace(u"'\\''"_s, u"\\'"_s));
        for (const VerbOption& option : verb->options) {
            text += fishOption(*verb, option);
        }
    }
    return text.toUtf8();
}

}  // namespace tweenery
