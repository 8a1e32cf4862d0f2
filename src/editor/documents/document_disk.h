#pragma once

#include <QTimer>
#include <deque>

#include "editor/documents/disk_thread.h"

namespace tweenery {

/// The two disks that an open project is written to, each on a thread of its own: its place and the
/// one of recovery copies. Tasks begin when both are idle; where the place does not let go,
/// recovery copies can be written all the same.
class DocumentDisk {
 public:
    /// After which the place counts as hung, in milliseconds.
    static constexpr int kAnswerTime = 10'000;

    /// `isReady` is called when canKeepRecovery() and no task waits any more, `isHung` when the
    /// place does not answer.
    DocumentDisk(std::function<void()> isReady, std::function<void()> isHung);

    /// `task` uses the functions below at once, or not at all; what it adds in their `done` belongs
    /// to it.
    void whenIdle(std::function<void()> task);
    bool isIdle() const { return !m_isPlaceBusy && m_recoveries == 0; }
    bool isHung() const { return m_isHung; }
    /// Until the work under way at the place comes back.
    void setHung();
    bool canKeepRecovery() const { return m_recoveries == 0 && (!m_isPlaceBusy || m_isHung); }

    // `work` runs on the thread and throws nothing; `done` is called here.

    template <class Result>
    void atPlace(std::function<Result()> work, std::function<void(Result)> done) {
        m_isPlaceBusy = true;
        m_answerTimer.start();
        m_place.run<Result>(std::move(work), [this, done = std::move(done)](Result result) {
            m_isPlaceBusy = m_isHung = false;
            m_answerTimer.stop();
            done(std::move(result));
            next();
        });
    }
    template <class Result>
    void forRecovery(std::function<Result()> work, std::function<void(Result)> done) {
        ++m_recoveries;
        m_recovery.run<Result>(std::move(work), [this, done = std::move(done)](Result result) {
            --m_recoveries;
            done(std::move(result));
            next();
        });
    }
    DiskThread& placeThread() { return m_place; }

 private:
    const std::function<void()> m_isReady;
    const std::function<void()> m_didHang;
    bool m_isPlaceBusy = false;
    bool m_isHung = false;
    int m_recoveries = 0;  // that are under way
    std::deque<std::function<void()>> m_waiting;
    QTimer m_answerTimer;
    DiskThread m_recovery;
    DiskThread m_place;

    void next();
};

}  // namespace tweenery
