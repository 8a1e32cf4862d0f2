#include "editor/timeline/displaylink_adapter.h"

#include "base/errors.h"

using namespace Qt::StringLiterals;

namespace tweenery {

PCDisplaylinkAdapter::PCDisplaylinkAdapter(const MediaClock& clock, LogPort& log, Target target)
    : m_clock(clock), m_log(log), m_target(std::move(target)) {}

void PCDisplaylinkAdapter::setFrameInterval(int64_t refreshes) {
    assertContract(refreshes >= 1, u"a frame takes at least one refresh"_s);
    m_frameInterval = refreshes;
}

void PCDisplaylinkAdapter::setPaused(bool paused) {
    m_isPaused = paused;
    if (paused) { return; }
    m_internalFrameCount = 0;
    m_hasTicked = false;
    m_refreshPeriod = 0;
}

void PCDisplaylinkAdapter::invalidate() {
    m_isPaused = true;
    m_target = nullptr;
}

void PCDisplaylinkAdapter::tick() {
    if (m_isPaused) { return; }
    measureRefresh();
    ++m_internalFrameCount;
    if (m_internalFrameCount < m_frameInterval) { return; }
    m_internalFrameCount = 0;
    if (!m_target) { return; }
    const Target target = m_target;  // which may invalidate
    target();
}

void PCDisplaylinkAdapter::measureRefresh() {
    const double now = m_clock.now();
    if (m_hasTicked) { m_refreshPeriod = now - m_lastRefresh; }
    m_lastRefresh = now;
    m_hasTicked = true;
}

void PCDisplaylinkAdapter::addToRunLoop(const QString&) {
    warnNotImplemented(u"-[PCDisplaylinkAdapter addToRunLoop:forMode:]"_s);
}

void PCDisplaylinkAdapter::removeFromRunLoop(const QString&) {
    warnNotImplemented(u"-[PCDisplaylinkAdapter removeFromRunLoop:forMode:]"_s);
}

double PCDisplaylinkAdapter::timestamp() const {
    warnNotImplemented(u"-[PCDisplaylinkAdapter timestamp]"_s);
    return 0;
}

void PCDisplaylinkAdapter::warnNotImplemented(const QString& method) const {
    m_log.writeLine(u"Warning method is not implemented: %1"_s.arg(method));
}

}  // namespace tweenery
