#pragma once

#include <QString>

class QWidget;

namespace tweenery {

/// Shows the program's name, version and licence, and what it is built on.
void showAbout(QWidget* parent);

/// The address of the user's guide: the installed one, or that of the source tree in which the
/// program was built. Null when there is neither.
QString helpUrl();

}  // namespace tweenery
