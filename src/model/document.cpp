#include "model/document.h"

#include "base/errors.h"
#include "base/path_name.h"

using namespace Qt::StringLiterals;

namespace tweenery {

Alert alertForNewerProject(const QString& name) {
    return {
        u"Tweenery Cannot Open This Project"_s,
        u"%1 was created by a newer version of Tweenery. Please upgrade Tweenery to use the project."_s
            .arg(name),
        {u"Ok"_s},
        {}};
}

bool PCDocument::readFromPath(const QString& path) {
    const Opened opened = open(readPackage(path));
    if (!opened.project) { return false; }
    if (opened.isUpdated) { savePackage(*opened.project->fileWrapper(), path); }
    m_path = path;
    setProject(opened.project);
    setDisplayName(path);
    return true;
}

bool PCDocument::readFromFileWrapper(const FileWrapper::Ptr& root) {
    const Opened opened = open(root);
    if (opened.project) { setProject(opened.project); }
    return opened.project != nullptr;
}

PCDocument::Opened PCDocument::open(const FileWrapper::Ptr& root) {
    const int32_t stored = PCProject::modelVersionOfProjectFileWrapper(*root);
    const QString name = root->filename();
    if (stored > PCProject::currentModelVersion()) {
        m_alerts.runModal(alertForNewerProject(name));
        return {};
    }
    const bool isOlder = stored < PCProject::currentModelVersion();
    if (isOlder && !userAgreesToUpdate(name)) { return {}; }
    return {PCProject::projectWithFileWrapper(root, m_log, m_backupDirectory), isOlder};
}

bool PCDocument::userAgreesToUpdate(const QString& name) {
    const AlertAnswer answer = m_alerts.runModal(
        {u"Project Needs to Be Updated"_s,
         u"%1 is an older version and needs to be updated. Do you want to do that now?"_s.arg(name),
         {u"Yes"_s, u"No"_s},
         {}});
    return answer.button == 0;
}

FileWrapper::Ptr PCDocument::fileWrapperOfProject() {
    return project()->fileWrapper();
}

DocumentSnapshot PCDocument::snapshot() {
    const FileWrapper::Ptr root = fileWrapperOfProject();
    return {root->snapshot(), m_project->projectName(), m_project,
            m_project->undoManager().changeCount()};
}

PCProject::Ptr DocumentSnapshot::projectForReading() const {
    const FileWrapper::Ptr root = FileWrapper::directory();
    package->pc_copySubFileWrappersToFileWrapper(*root);
    PCProject::Ptr reader = PCProject::projectForReadingWithFileWrapper(root);
    reader->setProjectName(projectName);
    return reader;
}

void PCDocument::didWrite(const DocumentSnapshot& snapshot, const WrittenPackage& written,
                          const QString& path) {
    written.becomeStored();
    if (snapshot.project.lock() != m_project) { return; }
    m_savedChangeCount = snapshot.changeCount;
    if (path == m_path) { return; }
    m_path = path;
    setDisplayName(path);
}

void PCDocument::save(OnDiskChange policy) {
    assertContract(!m_path.isEmpty(), u"a document without a place cannot be saved there"_s);
    write(m_path, policy);
}

void PCDocument::saveAs(const QString& path) {
    write(path, OnDiskChange::Overwrite);
}

void PCDocument::write(const QString& path, OnDiskChange policy) {
    const DocumentSnapshot taken = snapshot();
    didWrite(taken, writeSnapshot(taken.package, path, policy), path);
}

bool PCDocument::revert() {
    if (m_path.isEmpty()) { return false; }
    try {
        return readFromPath(m_path);
    } catch (const InputError& error) {
        m_alerts.runModal({u"The Project Could Not Be Reverted"_s,
                           u"%1 %2. Nothing was changed."_s.arg(error.entry(), error.reason()),
                           {u"Ok"_s},
                           {}});
        return false;
    }
}

const PCProject::Ptr& PCDocument::project() {
    if (!m_project) { setProject(PCProject::init()); }
    return m_project;
}

void PCDocument::setProject(const PCProject::Ptr& project) {
    if (project == m_project) { return; }
    m_project = project;
    m_project->setProjectName(m_displayName);
    m_savedChangeCount = m_project->undoManager().changeCount();
}

void PCDocument::setDisplayName(const QString& name) {
    m_displayName = withoutPathExtension(lastPathComponent(name));
    if (m_project) { m_project->setProjectName(m_displayName); }
}

bool PCDocument::isEdited() const {
    return m_project && m_project->undoManager().changeCount() != m_savedChangeCount;
}

}  // namespace tweenery
