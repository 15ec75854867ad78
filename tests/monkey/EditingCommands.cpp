#include "tests/monkey/EditingCommands.h"

#include "pane/CommandTable.h"

#include <QAction>
#include <QApplication>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

constexpr int mostInARow = 6;

const QList<Command> &editingCommands() {
    static const QList<Command> all{Command::UndoMenu,         Command::UndoMenu,        Command::UndoMenu,
                                    Command::RedoMenu,         Command::RedoMenu,        Command::HistoryMenu,
                                    Command::RevertMenu,       Command::FindMenu,        Command::FindNextMenu,
                                    Command::FindPreviousMenu, Command::ReplaceMenu,     Command::GoToMenu,
                                    Command::PasteAllMenu,     Command::FillDownMenu,    Command::DeleteCellsMenu,
                                    Command::SelectAllMenu,    Command::KeptVersionsMenu};
    return all;
}

} // namespace

void performEditing(const CommandTable &commands, Numbers &numbers, const Gestures::Tell &tell) {
    const Command command = numbers.oneOf(editingCommands());
    const bool repeats = command == Command::UndoMenu || command == Command::RedoMenu;
    QAction &action = commands.action(command);
    for (int times = repeats ? numbers.between(1, mostInARow) : 1; times > 0; --times) {
        if (!action.isEnabled() || QApplication::activeModalWidget() != nullptr)
            return;
        tell(u"chooses %1"_s.arg(action.objectName()));
        action.trigger();
    }
}

} // namespace qir::test
