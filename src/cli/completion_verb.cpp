#include "cli/shell_documents.h"
#include "cli/verbs.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

ExitCode run(const Invocation& invocation, Console& console) {
    const QString kind = invocation.operands().first();
    QByteArray text;
    if (kind == u"bash"_s) { text = bashCompletion(allVerbs()); }
    if (kind == u"zsh"_s) { text = zshCompletion(allVerbs()); }
    if (kind == u"fish"_s) { text = fishCompletion(allVerbs()); }
    if (kind == u"man"_s) { text = manualPage(allVerbs(), invocation.value("date")); }
    if (text.isEmpty()) { throw UsageError{u"knows bash, zsh, fish and man, not "_s + kind}; }
    console.out << text.toStdString();
    return ExitCode::Done;
}

}  // namespace

const Verb& completionVerb() {
    static const Verb verb{"completion",
                           "bash|zsh|fish|man",
                           1,
                           1,
                           "Prints what completes the commands of tweenc in a shell, or its manual "
                           "page.",
                           {{"date", "TEXT", "the date in the head of the manual page"}},
                           run};
    return verb;
}

}  // namespace tweenery
