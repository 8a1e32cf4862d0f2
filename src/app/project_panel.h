#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace tweenery {

/// Asks for projects, and for places of projects.
class ProjectPanelPort {
 public:
    virtual ~ProjectPanelPort() = default;
    /// Paths of packages; none when cancelled.
    virtual QStringList chooseProjects(QWidget* parent) = 0;
    /// A path that ends in the suffix, after the user agreed to replace what is there; null when
    /// cancelled. `name` is offered, without the suffix, in `folder` or where was last saved.
    virtual QString choosePlace(QWidget* parent, const QString& message, const QString& name,
                                const QString& folder) = 0;
};

}  // namespace tweenery
