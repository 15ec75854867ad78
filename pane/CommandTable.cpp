#include "pane/CommandTable.h"

#include "pane/EditorContext.h"
#include "platform/loop/MessageLoop.h"

#include <QAction>

namespace qir {

void CommandTable::add(Command command, const QString &caption, std::function<void()> procedure,
                       CommandOptions options) {
    const auto i = static_cast<std::size_t>(command);
    Q_ASSERT(m_actions[i] == nullptr);
    auto *action = new QAction(caption, m_owner);
    action->setObjectName(QLatin1StringView(commandName(command)));
    action->setShortcut(options.shortcut);
    QObject::connect(action, &QAction::triggered, action,
                     [procedure = std::move(procedure)] { runCommand(procedure); });
    m_actions[i] = action;
    m_needs[i] = options.needs;
}

void CommandTable::enable(const EditorContext &editor, bool activePaneOpen) const {
    for (std::size_t i = 0; i < m_actions.size(); ++i) {
        switch (m_needs[i]) {
        case Needs::Nothing:
            break;
        case Needs::Database:
            m_actions[i]->setEnabled(activePaneOpen);
            break;
        case Needs::BothDatabases:
            m_actions[i]->setEnabled(editor.DtbAperto(0) && editor.DtbAperto(1));
            break;
        case Needs::TwoPanes:
            m_actions[i]->setEnabled(editor.twoPanes());
            break;
        }
    }
}

} // namespace qir
