#include "ui/window/main_menu.h"

#include <QAction>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>

#include "editor/commands.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr Qt::KeyboardModifiers kCommandModifiers = Qt::ControlModifier | Qt::AltModifier;

// Text fields and lists want those without for themselves.
bool isPlain(const QKeySequence& shortcut) {
    const QKeyCombination key = shortcut[0];
    const bool isFunctionKey = key.key() >= Qt::Key_F1 && key.key() <= Qt::Key_F35;
    return !(key.keyboardModifiers() & kCommandModifiers) && !isFunctionKey;
}

// Where a keyboard lacks a key, or moves it with Shift.
int keyOf(const QKeyEvent& event) {
    return QKeyCombination(event.modifiers() & ~Qt::KeypadModifier, Qt::Key(event.key()))
        .toCombined();
}

}  // namespace

MainMenu::MainMenu(QMainWindow& window, CommandSet& commands)
    : QObject(&window), m_window(window), m_commands(commands) {
    addMenus();
    update();
}

MainMenu::~MainMenu() {
    qDeleteAll(m_menus);
}

void MainMenu::addMenus() {
    for (const QString& title : menuTitles()) {
        QMenu* menu = m_window.menuBar()->addMenu(title);
        m_menus.push_back(menu);
        connect(menu, &QMenu::aboutToShow, this, &MainMenu::update);
        QMenu* submenu = nullptr;
        for (const Command& command : allCommands()) {
            if (command.menu != title) { continue; }
            if (command.startsSection) { menu->addSeparator(); }
            if (command.submenu.isEmpty()) {
                addAction(command, *menu);
                continue;
            }
            if (!submenu || submenu->title() != command.submenu) {
                submenu = menu->addMenu(command.submenu);
            }
            addAction(command, *submenu);
        }
    }
}

void MainMenu::addAction(const Command& command, QMenu& menu) {
    QAction* action = menu.addAction(command.title);
    action->setObjectName(command.name);
    action->setCheckable(command.isSwitch);
    setShortcuts(*action, command);
    connect(action, &QAction::triggered, this, [this, name = command.name] { perform(name); });
    m_actions.insert(command.name, action);
}

void MainMenu::setShortcuts(QAction& action, const Command& command) {
    if (command.shortcuts.isEmpty()) { return; }
    const auto shortcuts = QKeySequence::listFromString(command.shortcuts);
    action.setShortcuts(shortcuts);
    if (!isPlain(shortcuts.first())) {
        m_window.addAction(&action);
        return;
    }
    // Shown in the menu, but found by performPlainKey() alone.
    action.setShortcutContext(Qt::WidgetShortcut);
    for (const QKeySequence& shortcut : shortcuts) {
        m_plainKeys.insert(shortcut[0].toCombined(), command.name);
    }
}

void MainMenu::setSubmenu(const QString& name, QMenu* menu) {
    m_actions[name]->setMenu(menu);
}

void MainMenu::update() {
    for (auto item = m_actions.cbegin(); item != m_actions.cend(); ++item) {
        QAction& action = *item.value();
        if (!action.menu()) { action.setEnabled(m_commands.isEnabled(item.key())); }
        action.setText(m_commands.title(item.key()));
        if (action.isCheckable()) { action.setChecked(m_commands.isChecked(item.key())); }
    }
}

bool MainMenu::performPlainKey(QKeyEvent& event) {
    const auto name = m_plainKeys.constFind(keyOf(event));
    if (name == m_plainKeys.cend()) { return false; }
    perform(*name);
    return true;
}

void MainMenu::perform(const QString& name) {
    Q_EMIT willPerform();
    m_commands.perform(name);
    update();
}

void execContextMenu(MainMenu& menu, QWidget* parent, const QStringList& names, QPoint position) {
    menu.update();
    QMenu popup(u"Contextual Menu"_s, parent);
    for (const QString& name : names) {
        popup.addAction(menu.action(name));
    }
    popup.exec(position);
}

}  // namespace tweenery
