#pragma once

#include <QHash>
#include <QMainWindow>

#include "editor/command_set.h"

class QAction;

namespace tweenery {

/// The actions of one window, a QAction for each command of the table, and its menu bar. Triggering
/// one performs the command of the window's set.
class MainMenu : public QObject {
    Q_OBJECT

 public:
    /// Fills the window's menu bar. Neither is owned; both outlive this.
    MainMenu(QMainWindow& window, CommandSet& commands);
    ~MainMenu() override;

    /// Null for a name that the table does not have.
    QAction* action(const QString& name) const { return m_actions.value(name); }
    /// Titles, check marks, and what can be done now.
    void update();
    /// A menu under that action instead of a command, such as the recent documents.
    void setSubmenu(const QString& name, QMenu* menu);
    /// A press of a key without Ctrl or Alt, which belongs to whatever has the focus before it
    /// comes here. Performs the command that has it; false without one.
    bool performPlainKey(QKeyEvent& event);

 Q_SIGNALS:
    /// Before a command is performed.
    void willPerform();

 private:
    QMainWindow& m_window;
    CommandSet& m_commands;
    std::vector<QMenu*> m_menus;
    QHash<QString, QAction*> m_actions;
    QHash<int, QString> m_plainKeys;  // by key with modifiers

    void addMenus();
    void addAction(const struct Command& command, QMenu& menu);
    void setShortcuts(QAction& action, const Command& command);
    void perform(const QString& name);
};

/// A context menu of those commands, as they are now.
void execContextMenu(MainMenu& menu, QWidget* parent, const QStringList& names, QPoint position);

}  // namespace tweenery
