#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace tweenery {

enum class ToolbarItemKind { Button, Toggle, Separator, Space, FlexibleSpace, Panels, GroupFx };

/// What the toolbar knows of one of its items.
struct ToolbarItem {
    QString identifier;
    ToolbarItemKind kind;
    QString label;
    QString toolTip;
    QString accessibleName;
    QString command;  // name of the action that it triggers
    QString picture;  // its alternate is "<picture>_active"
};

/// Null for an identifier that nobody knows.
const ToolbarItem* toolbarItem(const QString& identifier);

namespace toolbarItems {

inline const QString flexibleSpace = QStringLiteral("flexibleSpace");
inline const QString space = QStringLiteral("space");
inline const QString plainSeparator = QStringLiteral("separator");
inline const QString verticalSeparator = QStringLiteral("PCToolbarVerticalSeparatorIdentifier");
inline const QString importExport = QStringLiteral("PCToolbarImportExportIdentifier");
inline const QString forward = QStringLiteral("PCToolbarForwardItemIdentifier");
inline const QString backward = QStringLiteral("PCToolbarBackwardItemIdentifier");
inline const QString group = QStringLiteral("PCToolbarGroupItemIdentifier");
inline const QString ungroup = QStringLiteral("PCToolbarUngroupItemIdentifier");
inline const QString select = QStringLiteral("PCToolbarSelectItemIdentifier");
inline const QString direct = QStringLiteral("PCToolbarDirectItemIdentifier");
inline const QString hand = QStringLiteral("PCToolbarHandItemIdentifier");
inline const QString additive = QStringLiteral("PCToolbarAdditiveItemIdentifier");
inline const QString zoomCenter = QStringLiteral("PCToolbarZoomCenterItemIdentifier");
inline const QString zoomIn = QStringLiteral("PCToolbarZoomInItemIdentifier");
inline const QString zoomOut = QStringLiteral("PCToolbarZoomOutItemIdentifier");
inline const QString panels = QStringLiteral("PCToolbarPanelsItemIdentifier");
inline const QString play = QStringLiteral("PCToolbarPlayItemIdentifier");

/// What the user may put into the toolbar. Separators and spaces may stand more than once. The
/// GroupFX item is served by its identifier alone.
const QStringList& allowed();
/// The order of a new installation.
const QStringList& byDefault();

/// The user's order, kept in the user's defaults; what it holds of unknown items is left out.
QStringList ofUser();
void setOfUser(const QStringList& identifiers);
bool mayRepeat(const QString& identifier);

}  // namespace toolbarItems

/// Where items go in a toolbar of `width` points.
struct ToolbarSlot {
    int width;
    bool isFlexible;
};
struct ToolbarPlaces {
    std::vector<int> x;  // of the items that are shown
    bool overflows;      // the others need a menu at the right
};
/// Flexible spaces share alike what is left. Where not even they can give way, the last items are
/// left out.
ToolbarPlaces placeToolbarItems(const std::vector<ToolbarSlot>& items, int width);

}  // namespace tweenery
