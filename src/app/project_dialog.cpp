#include "app/project_dialog.h"

#include "app/project_chooser.h"

using namespace Qt::StringLiterals;

namespace tweenery {

QStringList ProjectDialog::chooseProjects(QWidget* parent) {
    ProjectChooser chooser(ProjectChooser::Purpose::Open, u"Open Projects"_s, m_alerts, parent);
    chooser.exec();
    return chooser.paths();
}

QString ProjectDialog::choosePlace(QWidget* parent, const QString& message, const QString& name,
                                   const QString& folder) {
    ProjectChooser chooser(ProjectChooser::Purpose::Save, message, m_alerts, parent);
    // A project that has no place yet lies in ".".
    if (folder.startsWith(u'/')) { chooser.setFolder(folder); }
    chooser.setName(name);
    chooser.exec();
    return chooser.paths().value(0);
}

}  // namespace tweenery
