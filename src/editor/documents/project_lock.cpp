#include "editor/documents/project_lock.h"

#include <QCryptographicHash>
#include <QDir>
#include <QSysInfo>

#include "editor/documents/project_path.h"
#include "storage/system_names.h"

namespace tweenery {

using namespace Qt::StringLiterals;

QString ProjectLock::Holder::description() const {
    const QString process = u"process %1"_s.arg(processId);
    return hostName.isEmpty() || hostName == QSysInfo::machineHostName()
               ? process
               : process + u" on %1"_s.arg(printableName(hostName));
}

ProjectLock::ProjectLock(const QString& folder, const QString& path) {
    const QByteArray place = systemPath(canonicalProjectPath(path));
    const QByteArray name = QCryptographicHash::hash(place, QCryptographicHash::Sha256).toHex();
    QDir().mkpath(folder);
    m_file = folder + u'/' + QString::fromLatin1(name.first(32)) + u".lock"_s;
}

bool ProjectLock::tryLock() {
    if (m_lock) { return true; }
    auto lock = std::make_unique<QLockFile>(m_file);
    lock->setStaleLockTime(0);  // however long a project is open
    if (!lock->tryLock() && lock->error() == QLockFile::LockFailedError) { return false; }
    m_lock = std::move(lock);
    return true;
}

std::optional<ProjectLock::Holder> ProjectLock::holder() const {
    Holder holder;
    QString program;
    if (!QLockFile(m_file).getLockInfo(&holder.processId, &holder.hostName, &program)) {
        return {};
    }
    return holder;
}

}  // namespace tweenery
