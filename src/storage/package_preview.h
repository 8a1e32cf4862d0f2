#pragma once

#include <QImage>
#include <QString>

namespace tweenery {

/// The picture of a project's canvas that its package at `path` holds for lists of projects, at
/// most 1024 pixels a side. Null when there is none, or none that could be shown. Reads a regular
/// file only, through no link inside the package.
QImage packagePreview(const QString& path);

}  // namespace tweenery
