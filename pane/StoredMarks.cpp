#include "pane/StoredMarks.h"

#include "db/StoredText.h"
#include "platform/grid/Grid.h"
#include "platform/loop/MessageLoop.h"

#include <algorithm>

namespace qir {

void StoredMarks::connectPane(int pane) {
    m_editor.Tabella(pane).setStoredWords([this, pane](int row, int column) { return words(pane, row, column); });
}

QString StoredMarks::stored(int pane, int column) const {
    return valueText(m_editor.OggettoDtb(pane).QIRTableRecordSetByIndex(m_editor.Tabella(pane).ColData(column)));
}

void StoredMarks::look(int pane, int row, int column) {
    Grid &grid = m_editor.Tabella(pane);
    grid.setUnlikeStored(row, column, stored(pane, column) != grid.TextMatrix(row, column));
}

void StoredMarks::look(int pane, const GridRange &cells) {
    Grid &grid = m_editor.Tabella(pane);
    const QirDatabase &database = m_editor.OggettoDtb(pane);
    m_editor.pane(pane).makeShownTableCurrent();
    QString text;
    YieldTimer timer;
    for (int column = std::max(cells.firstColumn, 1); column <= std::min(cells.lastColumn, grid.Cols() - 1); ++column) {
        const int field = grid.ColData(column);
        if (field < 1)
            continue;
        const int type = database.QIRTableFieldType(field).toInt();
        const int size = database.QIRTableFieldSize(field).toInt();
        for (int row = std::max(cells.firstRow, 1); row <= std::min(cells.lastRow, grid.Rows() - 1); ++row) {
            grid.texts().read(column, row, text);
            grid.setUnlikeStored(row, column, storedText(type, size, text) != text);
            timer.yieldIfDue();
        }
    }
}

QString StoredMarks::words(int pane, int row, int column) const {
    if (!m_editor.Tabella(pane).isUnlikeStored(row, column) || !m_editor.DtbAperto(pane))
        return {};
    const MessageLoop *loop = MessageLoop::instance();
    if (loop != nullptr && loop->commandRunning())
        return {}; // current table and record are the command's
    try {
        m_editor.pane(pane).makeShownTableCurrent();
        m_editor.OggettoDtb(pane).setQIRTableRecordsPointerOut(m_editor.Tabella(pane).RowData(row));
        return tr("stored: %1").arg(stored(pane, column));
    } catch (const std::exception &) { // a tool tip is no command that could fail
        return {};
    }
}

} // namespace qir
