#pragma once

#include <QColor>
#include <QString>

namespace tweenery {

/// Which picture a name of the code means: the file, and what the name says of its colours.
struct IconSource {
    QString file;           // without folder and extension
    bool hasPlate = false;  // in white on a plate, for an active tool
    QColor tint = {};       // invalid: whatever the caller wants
};

/// "group_active" is `group` on a plate, "folder_light_icon" `folder` in white, and so on. A name
/// that no rule knows is that of a file.
IconSource iconSource(const QString& name);

}  // namespace tweenery
