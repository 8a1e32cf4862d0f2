#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace tweenery {

/// A command as the main menu lists it. Menus, tool tips and the list of shortcuts are made from
/// this table; CommandSet says what each does.
struct Command {
    QString name;
    QString menu;       // the title of its menu
    QString title;      // with an ellipsis where it asks for more
    QString shortcuts;  // as QKeySequence reads them, the one that is shown first; "; " between
    QString submenu = {};
    bool startsSection = false;  // a line above it
    bool isSwitch = false;       // shown with a check mark while on
};

/// All of them, in the order of the menus.
const std::vector<Command>& allCommands();
/// Null for a name that is none.
const Command* commandNamed(const QString& name);

/// The menus of the window, from the left.
const QStringList& menuTitles();

}  // namespace tweenery
