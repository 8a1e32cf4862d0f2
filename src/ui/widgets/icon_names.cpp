#include "ui/widgets/icon_names.h"

#include <QHash>

namespace tweenery {

namespace {

using namespace Qt::StringLiterals;

const QColor onLightRow(0x3A, 0x3A, 0x3A);
const QColor onSelectedRow(Qt::white);

// Names whose picture or colour no suffix tells.
const QHash<QString, IconSource>& irregularNames() {
    static const QHash<QString, IconSource> names = {
        {u"play_active"_s, {u"stop"_s, true, {}}},
        {u"property_folder_icon"_s, {u"folder"_s}},
        {u"property_element_icon"_s, {u"image"_s}},
        {u"locked_dark"_s, {u"locked"_s, false, Qt::black}},
        {u"loop_off_box"_s, {u"loop_off_box"_s, false, QColor(0x6A, 0x6A, 0x6A)}},
        {u"loop_icon"_s, {u"loop_icon"_s, false, QColor(0x7A, 0x7A, 0x7A)}},
        {u"loop_icon_reverse"_s, {u"loop_icon_reverse"_s, false, QColor(0x7A, 0x7A, 0x7A)}},
        {u"loop_on_box"_s, {u"loop_on_box"_s, false, QColor(0x2E, 0x2E, 0x2E)}},
        {u"loop_reverse_box"_s, {u"loop_reverse_box"_s, false, QColor(0x2E, 0x2E, 0x2E)}},
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
    if (name.startsWith(u"ease_icon_dark_")) { return {name, false, QColor(0x1E, 0x1E, 0x1E)}; }
    static const Suffix suffixes[] = {
        {u"_active"_s, true, {}},
        {u"_dark_icon"_s, false, onLightRow},
        {u"_light_icon"_s, false, onSelectedRow},
        {u"_dark"_s, false, onLightRow},
        {u"_light"_s, false, onSelectedRow},
    };
    for (const Suffix& suffix : suffixes) {
        if (name.endsWith(suffix.text)) {
            return {name.chopped(suffix.text.size()), suffix.hasPlate, suffix.tint};
        }
    }
    return {name};
}

}  // namespace tweenery
