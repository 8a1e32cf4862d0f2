#pragma once

#include <sys/types.h>

#include <QStringList>

#include "bench/big_project.h"

namespace tweenery::bench {

/// A program with a window, started in a home of its own, and killed at the end.
class StartedProgram {
 public:
    /// Returns when its first window is painted. Throws std::runtime_error when it never is.
    explicit StartedProgram(const QStringList& commandLine);
    ~StartedProgram();
    StartedProgram(const StartedProgram&) = delete;
    StartedProgram& operator=(const StartedProgram&) = delete;

    /// From before the start to the first paint.
    double millisecondsToFirstPaint() const { return m_milliseconds; }
    /// Anonymous resident memory (RssAnon), in kiB.
    int anonymousKibibytes() const;
    /// Clock ticks that all its threads have used.
    long ticks() const;

    /// A bare main window with a menu.
    static QStringList bareWindow();
    /// Tweenery on a project, or on none.
    static QStringList tweenery(const QString& project = {});

 private:
    ScratchDirectory m_home;
    pid_t m_process = 0;
    double m_milliseconds = 0;
};

/// The main function of bareWindow().
int runBareWindow(int argc, char** argv);

}  // namespace tweenery::bench
