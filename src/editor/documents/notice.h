#pragma once

#include <QDateTime>
#include <QString>
#include <vector>

namespace tweenery {

/// What the bar across the canvas tells, and what can be done about it. It waits; nothing is
/// blocked.
struct Notice {
    enum class Topic { Recovered, OnDisk, NotSaved };
    enum class Kind { Information, Warning, Failure };
    enum class Action { GoBackToSaved, Keep, Reload, KeepMine, PutBack, SaveElsewhere, TryAgain };
    struct Button {
        QString title;
        Action action;
        bool operator==(const Button&) const = default;
    };

    Topic topic = Topic::Recovered;
    Kind kind = Kind::Information;
    QString text;
    std::vector<Button> buttons;
    bool operator==(const Notice&) const = default;
};

/// At most one of each topic, the gravest last.
class NoticeList {
 public:
    /// False when it is there already; else it takes the place of the one of its topic.
    bool set(const Notice& notice);
    /// False when there is none.
    bool remove(Notice::Topic topic);
    bool contains(Notice::Topic topic) const;
    const std::vector<Notice>& all() const { return m_notices; }

 private:
    std::vector<Notice> m_notices;
};

/// Work is back that a process left behind. `canGoBack`: there is a saved version.
Notice noticeOfRecovery(const QDateTime& time, const QDateTime& now, bool canGoBack);
Notice noticeOfChangeOnDisk();
/// The project was moved or removed.
Notice noticeOfAbsence();
/// `reason` as failureReason() gives it.
Notice noticeOfFailure(const QString& reason, bool hasRecoveryCopy);

/// "14:02", or with the date on another day.
QString momentText(const QDateTime& time, const QDateTime& now);

}  // namespace tweenery
