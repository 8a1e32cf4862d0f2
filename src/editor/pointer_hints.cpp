#include "editor/pointer_hints.h"

using namespace Qt::StringLiterals;

namespace tweenery {

const std::vector<PointerHint>& pointerHints() {
    static const std::vector<PointerHint> hints = {
        {u"Space held down"_s, u"Hand Tool"_s},
        {u"Ctrl held down"_s, u"Direct Selection Tool"_s},
        {u"Shift+Click"_s, u"Add to or take from the selection"_s},
        {u"Alt during a move"_s, u"Copy, in setup"_s},
        {u"Shift during a move"_s, u"Move across or up and down only"_s},
        {u"Shift during a scale"_s, u"Keep the proportions"_s},
        {u"Alt during a scale"_s, u"Scale about the anchor point"_s},
        {u"Shift during a rotation"_s, u"Rotate in steps of 15°"_s},
        {u"Alt+Click"_s, u"Place the anchor point of the one selected element, in setup"_s},
        {u"Escape during a drag"_s, u"Put everything back"_s},
        {u"Wheel"_s, u"Scroll"_s},
        {u"Shift+Wheel"_s, u"Scroll across"_s},
        {u"Ctrl+Wheel, or pinch"_s, u"Zoom about the pointer"_s},
        {u"Drag with the middle button"_s, u"Scroll"_s},
        {u"0 to 9"_s, u"Opacity of the selected elements: 10 % to 90 %, 0 for 100 %"_s},
        {u"Tab, Shift+Tab"_s, u"Select the next or previous element"_s},
    };
    return hints;
}

}  // namespace tweenery
