#pragma once

#include <QElapsedTimer>
#include <memory>

#include "ui/widgets/progress_panel.h"

namespace tweenery {

/// Work of seconds that belongs to the window's own thread and comes in small things: between them
/// the program goes on painting. From the first second on a panel over the window tells how far it
/// is, and nothing but its Stop takes any input; before, input waits.
class WorkInTurns {
 public:
    /// The window outlives it.
    explicit WorkInTurns(QWidget& window) : m_window(window) {}

    /// So many things are done of `count`; all of them: the work is over. False when the user
    /// pressed Stop.
    bool goesOn(const QString& work, const QString& step, size_t done, size_t count);

 private:
    QWidget& m_window;
    std::unique_ptr<ProgressPanel> m_panel;  // while there is work
    QElapsedTimer m_sincePainted;
    bool m_isStopped = false;

    void begin(const QString& work);
};

}  // namespace tweenery
