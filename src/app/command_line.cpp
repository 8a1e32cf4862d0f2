#include "app/command_line.h"

#include <unistd.h>

#include <climits>

#include "editor/documents/project_path.h"
#include "storage/system_names.h"

namespace tweenery {

using namespace Qt::StringLiterals;

namespace {

const QString kHelp =
    u"Usage: tweenery [OPTION]... [PROJECT]...\n"
    "\n"
    "Opens projects for editing. A running Tweenery opens them, if there is one.\n"
    "\n"
    "  --new-instance  starts another one all the same\n"
    "  --help          shows this\n"
    "  --version       shows the version\n"
    "\n"
    "Exit codes: 0 done, 1 failed, 2 wrong usage\n"_s;

QByteArray absolutePath(const QByteArray& path, const QByteArray& workingFolder) {
    const QByteArray absolute = path.startsWith('/') ? path : workingFolder + '/' + path;
    const QString package = packageMeantBy(textOfSystemName(absolute));
    return package.isEmpty() ? absolute : systemPath(package);
}

void refuse(CommandLine& line, const QByteArray& option) {
    line.action = CommandLine::Action::Refuse;
    line.message = u"tweenery: there is no option %1; see tweenery --help\n"_s.arg(
        printableName(textOfSystemName(option)));
}

}  // namespace

CommandLine CommandLine::parse(const QByteArrayList& arguments, const QByteArray& workingFolder) {
    CommandLine line;
    bool areOptionsOver = false;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        if (areOptionsOver || !argument->startsWith('-')) {
            if (!argument->isEmpty()) { line.projects << absolutePath(*argument, workingFolder); }
        } else if (*argument == "--") {
            areOptionsOver = true;
        } else if (*argument == "--new-instance") {
            line.isNewInstance = true;
        } else if (*argument == "--help" || *argument == "-h") {
            line.action = Action::ShowHelp;
            line.message = kHelp;
            return line;
        } else if (*argument == "--version") {
            line.action = Action::ShowVersion;
            line.message = u"tweenery " TWEENERY_VERSION "\n"_s;
            return line;
        } else if (*argument == "-session" && argument + 1 != arguments.end()) {
            ++argument;  // the session manager's, with its identifier
        } else {
            refuse(line, *argument);
            return line;
        }
    }
    return line;
}

CommandLine CommandLine::ofProcess(int argc, const char* const* argv) {
    QByteArrayList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments << QByteArray(argv[i]);
    }
    char folder[PATH_MAX];
    return parse(arguments, ::getcwd(folder, sizeof folder) ? QByteArray(folder) : QByteArray("."));
}

}  // namespace tweenery
