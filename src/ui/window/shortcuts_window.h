#pragma once

class QWidget;

namespace tweenery {

/// Shows the list of all shortcuts, with what keys and pointer do on the canvas, beside the window
/// `parent`, which goes on working. One such list for each window; shown again it comes to the
/// front.
void showShortcuts(QWidget& parent);

}  // namespace tweenery
