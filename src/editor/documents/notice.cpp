#include "editor/documents/notice.h"

#include <QLocale>
#include <algorithm>

namespace tweenery {

using namespace Qt::StringLiterals;

bool NoticeList::set(const Notice& notice) {
    if (std::find(m_notices.begin(), m_notices.end(), notice) != m_notices.end()) { return false; }
    remove(notice.topic);
    const auto isGraver = [&](const Notice& other) { return other.topic > notice.topic; };
    m_notices.insert(std::find_if(m_notices.begin(), m_notices.end(), isGraver), notice);
    return true;
}

bool NoticeList::remove(Notice::Topic topic) {
    return std::erase_if(m_notices, [&](const auto& notice) { return notice.topic == topic; }) > 0;
}

bool NoticeList::contains(Notice::Topic topic) const {
    return std::any_of(m_notices.begin(), m_notices.end(),
                       [&](const Notice& notice) { return notice.topic == topic; });
}

Notice noticeOfRecovery(const QDateTime& time, const QDateTime& now, bool canGoBack) {
    std::vector<Notice::Button> buttons;
    if (canGoBack) { buttons.push_back({u"Go Back to Saved"_s, Notice::Action::GoBackToSaved}); }
    buttons.push_back({u"Keep"_s, Notice::Action::Keep});
    return {
        Notice::Topic::Recovered, Notice::Kind::Information,
        u"Tweenery was closed unexpectedly. Your work of %1 is back."_s.arg(momentText(time, now)),
        buttons};
}

Notice noticeOfChangeOnDisk() {
    return {Notice::Topic::OnDisk,
            Notice::Kind::Warning,
            u"This project was changed on disk by another program."_s,
            {{u"Reload"_s, Notice::Action::Reload}, {u"Keep Mine"_s, Notice::Action::KeepMine}}};
}

Notice noticeOfAbsence() {
    return {Notice::Topic::OnDisk,
            Notice::Kind::Warning,
            u"This project was moved or removed by another program."_s,
            {{u"Save Elsewhere…"_s, Notice::Action::SaveElsewhere},
             {u"Put Back"_s, Notice::Action::PutBack}}};
}

Notice noticeOfFailure(const QString& reason, bool hasRecoveryCopy) {
    return {Notice::Topic::NotSaved,
            Notice::Kind::Failure,
            u"Not saved: %1.%2"_s.arg(reason,
                                      hasRecoveryCopy ? u" A recovery copy is safe."_s : QString()),
            {{u"Save Elsewhere…"_s, Notice::Action::SaveElsewhere},
             {u"Try Again"_s, Notice::Action::TryAgain}}};
}

QString momentText(const QDateTime& time, const QDateTime& now) {
    const bool isToday = time.date() == now.date();
    return QLocale(QLocale::English).toString(time, isToday ? u"HH:mm"_s : u"d MMMM, HH:mm"_s);
}

}  // namespace tweenery
