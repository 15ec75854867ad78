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
    grid.setUnlikeStored(row, column, stored(pane, column) != grid.TextMatrix(row, column));
}

void StoredMarks::look(int pane, const GridRange &cells) {
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

QString StoredMarks::wordsNow(int pane, int row, int column) const {
    if (!m_editor.Tabella(pane).isUnlikeStored(row, column) || !m_editor.DtbAperto(pane))
        return {};
    try {
        m_editor.pane(pane).makeShownTableCurrent();
        m_editor.OggettoDtb(pane).setQIRTableRecordsPointerOut(m_editor.Tabella(pane).RowData(row));
        const QString text = stored(pane, column);
        return tr("stored: %1").arg(text.size() > longestText ? text.left(longestText) + u'…' : text);
    } catch (const std::exception &) { // a tool tip is no command that could fail
        return {};
    }
}

} // namespace qir
