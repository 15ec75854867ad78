#include "view/EditCommands.h"

#include "base/UndoOnError.h"
#include "pane/StoredMarks.h"
#include "platform/controls/FocusedText.h"
#include "platform/grid/Grid.h"
#include "platform/loop/Guards.h"
#include "view/AreaClipboard.h"
#include "view/GridSave.h"
#include "view/TableLoader.h"

#include <QAction>

namespace qir {

namespace {

/// A selection stands for what is shown of it.
void forShownCells(const Grid &grid, const GridRange &cells, const std::function<void(int row, int column)> &visit) {
    for (int row = grid.nextShownRow(cells.firstRow); row > 0 && row <= cells.lastRow;
         row = grid.nextShownRow(row + 1)) {
        for (int column = grid.nextShownColumn(cells.firstColumn); column > 0 && column <= cells.lastColumn;
             column = grid.nextShownColumn(column + 1))
            visit(row, column);
    }
}

} // namespace

void EditCommands::addCommands() {
    CommandTable &commands = m_editor.commands();
    commands.add(Command::DeleteCellsMenu, tr("&Delete"), [this] { DeleteCellsMenu_Click(); },
                 {.shortcut = QKeySequence(Qt::Key_Delete), .needs = Needs::Database});
    commands.add(Command::FillDownMenu, tr("Fill Do&wn"), [this] { fillDown(workingPane()); },
                 {.shortcut = QKeySequence(Qt::CTRL | Qt::Key_D), .needs = Needs::Database});
    commands.add(Command::SelectAllMenu, tr("Select &All"), [this] { SelectAllMenu_Click(); },
                 {.shortcut = QKeySequence(Qt::CTRL | Qt::Key_A), .needs = Needs::Database});
}

void EditCommands::connectPane(int pane) {
    for (const Command command : {Command::DeleteCellsMenu, Command::FillDownMenu, Command::SelectAllMenu}) {
        QAction &action = m_editor.controls().action(command);
        action.setShortcutContext(Qt::WidgetShortcut);
        m_editor.Tabella(pane).addAction(&action);
    }
}

int EditCommands::workingPane() const {
    for (const int pane : {0, 1}) {
        if (m_editor.Tabella(pane).hasFocus())
            return pane;
    }
    return m_editor.IndexAttivo();
}

void EditCommands::DeleteCellsMenu_Click() {
    if (QLineEdit *text = focusedText())
        text->del();
    else
        deleteCells(workingPane());
}

void EditCommands::SelectAllMenu_Click() {
    if (QLineEdit *text = focusedText())
        text->selectAll();
    else
        selectAll(workingPane());
}

void EditCommands::deleteCells(int pane) {
    if (!showsFields(m_editor, pane))
        return;
    Grid &grid = m_editor.Tabella(pane);
    const GridRange cells = recordCells(grid);
    rewrite(pane, cells, tr("Delete"), [&] {
        grid.setTexts([&](const Grid::SetText &set) {
            forShownCells(grid, cells, [&](int row, int column) { set(row, column, QStringView()); });
        });
    });
}

void EditCommands::fillDown(int pane) {
    if (!showsFields(m_editor, pane))
        return;
    Grid &grid = m_editor.Tabella(pane);
    GridRange cells = recordCells(grid);
    const bool fromAbove = cells.firstRow == cells.lastRow;
    const int source = fromAbove ? grid.nextShownRow(cells.firstRow - 1, -1) : grid.nextShownRow(cells.firstRow);
    if (!fromAbove)
        cells.firstRow = source + 1;
    if (source < 1 || cells.isEmpty())
        return;
    rewrite(pane, cells, tr("Fill Down"), [&] {
        grid.setTexts([&](const Grid::SetText &set) {
            forShownCells(grid, cells, [&](int row, int column) { set(row, column, grid.TextMatrix(source, column)); });
        });
    });
}

void EditCommands::selectAll(int pane) {
    if (showsFields(m_editor, pane))
        m_editor.Tabella(pane).selectAll();
}

void EditCommands::rewrite(int pane, const GridRange &cells, const QString &name, const std::function<void()> &lay) {
    m_editor.pane(pane).requireWhole();
    const BusyPointer busy;
    m_editor.endEdit(); // of a cell that is written now
    undoneOnError(
        [&] {
            const ChangeStep step(m_editor.OggettoDtb(pane), name);
            lay();
            m_save.SalvaGridInDatabase(pane, cells);
            m_stored.lookAtWritten(pane, cells);
        },
        [&] { m_tables.reloadAfterFailure(pane); });
}

} // namespace qir
