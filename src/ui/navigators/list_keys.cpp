#include "ui/navigators/list_keys.h"

#include <QKeyEvent>
#include <algorithm>

namespace tweenery {
namespace {

// Arrow keys always say that they lie on a keypad on some desktops.
Qt::KeyboardModifiers modifiersOf(const QKeyEvent& event) {
    return event.modifiers() & ~Qt::KeypadModifier;
}

}  // namespace

bool isListKey(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = modifiersOf(event);
    if (modifiers != Qt::NoModifier && modifiers != Qt::ShiftModifier) { return false; }
    switch (event.key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Home:
        case Qt::Key_End:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            return true;
        default:
            return false;
    }
}

bool keepsListKey(QEvent& event, std::initializer_list<Qt::Key> more) {
    if (event.type() != QEvent::ShortcutOverride) { return false; }
    const auto& key = static_cast<const QKeyEvent&>(event);
    const bool isOneMore = modifiersOf(key) == Qt::NoModifier &&
                           std::find(more.begin(), more.end(), key.key()) != more.end();
    if (!isListKey(key) && !isOneMore) { return false; }
    event.accept();
    return true;
}

}  // namespace tweenery
