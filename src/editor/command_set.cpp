#include "editor/command_set.h"

#include "editor/commands.h"

namespace tweenery {

bool CommandSet::isEnabled(const QString& name) const {
    const auto action = m_actions.constFind(name);
    if (action == m_actions.cend() || m_areHeld || (m_mustWait && m_mustWait())) { return false; }
    return !action->isEnabled || action->isEnabled();
}

bool CommandSet::isChecked(const QString& name) const {
    const auto action = m_actions.constFind(name);
    return action != m_actions.cend() && action->isChecked && action->isChecked();
}

QString CommandSet::title(const QString& name) const {
    const auto action = m_actions.constFind(name);
    if (action != m_actions.cend() && action->title) { return action->title(); }
    const Command* command = commandNamed(name);
    return command ? command->title : QString();
}

void CommandSet::perform(const QString& name) {
    if (!isEnabled(name)) { return; }
    const CommandAction action = m_actions[name];  // a copy: it may add or close
    if (m_around) {
        m_around(action, title(name));
    } else {
        action.perform();
    }
}

}  // namespace tweenery
