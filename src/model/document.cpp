#include "model/document.h"

#include <QFileInfo>

#include "base/errors.h"

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
    if (!readFromFileWrapper(readPackage(path))) { return false; }
    m_path = path;
    setDisplayName(QFileInfo(path).fileName());
    if (m_needsSaveAfterUpdate) { save(); }
    return true;
}

bool PCDocument::readFromFileWrapper(const FileWrapper::Ptr& root) {
    const int32_t stored = PCProject::modelVersionOfProjectFileWrapper(*root);
    const QString name = root->filename();
    if (stored > PCProject::currentModelVersion()) {
        m_alerts.runModal(alertForNewerProject(name));
        return false;
    }
    const bool isOlder = stored < PCProject::currentModelVersion();
    if (isOlder && !userAgreesToUpdate(name)) { return false; }
    setProject(PCProject::projectWithFileWrapper(root, m_log));
    m_needsSaveAfterUpdate = isOlder;
    return true;
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

void PCDocument::save(OnDiskChange policy) {
    assertContract(!m_path.isEmpty(), u"a document without a place cannot be saved there"_s);
    savePackage(*fileWrapperOfProject(), m_path, policy);
    didSave();
}

void PCDocument::saveAs(const QString& path) {
    savePackage(*fileWrapperOfProject(), path, OnDiskChange::Overwrite);
    m_path = path;
    setDisplayName(QFileInfo(path).fileName());
    didSave();
}

void PCDocument::didSave() {
    m_needsSaveAfterUpdate = false;
    m_savedChangeCount = m_project->undoManager().changeCount();
}

bool PCDocument::revert() {
    if (m_path.isEmpty()) { return false; }
    readFromPath(m_path);
    return true;
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
    m_displayName = QFileInfo(name).completeBaseName();
    if (m_project) { m_project->setProjectName(m_displayName); }
}

bool PCDocument::isEdited() const {
    return m_project && m_project->undoManager().changeCount() != m_savedChangeCount;
}

}  // namespace tweenery
