#include "structure/RecordCommands.h"

#include "compare/CellDifferences.h"

#include "platform/dialogs/Dialogs.h"
#include "platform/grid/Grid.h"
#include "view/GridAlignment.h"
#include "view/TableLoader.h"

namespace qir {

using namespace Qt::StringLiterals;

void RecordCommands::addCommands() {
    CommandTable &commands = m_editor.commands();
    commands.add(Command::AddRecordMenu, tr("&Add"), [this] { AddRecordMenu_Click(); });
    commands.add(Command::RemoveRecordMenu, tr("Re&move"), [this] { RemoveRecordSecco(); });
    commands.add(Command::RemoveRecordPOP, tr("Re&move Record"), [this] { RemoveRecordSecco(); });
}

void RecordCommands::AddRecordMenu_Click() {
    const int pane = m_editor.IndexAttivo();
    if (!m_editor.pane(pane).realTableSelected())
        return;
    m_editor.pane(pane).makeShownTableCurrent();
    {
        const ChangeStep step(m_editor.OggettoDtb(pane),
                              tr("Adding a record to %1").arg(m_editor.pane(pane).TabellaMostrata()));
        m_editor.OggettoDtb(pane).AddRecord();
    }
    m_tables.CaricaTabellaAVideo(pane);
    // The rows above the new one are painted already.
    CellWindow window;
    window.firstRow = m_editor.OggettoDtb(pane).QirTableRecordsCount();
    m_differences.EvidenziaDifferenzeTabella(SelectionRule::SameLine, window);
    goToLastRecord(pane);
}

void RecordCommands::goToLastRecord(int pane) {
    Grid &grid = m_editor.Tabella(pane);
    grid.setSelection(singleCell(grid.Rows() - 1, grid.Col()));
    grid.bringCellIntoView();
    AllineaTopLeftTabelle(m_editor, pane);
}

void RecordCommands::RemoveRecordSecco() {
    const int pane = m_editor.IndexAttivo();
    if (!m_editor.pane(pane).realTableSelected())
        return;
    const Grid &grid = m_editor.Tabella(pane);
    if (grid.Row() == 0) {
        messageBox(m_editor.controls().window, tr("No selected Record"), u"!"_s);
        return;
    }
    m_editor.pane(pane).makeShownTableCurrent();
    {
        const ChangeStep step(
            m_editor.OggettoDtb(pane),
            tr("Removing record %1 of %2").arg(grid.Row()).arg(m_editor.pane(pane).TabellaMostrata()));
        m_editor.OggettoDtb(pane).RemoveRecord(grid.RowData(grid.Row()));
    }
    m_tables.CaricaTabellaAVideo(pane);
    // The pane's number stands for a first row here; 0 and 1 both mean the whole table.
    CellWindow window;
    window.firstRow = pane;
    m_differences.EvidenziaDifferenzeTabella(SelectionRule::SameLine, window);
}

} // namespace qir
