#pragma once

#include <QByteArrayList>
#include <QString>

namespace tweenery {

/// What the program was asked for. Made before there is a display, or an application object.
struct CommandLine {
    enum class Action { Run, ShowHelp, ShowVersion, Refuse };
    Action action = Action::Run;
    QByteArrayList
        projects;  // absolute paths, as the system has them; a package for what lies in it
    bool isNewInstance = false;
    QString message;  // to print: on standard error when refused, which ends with exit code 2

    /// `workingFolder`: what paths are relative to, as the system has it.
    static CommandLine parse(const QByteArrayList& arguments, const QByteArray& workingFolder);
    /// Of main(): without the program's name, from the working folder of the process. A second
    /// start sends its `projects` on as they are.
    static CommandLine ofProcess(int argc, const char* const* argv);
};

}  // namespace tweenery
