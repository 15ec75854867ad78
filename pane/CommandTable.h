#pragma once

#include "pane/Commands.h"

#include <QKeySequence>
#include <QString>

#include <array>
#include <functional>

QT_BEGIN_NAMESPACE
class QAction;
class QObject;
QT_END_NAMESPACE

namespace qir {

class EditorContext;

/// What a command needs to be enabled, decided whenever that may have changed.
enum class Needs {
    Nothing,       ///< Enabled from the start; what else is required its class decides.
    Database,      ///< The active pane holds one.
    BothDatabases, ///< Both panes do.
    TwoPanes,      ///< Two-pane mode.
};

struct CommandOptions {
    QKeySequence shortcut = {};
    Needs needs = Needs::Nothing;
};

/// Every command with its action. Each comes from the class that has its procedure.
class CommandTable {
public:
    /// Who will own the actions: the window. To be called before the first command is added.
    void setOwner(QObject &owner) { m_owner = &owner; }

    /// Makes a command's action. Choosing it by menu, shortcut or pop-up runs the procedure as a command. Each command
    /// is added once.
    void add(Command command, const QString &caption, std::function<void()> procedure, CommandOptions options = {});

    QAction &action(Command command) const { return *m_actions[static_cast<std::size_t>(command)]; }

    /// Enables or disables the commands that need a database or two panes.
    void enable(const EditorContext &editor, bool activePaneOpen) const;

private:
    QObject *m_owner = nullptr;
    std::array<QAction *, commandCount> m_actions{};
    std::array<Needs, commandCount> m_needs{};
};

} // namespace qir
