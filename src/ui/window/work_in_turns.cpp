#include "ui/window/work_in_turns.h"

#include <QCoreApplication>

namespace tweenery {
namespace {

constexpr int kTurn = 20;  // ms without painting

}  // namespace

bool WorkInTurns::goesOn(const QString& work, const QString& step, size_t done, size_t count) {
    if (done >= count) {
        const bool wasShown = m_panel && m_panel->isVisible();
        m_panel.reset();
        if (wasShown) { m_window.activateWindow(); }
        return true;
    }
    if (!m_panel) { begin(work); }
    if (m_sincePainted.elapsed() < kTurn) { return !m_isStopped; }
    m_panel->setProgress(step, static_cast<int>(done), static_cast<int>(count));
    QCoreApplication::processEvents(m_panel->isVisible() ? QEventLoop::AllEvents
                                                         : QEventLoop::ExcludeUserInputEvents);
    m_sincePainted.restart();
    return !m_isStopped;
}

void WorkInTurns::begin(const QString& work) {
    m_isStopped = false;
    m_panel = std::make_unique<ProgressPanel>(&m_window);
    m_panel->setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    m_panel->setWindowModality(Qt::ApplicationModal);
    m_panel->setWindowTitle(work);
    m_panel->start(work);
    m_panel->move(m_window.mapToGlobal(m_window.rect().center()) - m_panel->rect().center());
    QObject::connect(m_panel.get(), &ProgressPanel::stopped, [this] { m_isStopped = true; });
    m_sincePainted.start();
}

}  // namespace tweenery
