#include "pane/StoredMarks.h"

#include "db/StoredText.h"
#include "platform/grid/Grid.h"
#include "platform/loop/MessageLoop.h"

#include <algorithm>

namespace qir {

namespace {

constexpr int longestText = 200; // of a value that is told

} // namespace

void StoredMarks::connectPane(int pane) {
    m_editor.Tabella(pane).setStoredWords([this, pane](int row, int column) { return words(pane, row, column); });
}

QString StoredMarks::stored(int pane, int column) const {
    return valueText(m_editor.OggettoDtb(pane).QIRTableRecordSetByIndex(m_editor.Tabella(pane).ColData(column)));
}

void StoredMarks::look(int pane, int row, int column) {
    Grid &grid = m_editor.Tabella(pane);
    m_last = {pane,
              row,
              column,
              m_editor.pane(pane).TabellaMostrata(),
              m_editor.OggettoDtb(pane).revision(),
              stored(pane, column)};
    grid.setUnlikeStored(row, column, m_last.text != grid.TextMatrix(row, column));
}

void StoredMarks::lookAtWritten(int pane, const GridRange &cells) {
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

void StoredMarks::lookAtStored(int pane, const GridRange &cells) {
    const Grid &grid = m_editor.Tabella(pane);
    m_editor.pane(pane).makeShownTableCurrent();
    const GridRange inside{std::max(cells.firstRow, 1), std::max(cells.firstColumn, 1),
                           std::min(cells.lastRow, grid.Rows() - 1), std::min(cells.lastColumn, grid.Cols() - 1)};
    // A table without fields shows one empty column, which stands for none.
    if (inside.isEmpty() || grid.ColData(inside.firstColumn) < 1)
        return;
    if (grid.rowsAreRecords() && m_editor.OggettoDtb(pane).hasColumns())
        lookByColumns(pane, inside);
    else
        lookByRecords(pane, inside);
}

void StoredMarks::lookByColumns(int pane, const GridRange &cells) {
    Grid &grid = m_editor.Tabella(pane);
    QString text;
    QString held;
    YieldTimer timer;
    for (int column = cells.firstColumn; column <= cells.lastColumn; ++column) {
        for (int row = cells.firstRow; row <= cells.lastRow;) {
            const ColumnBlock block =
                m_editor.OggettoDtb(pane).ReadColumn(grid.ColData(column), row, cells.lastRow - row + 1);
            for (qsizetype i = 0; i < block.count(); ++i, ++row) {
                grid.texts().read(column, row, text);
                block.readText(i, held);
                grid.setUnlikeStored(row, column, held != text);
            }
            timer.yieldIfDue();
        }
    }
}

void StoredMarks::lookByRecords(int pane, const GridRange &cells) {
    Grid &grid = m_editor.Tabella(pane);
    const QirDatabase &database = m_editor.OggettoDtb(pane);
    QString text;
    QVariant held;
    YieldTimer timer;
    for (int row = cells.firstRow; row <= cells.lastRow; ++row) {
        database.setQIRTableRecordsPointerOut(grid.RowData(row));
        for (int column = cells.firstColumn; column <= cells.lastColumn; ++column) {
            database.readQIRTableRecordSetByIndex(grid.ColData(column), held);
            grid.texts().read(column, row, text);
            grid.setUnlikeStored(row, column, valueText(held) != text);
        }
        timer.yieldIfDue();
    }
}

QString StoredMarks::words(int pane, int row, int column) const {
    const MessageLoop *loop = MessageLoop::instance();
    if (loop != nullptr && loop->commandRunning())
        return {}; // current table and record are the command's
    return wordsNow(pane, row, column);
}

bool StoredMarks::isLast(int pane, int row, int column) const {
    return m_last.pane == pane && m_last.row == row && m_last.column == column &&
           m_last.revision == m_editor.OggettoDtb(pane).revision() &&
           m_last.table == m_editor.pane(pane).TabellaMostrata();
}

QString StoredMarks::wordsNow(int pane, int row, int column) const {
    if (!m_editor.Tabella(pane).isUnlikeStored(row, column) || !m_editor.DtbAperto(pane))
        return {};
    try {
        QString text = m_last.text;
        if (!isLast(pane, row, column)) {
            m_editor.pane(pane).makeShownTableCurrent();
            m_editor.OggettoDtb(pane).setQIRTableRecordsPointerOut(m_editor.Tabella(pane).RowData(row));
            text = stored(pane, column);
        }
        return tr("stored: %1").arg(text.size() > longestText ? text.left(longestText) + u'…' : text);
    } catch (const std::exception &) { // a tool tip is no command that could fail
        return {};
    }
}

} // namespace qir
