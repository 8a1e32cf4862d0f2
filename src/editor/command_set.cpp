#include "editor/command_set.h"

#include "editor/commands.h"

namespace tweenery {

QString CommandSet::resolved(const QString& name) const {
    const auto redirection = m_redirections.constFind(name);
    return redirection != m_redirections.cend() && redirection->when() ? redirection->other : name;
}

bool CommandSet::isEnabled(const QString& name) const {
    const auto action = m_actions.constFind(resolved(name));
    if (action == m_actions.cend() || m_areHeld || (m_mustWait && m_mustWait())) { return false; }
    return !action->isEnabled || action->isEnabled();
}

bool CommandSet::isChecked(const QString& name) const {
    const auto action = m_actions.constFind(resolved(name));
    return action != m_actions.cend() && action->isChecked && action->isChecked();
}

QString CommandSet::title(const QString& name) const {
    const QString meant = resolved(name);
    const auto action = m_actions.constFind(meant);
    if (action != m_actions.cend() && action->title) { return action->title(); }
    const Command* command = commandNamed(meant);
    return command ? command->title : QString();
}

void CommandSet::perform(const QString& name) {
    if (!isEnabled(name)) { return; }
    const CommandAction action = m_actions[resolved(name)];  // a copy: it may add or close
    if (m_around) {
        m_around(action, title(name));
    } else {
        action.perform();
    }
}

}  // namespace tweenery
