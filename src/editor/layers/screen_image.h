#pragma once

#include <QImage>
#include <QString>

namespace tweenery {

class EditContext;

/// An image of a project as the screen shows it. Drawn at its scale it has the size of its set in
/// points, whichever artwork was chosen.
struct ScreenImage {
    QImage image;
    double scale = 1;  // pixels for one point
};

/// The artwork for the project's backing scale. Null when there is no set of that name, or its
/// artwork cannot be read.
ScreenImage screenImageWithName(EditContext& project, const QString& name);

}  // namespace tweenery
