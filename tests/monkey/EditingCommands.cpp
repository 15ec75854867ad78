#include "tests/monkey/EditingCommands.h"

#include "pane/EditorContext.h"
#include "platform/grid/Grid.h"
#include "tests/support/Hands.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QLineEdit>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

constexpr int mostInARow = 6;

const QList<Command> &editingCommands() {
    static const QList<Command> all{Command::UndoMenu,      Command::UndoMenu,         Command::UndoMenu,
                                    Command::RedoMenu,      Command::RedoMenu,         Command::HistoryMenu,
                                    Command::RevertMenu,    Command::FindMenu,         Command::FindNextMenu,
                                    Command::FindNextMenu,  Command::FindPreviousMenu, Command::ReplaceMenu,
                                    Command::GoToMenu,      Command::PasteAllMenu,     Command::CopyWithHeadersMenu,
                                    Command::FillDownMenu,  Command::PasteMenu,        Command::DeleteCellsMenu,
                                    Command::SelectAllMenu, Command::KeptVersionsMenu};
    return all;
}

struct Stroke {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
};

/// What the grid, the window and the text of a cell take as keys for editing.
const QList<Stroke> &editingKeys() {
    static const QList<Stroke> all{{Qt::Key_Z, Qt::ControlModifier},
                                   {Qt::Key_Z, Qt::ControlModifier},
                                   {Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier},
                                   {Qt::Key_Y, Qt::ControlModifier},
                                   {Qt::Key_F2, Qt::NoModifier},
                                   {Qt::Key_F2, Qt::ShiftModifier},
                                   {Qt::Key_Delete, Qt::NoModifier},
                                   {Qt::Key_D, Qt::ControlModifier},
                                   {Qt::Key_A, Qt::ControlModifier},
                                   {Qt::Key_Home, Qt::ControlModifier},
                                   {Qt::Key_End, Qt::ControlModifier},
                                   {Qt::Key_C, Qt::ControlModifier},
                                   {Qt::Key_V, Qt::ControlModifier},
                                   {Qt::Key_F3, Qt::NoModifier},
                                   {Qt::Key_F3, Qt::ShiftModifier},
                                   {Qt::Key_G, Qt::ControlModifier},
                                   {Qt::Key_Escape, Qt::NoModifier}};
    return all;
}

void chooseCommand(const CommandTable &commands, Numbers &numbers, const Gestures::Tell &tell) {
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

void strikeKey(EditorContext &editor, Numbers &numbers, const Gestures::Tell &tell) {
    const Stroke stroke = numbers.oneOf(editingKeys());
    Grid &grid = editor.Tabella(numbers.below(2));
    if (grid.Visible() && numbers.oneIn(2))
        grid.setFocus();
    tell(u"key "_s + QKeySequence(stroke.modifiers | stroke.key).toString());
    hands::strike(*editor.controls().window, stroke.key, stroke.modifiers, QString());
}

/// What the bar is asked for: texts that hit numbers and texts, expressions that are none, and nothing.
void workInBar(QWidget &bar, Numbers &numbers, const Gestures::Tell &tell) {
    static const QStringList sought{u"1"_s, u"0"_s,     u"a"_s,      u"Pump"_s, u""_s,
                                    u"."_s, u"[0-9]"_s, u"(.)\\1"_s, u"(a"_s,   u"\\b1"_s};
    static const QStringList replacements{u""_s,      u"2"_s,   u"x"_s,
                                          u"99999"_s, u"\\1"_s, u"long enough for many a field"_s};
    static const QStringList buttons{u"findCase"_s,      u"findWhole"_s,     u"findPattern"_s,
                                     u"findAllTables"_s, u"findBothPanes"_s, u"replaceOne"_s,
                                     u"replaceOne"_s,    u"replaceAll"_s,    u"replaceAll"_s};
    if (numbers.oneIn(3)) {
        const bool replacement = numbers.oneIn(2);
        const QString text = numbers.oneOf(replacement ? replacements : sought);
        auto &box = *bar.findChild<QLineEdit *>(replacement ? u"replaceText"_s : u"findText"_s);
        tell(u"writes '%1' into %2"_s.arg(text, box.objectName()));
        box.selectAll();
        box.insert(text);
        return;
    }
    auto &button = *bar.findChild<QAbstractButton *>(numbers.oneOf(buttons));
    tell(u"presses "_s + button.objectName());
    hands::click(&button, Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
}

} // namespace

void performEditing(EditorContext &editor, Numbers &numbers, const Gestures::Tell &tell) {
    auto *bar = editor.controls().window->findChild<QWidget *>(u"findBar"_s);
    const int choice = numbers.below(100);
    if (choice < 40 && bar != nullptr && bar->isVisible())
        workInBar(*bar, numbers, tell);
    else if (choice < 70)
        strikeKey(editor, numbers, tell);
    else
        chooseCommand(editor.controls().commands, numbers, tell);
}

} // namespace qir::test
