#include "ui/window/toolbar_items.h"

#include "base/user_defaults.h"
#include "ui/widgets/sizes.h"

namespace tweenery {

namespace {

using namespace Qt::StringLiterals;
using Kind = ToolbarItemKind;

const QString kOrderKey = u"toolbarItems"_s;

const std::vector<ToolbarItem>& table() {
    using namespace toolbarItems;
    static const std::vector<ToolbarItem> items = {
        {flexibleSpace, Kind::FlexibleSpace, u"Flexible Space"_s, {}, {}, {}, {}},
        {space, Kind::Space, u"Space"_s, {}, {}, {}, {}},
        {plainSeparator, Kind::Separator, u"Separator"_s, {}, {}, {}, {}},
        {verticalSeparator, Kind::Separator, u""_s, {}, {}, {}, {}},
        {importExport, Kind::Button, u"Export"_s,
         u"Launches Export Module (Ctrl+Enter): in here you can preview all your animations and "
         u"set code export options."_s,
         u"Export"_s, u"exportGeneratedCode"_s, u"export"_s},
        {forward, Kind::Button, u"Forward"_s, u"Brings Element up one level (Ctrl+])"_s,
         u"Forward"_s, u"moveElementsForward"_s, u"forward"_s},
        {backward, Kind::Button, u"Backward"_s, u"Brings Element down one level (Ctrl+[)"_s,
         u"Backward"_s, u"moveElementsBackward"_s, u"backward"_s},
        {group, Kind::Button, u"Group"_s, u"Groups Elements together into a folder (Ctrl+G)"_s,
         u"Group"_s, u"groupElements"_s, u"group"_s},
        {ungroup, Kind::Button, u"Ungroup"_s, u"Ungroups Folders (Shift+Ctrl+G)"_s, u"Ungroup"_s,
         u"ungroupElements"_s, u"ungroup"_s},
        {select, Kind::Toggle, u"Select"_s, u"Move Tool (V)"_s, u"Move Tool"_s,
         u"changeCursorStateToSelection"_s, u"cursor_button"_s},
        {direct, Kind::Toggle, u"Direct"_s, u"Direct Selection Tool (A)"_s,
         u"Direct Selection Tool"_s, u"changeCursorStateToDirect"_s, u"direct_cursor_button"_s},
        {hand, Kind::Toggle, u"Hand"_s, u"Hand Tool (H) or (Hold Spacebar)"_s, u"Hand Tool"_s,
         u"changeCursorStateToHand"_s, u"hand_button"_s},
        {additive,
         Kind::GroupFx,
         u"GroupFX"_s,
         u"Activates GroupFX: Works when a group is selected. Each element will receive variable "
         u"strength of every property change made while active."_s,
         u"GroupFX"_s,
         {},
         u"additive_button"_s},
        {zoomCenter, Kind::Button, u"Center"_s, u"Centers the Canvas View (Ctrl+0)"_s, u"Center"_s,
         u"zoomCenter"_s, u"zoom_center"_s},
        {zoomIn, Kind::Button, u"In"_s, u"Zooms In on Canvas (Ctrl++)"_s, u"In"_s, u"zoomIn"_s,
         u"zoom_in"_s},
        {zoomOut, Kind::Button, u"Out"_s, u"Zooms Out on Canvas (Ctrl+-)"_s, u"Out"_s, u"zoomOut"_s,
         u"zoom_out"_s},
        {panels, Kind::Panels, u"Panels"_s, u"Toggle Panels"_s, u"Panels"_s, {}, {}},
        {play, Kind::Toggle, u"Play"_s, u"Plays current animation from playhead (Enter)"_s,
         u"Play"_s, u"togglePlayPause"_s, u"play"_s},
    };
    return items;
}

}  // namespace

const ToolbarItem* toolbarItem(const QString& identifier) {
    const auto found = std::find_if(
        table().begin(), table().end(),
        [&identifier](const ToolbarItem& item) { return item.identifier == identifier; });
    return found == table().end() ? nullptr : &*found;
}

namespace toolbarItems {

const QStringList& allowed() {
    static const QStringList identifiers = {
        flexibleSpace, plainSeparator, space,    verticalSeparator,
        importExport,  forward,        backward, group,
        ungroup,       select,         direct,   hand,
        zoomCenter,    zoomIn,         zoomOut,  panels,
        play};
    return identifiers;
}

const QStringList& byDefault() {
    static const QStringList identifiers = {importExport,
                                            forward,
                                            backward,
                                            group,
                                            ungroup,
                                            verticalSeparator,
                                            play,
                                            flexibleSpace,
                                            verticalSeparator,
                                            select,
                                            direct,
                                            hand,
                                            verticalSeparator,
                                            flexibleSpace,
                                            zoomCenter,
                                            zoomIn,
                                            zoomOut,
                                            verticalSeparator,
                                            space,
                                            space,
                                            panels};
    return identifiers;
}

QStringList ofUser() {
    QStringList identifiers = UserDefaults::standard().value(kOrderKey).toStringList();
    erase_if(identifiers,
             [](const QString& identifier) { return !allowed().contains(identifier); });
    return identifiers.isEmpty() ? byDefault() : identifiers;
}

void setOfUser(const QStringList& identifiers) {
    if (identifiers == byDefault()) {
        UserDefaults::standard().removeValue(kOrderKey);
    } else {
        UserDefaults::standard().setValue(kOrderKey, identifiers);
    }
    UserDefaults::standard().synchronize();
}

bool mayRepeat(const QString& identifier) {
    const ToolbarItem* item = toolbarItem(identifier);
    return item && (item->kind == Kind::Separator || item->kind == Kind::Space ||
                    item->kind == Kind::FlexibleSpace);
}

}  // namespace toolbarItems

ToolbarPlaces placeToolbarItems(const std::vector<ToolbarSlot>& items, int width) {
    int needed = 2 * sizes::toolbarMargin - sizes::toolbarGap;
    int flexibleCount = 0;
    for (const ToolbarSlot& item : items) {
        needed += item.width + sizes::toolbarGap;
        flexibleCount += item.isFlexible ? 1 : 0;
    }
    ToolbarPlaces places = {{}, needed > width};
    const int share = flexibleCount > 0 ? std::max(0, width - needed) / flexibleCount : 0;
    const int room = places.overflows ? sizes::toolbarItem + sizes::toolbarGap : 0;
    const int right = width - sizes::toolbarMargin - room;
    int x = sizes::toolbarMargin;
    for (const ToolbarSlot& item : items) {
        const int itemWidth = item.width + (item.isFlexible ? share : 0);
        if (x + itemWidth > right && places.overflows) { break; }
        places.x.push_back(x);
        x += itemWidth + sizes::toolbarGap;
    }
    return places;
}

}  // namespace tweenery
