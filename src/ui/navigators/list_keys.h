#pragma once

#include <qnamespace.h>
#include <initializer_list>

class QEvent;
class QKeyEvent;

namespace tweenery {

/// A key that moves about in a list; all others are commands of the window.
bool isListKey(const QKeyEvent& event);

/// For a list's event(): takes the list's own keys before the window's shortcuts get them. `more`
/// are keys without modifiers that it has beside. True when the event is done with.
bool keepsListKey(QEvent& event, std::initializer_list<Qt::Key> more = {});

}  // namespace tweenery
