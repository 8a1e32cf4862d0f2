#pragma once

#include <QCursor>

#include "editor/canvas/cursor_choice.h"

namespace tweenery {

/// The cursor of the canvas as the desktop shows it, sharp at `devicePixelRatio` pixels a point.
/// Cursors of a drag are kept for each whole degree.
QCursor canvasCursor(const CanvasCursor& cursor, double devicePixelRatio);

}  // namespace tweenery
