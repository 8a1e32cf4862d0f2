#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <chrono>

namespace tweenery {

/// A program to run, and what it may take.
struct ChildTask {
    QString program;  // a path
    QStringList arguments;
    QString folder;      // where it works
    QString inputFile;   // its standard input; empty for nothing
    QString outputFile;  // takes its standard output; empty: see ChildResult
    std::chrono::seconds processorLimit{60};
    /// By the wall's clock, however busy the machine is with other things.
    std::chrono::milliseconds timeLimit{600'000};
};

/// What became of it.
struct ChildResult {
    bool hasStarted = false;
    bool wasInTime = true;
    int exitCode = -1;  // -1 unless it came to its end
    QByteArray output;  // both outputs; only the errors when the other went to a file
};

/// Runs the program by itself: no shell, no open files of ours, no core file, and at the end of
/// its times it is killed. Waits for it. Throws InputError once this program is asked to stop. May
/// be used from any thread.
ChildResult runChild(const ChildTask& task);

}  // namespace tweenery
