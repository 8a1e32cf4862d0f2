#include "editor/documents/document_disk.h"

namespace tweenery {

DocumentDisk::DocumentDisk(std::function<void()> isReady, std::function<void()> isHung)
    : m_isReady(std::move(isReady)), m_didHang(std::move(isHung)) {
    m_answerTimer.setSingleShot(true);
    m_answerTimer.setInterval(kAnswerTime);
    QObject::connect(&m_answerTimer, &QTimer::timeout, &m_answerTimer, [this] { setHung(); });
}

void DocumentDisk::whenIdle(std::function<void()> task) {
    m_waiting.push_back(std::move(task));
    next();
}

void DocumentDisk::setHung() {
    if (!m_isPlaceBusy || m_isHung) { return; }
    m_isHung = true;
    m_didHang();
}

void DocumentDisk::next() {
    while (isIdle() && !m_waiting.empty()) {
        const auto task = std::move(m_waiting.front());
        m_waiting.pop_front();
        task();
    }
    if (canKeepRecovery()) { m_isReady(); }
}

}  // namespace tweenery
