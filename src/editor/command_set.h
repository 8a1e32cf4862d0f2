#pragma once

#include <QHash>
#include <QString>
#include <functional>

namespace tweenery {

/// What a command of the menu does in one window, and whether it can do it now.
struct CommandAction {
    std::function<void()> perform;
    std::function<bool()> isEnabled = {};  // none: always
    std::function<bool()> isChecked = {};  // none: it is no switch
    std::function<QString()> title = {};   // none: the one of the menu
    bool isEdit = false;                   // its changes are one step of undo, named after it
};

/// The commands of one window by their names, see commands.h. Menu, toolbar, context menus and keys
/// all come here; whoever can perform a command adds it.
class CommandSet {
 public:
    /// Takes the place of an action of that name.
    void add(const QString& name, CommandAction action) { m_actions[name] = std::move(action); }

    /// While `when` says so, `name` stands for the command `other`: what a key of the menu does can
    /// depend on the pane that has the keyboard.
    void redirect(const QString& name, const QString& other, std::function<bool()> when) {
        m_redirections[name] = {other, std::move(when)};
    }

    /// False for a name that nobody has added, and while commands have to wait.
    bool isEnabled(const QString& name) const;
    bool isChecked(const QString& name) const;
    QString title(const QString& name) const;
    /// Does nothing unless it is enabled.
    void perform(const QString& name);

    /// While this says so, such as during a drag, no command is performed.
    void setMustWait(std::function<bool()> mustWait) { m_mustWait = std::move(mustWait); }
    /// While they are held, none is performed either: a sheet over the window wants its answer.
    void setAreHeld(bool areHeld) { m_areHeld = areHeld; }
    /// Runs an enabled command, with what belongs around each: that a text edit ends before, that
    /// the step of undo is closed after.
    using Around = std::function<void(const CommandAction& action, const QString& title)>;
    void setAround(Around around) { m_around = std::move(around); }

 private:
    struct Redirection {
        QString other;
        std::function<bool()> when;
    };
    QHash<QString, CommandAction> m_actions;
    QHash<QString, Redirection> m_redirections;
    std::function<bool()> m_mustWait;
    bool m_areHeld = false;
    Around m_around;

    /// The command that it stands for now.
    QString resolved(const QString& name) const;
};

}  // namespace tweenery
