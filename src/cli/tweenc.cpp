#include "cli/tweenc.h"

#include <array>

#include "cli/support/report.h"
#include "cli/verbs.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

QString helpText() {
    QString text =
        u"Usage: tweenc VERB ...\n\n"
        u"Reads, checks, copies, exports, certifies and draws Tweenery projects (PKG, a .tweenery package).\n\n"_s;
    for (const Verb* verb : allVerbs()) {
        text += u"    %1  %2\n"_s.arg(QString::fromLatin1(verb->name).leftJustified(10),
                                      QString::fromUtf8(verb->summary));
    }
    return text +
           u"\ntweenc VERB --help tells more of one; tweenc --version prints the version.\n"
           u"Exit codes: 0 done, 1 the input is bad, 2 wrong usage, 3 exported with warnings under "
           u"--strict.\n"
           u"The settings of the desktop program are neither read nor changed.\n"_s;
}

ExitCode run(const QStringList& arguments, Console& console) {
    const QString name = arguments.value(0);
    if (name == u"--help"_s || name == u"-h"_s || name == u"help"_s) {
        console.out << helpText().toStdString();
        return ExitCode::Done;
    }
    if (name == u"--version"_s) {
        console.out << "tweenc " TWEENERY_VERSION "\n";
        return ExitCode::Done;
    }
    for (const Verb* verb : allVerbs()) {
        if (name == QLatin1StringView(verb->name)) {
            return runVerb(*verb, arguments.mid(1), console);
        }
    }
    if (arguments.isEmpty()) {
        console.err << helpText().toStdString();
    } else {
        console.err << errorLine(name, u"is no verb; tweenc --help lists them"_s);
    }
    return ExitCode::WrongUsage;
}

}  // namespace

std::span<const Verb* const> allVerbs() {
    static const std::array verbs{&infoVerb(),   &describeVerb(), &dumpVerb(),   &valuesVerb(),
                                  &exportVerb(), &certifyVerb(),  &renderVerb(), &checkVerb(),
                                  &copyVerb(),   &updateVerb(),   &newVerb(),    &completionVerb()};
    return verbs;
}

int runTweenc(const QStringList& arguments, Console console) {
    ExitCode code = ExitCode::BadInput;
    try {
        code = run(arguments, console);
    } catch (const InputError& error) {
        console.err << errorLine(error.entry(), error.reason());
    } catch (const std::exception& error) {
        console.err << errorLine(u"internal error"_s, QString::fromUtf8(error.what()));
    }
    console.out.flush();
    if (!console.out && code != ExitCode::WrongUsage) {
        console.err << errorLine(u"standard output"_s, u"could not be written"_s);
        code = ExitCode::BadInput;
    }
    return static_cast<int>(code);
}

}  // namespace tweenery
