#include "ui/widgets/icon_names.h"

#include <QHash>

#include "ui/widgets/colors.h"

namespace tweenery {

namespace {

using namespace Qt::StringLiterals;

// Names whose picture or colour no suffix tells.
const QHash<QString, IconSource>& irregularNames() {
    const PictureColors& colors = pictureColors();
    static const QHash<QString, IconSource> names = {
        {u"play_active"_s, {u"stop"_s, true, {}}},
        {u"property_folder_icon"_s, {u"folder"_s}},
        {u"property_element_icon"_s, {u"image"_s}},
        {u"locked_dark"_s, {u"locked"_s, false, colors.shutPadlock}},
        {u"loop_off_box"_s, {u"loop_off_box"_s, false, colors.loopOff}},
        {u"loop_icon"_s, {u"loop_icon"_s, false, colors.loopMarker}},
        {u"loop_icon_reverse"_s, {u"loop_icon_reverse"_s, false, colors.loopMarker}},
        {u"loop_on_box"_s, {u"loop_on_box"_s, false, colors.loopOn}},
        {u"loop_reverse_box"_s, {u"loop_reverse_box"_s, false, colors.loopOn}},
    };
    return names;
}

struct Suffix {
    QString text;
    bool hasPlate;
    QColor tint;
};

}  // namespace

IconSource iconSource(const QString& name) {
    if (const auto irregular = irregularNames().find(name); irregular != irregularNames().end()) {
        return *irregular;
    }
    if (name.startsWith(u"ease_icon_dark_")) { return {name, false, pictureColors().easing}; }
    static const Suffix suffixes[] = {
        {u"_active"_s, true, {}},
        {u"_dark_icon"_s, false, pictureColors().onRow},
        {u"_light_icon"_s, false, pictureColors().onSelectedRow},
        {u"_dark"_s, false, pictureColors().onRow},
        {u"_light"_s, false, pictureColors().onSelectedRow},
    };
    for (const Suffix& suffix : suffixes) {
        if (name.endsWith(suffix.text)) {
            return {name.chopped(suffix.text.size()), suffix.hasPlate, suffix.tint};
        }
    }
    return {name};
}

}  // namespace tweenery
