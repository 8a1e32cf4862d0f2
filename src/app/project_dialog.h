#pragma once

#include "app/project_panel.h"
#include "base/ports.h"

namespace tweenery {

/// Asks by ProjectChooser, in which a package is a document.
class ProjectDialog : public ProjectPanelPort {
 public:
    /// `alerts` asks before a project is replaced; it is not owned.
    explicit ProjectDialog(AlertPort& alerts) : m_alerts(alerts) {}

    QStringList chooseProjects(QWidget* parent) override;
    QString choosePlace(QWidget* parent, const QString& message, const QString& name,
                        const QString& folder) override;

 private:
    AlertPort& m_alerts;
};

}  // namespace tweenery
