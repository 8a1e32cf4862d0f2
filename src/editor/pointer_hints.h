#pragma once

#include <QString>
#include <vector>

namespace tweenery {

/// What a press, a wheel or a key does on the canvas beside the commands of the menu.
struct PointerHint {
    QString input;
    QString effect;
};

/// For the list of shortcuts and the guide.
const std::vector<PointerHint>& pointerHints();

}  // namespace tweenery
