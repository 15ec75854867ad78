#include "db/FieldTypes.h"
#include "tests/model/Values.h"
#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/PopupTools.h"
#include "tests/window/model/EditorSession.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

const QStringList cellTexts{u"1"_s,   u"2"_s,     u"0"_s,   u"-3"_s,  u"12x"_s, u"1.0"_s,   QString(), u"a"_s,
                            u"B"_s,   u"abc"_s,   u"0.1"_s, u"300"_s, u"1e3"_s, u"70000"_s, u" 4"_s,   u"ab"_s,
                            u"3,5"_s, u"2e400"_s, u"+"_s,   u"100"_s, u"1 2"_s, u"2D1"_s};
const QStringList pastedTexts{u"1\t2\r3\t4"_s, u"x"_s,   u"\t\t\r"_s, u"7\n8\n"_s, u"0"_s, u"a\tb\tc\r\n1\t2\t3\r\n"_s,
                              u"\r\r"_s,       QString()};

} // namespace

// Records

void EditorSession::takeRecordStep(const Step &step) {
    const auto &picks = step.picks;
    if (step.kind == Step::AddRecord || step.kind == Step::RemoveRecord) {
        if (!activeOpen())
            return skip();
        return step.kind == Step::AddRecord ? addRecord() : removeRecord(picks[0], picks[1], picks[2] % 3 == 0);
    }
    const int pane = visibleGrid(picks[0]);
    if (pane < 0)
        return skip();
    const bool byHeader = picks[5] % 3 == 0;
    if (step.kind == Step::CloneSize)
        cloneSize(pane, byHeader, 1 + static_cast<int>(picks[2]), picks[4]);
    else
        cloneArea(pane, blockOf(pane, step), byHeader);
}

/// A block of the table that a pane shows; where both panes show it, mostly of what it has in both.
GridSelection EditorSession::blockOf(int pane, const Step &step) const {
    const auto &picks = step.picks;
    const PlainTable &table = *m_model.pane(pane).selectedTable();
    int rows = table.recordCount();
    int columns = table.fieldCount();
    if (m_model.sameTableShown() && picks[0] % 4 != 0) {
        rows = std::min(rows, m_model.pane(1 - pane).selectedTable()->recordCount());
        columns = std::min(columns, m_model.pane(1 - pane).selectedTable()->fieldCount());
    }
    return {1 + within(picks[1], rows), 1 + within(picks[2], columns), 1 + within(picks[3], rows),
            1 + within(picks[4], columns)};
}

void EditorSession::addRecord() {
    m_fixture->choose(Command::AddRecordMenu);
    const PlainTable *table = activeTable();
    if (table == nullptr)
        return;
    m_model.addRecord();
    if (m_fixture->grid(m_model.active).Row() != table->recordCount())
        throw std::runtime_error("the added record is not the current one");
}

void EditorSession::removeRecord(unsigned rowPick, unsigned columnPick, bool byPopup) {
    const PlainTable *table = activeTable();
    if (byPopup && table != nullptr && table->recordCount() > 0) {
        pressCell(m_model.active, 1 + within(rowPick, table->recordCount()),
                  1 + within(columnPick, table->fieldCount()));
    } else if (m_fixture->action(Command::RemoveRecordMenu).isEnabled()) {
        byPopup = false;
    } else {
        return skip(); // no records, or none in the last table where none is selected
    }
    const int row = m_fixture->grid(m_model.active).Row();
    trigger(byPopup ? Command::RemoveRecordPOP : Command::RemoveRecordMenu);
    if (table == nullptr)
        return; // ended silently
    note(u"  row %1 of pane %2"_s.arg(row).arg(m_model.active));
    m_model.removeRecord(row);
}

/// The right button on a cell; the pop-up stays open.
void EditorSession::pressCell(int pane, int row, int column) {
    leaveEditor(pane, row, column);
    rightPressCell(*m_fixture, pane, row, column);
    m_model.active = pane;
    expectEntries(m_fixture->menu(Menu::popmenuGrid), cloneEntries(pane, QString()) << u"RemoveRecordPOP"_s);
}

/// The entries that a grid's pop-up shows for copying to the other pane; `f` is what their names have more in the
/// header's.
QStringList EditorSession::cloneEntries(int pane, const QString &f) {
    if (!m_model.sameTableSelected())
        return {};
    const PlainTable &from = *m_model.pane(pane).selectedTable();
    const PlainTable &to = *m_model.pane(1 - pane).selectedTable();
    QStringList entries;
    if (from.fieldCount() == to.fieldCount() && from.recordCount() > to.recordCount())
        entries.append(u"CloneTableSize%1POP"_s.arg(f));
    if (m_fixture->grid(0).selection() == m_fixture->grid(1).selection())
        entries.append(u"CloneSelectedArea%1POP"_s.arg(f));
    return entries;
}

void EditorSession::cloneSize(int pane, bool byHeader, int column, unsigned answer) {
    // Mostly from the pane that has more records.
    if (m_model.sameTableShown() && answer % 8 != 0 &&
        m_model.pane(pane).selectedTable()->recordCount() < m_model.pane(1 - pane).selectedTable()->recordCount())
        pane = 1 - pane;
    column = 1 + column % m_model.pane(pane).selectedTable()->fieldCount();
    if (byHeader)
        pressHeader(pane, column);
    else
        pressCell(pane, 1, column);
    const Command command = byHeader ? Command::CloneTableSizeFPOP : Command::CloneTableSizePOP;
    if (!m_fixture->action(command).isVisible())
        return closePopup();
    const QString button = oneOf({u"Yes"_s, u"No"_s, u"Yes"_s, u"Cancel"_s}, answer);
    note(u"  from pane %1: %2"_s.arg(pane).arg(button));
    m_fixture->dialogs().expectMessage(u"Copy Cell content?"_s, u"?"_s, button);
    trigger(command);
    if (button != u"Cancel"_s)
        m_model.cloneSize(pane, button == u"Yes"_s);
}

void EditorSession::cloneArea(int pane, const GridSelection &block, bool byHeader) {
    selectCells(pane, block);
    if (byHeader)
        pressHeader(pane, block.column); // the current column's, so that the block stays
    else
        pressCell(pane, block.row, block.column);
    const Command command = byHeader ? Command::CloneSelectedAreaFPOP : Command::CloneSelectedAreaPOP;
    if (!m_fixture->action(command).isVisible())
        return closePopup();
    const GridRange range = m_fixture->grid(pane).selection().range();
    note(u"  (%1, %2) to (%3, %4) from pane %5"_s.arg(range.firstRow)
             .arg(range.firstColumn)
             .arg(range.lastRow)
             .arg(range.lastColumn)
             .arg(pane));
    trigger(command);
    m_model.cloneArea(pane, range.firstRow, range.firstColumn, range.lastRow, range.lastColumn);
}

// Cells

void EditorSession::takeCellStep(const Step &step) {
    const auto &picks = step.picks;
    const int pane = visibleGrid(picks[0]);
    if (pane < 0)
        return skip();
    const GridSelection block = blockOf(pane, step);
    const QString place = u"(%1, %2) to (%3, %4) of pane %5"_s.arg(block.row)
                              .arg(block.column)
                              .arg(block.rowEnd)
                              .arg(block.columnEnd)
                              .arg(pane);
    switch (step.kind) {
    case Step::EditCell:
        return editCell(pane, block.row, block.column, oneOf(cellTexts, picks[5]),
                        picks[3] % 4 == 0   ? Leave::Not
                        : picks[3] % 4 == 1 ? Leave::ByTab
                                            : Leave::ByReturn);
    case Step::CopyBlock: {
        note(place);
        selectCells(pane, block);
        hands::key(&m_fixture->grid(pane), picks[5] % 2 == 0 ? Qt::Key_C : Qt::Key_Insert, Qt::ControlModifier);
        const GridRange range = block.range();
        std::vector<QStringList> cells;
        for (int r = range.firstRow; r <= range.lastRow; ++r)
            cells.push_back(m_model.pane(pane).texts[static_cast<std::size_t>(r - 1)].mid(
                range.firstColumn - 1, range.lastColumn - range.firstColumn + 1));
        m_clipboard = cells;
        if (cells == std::vector<QStringList>{{QString()}})
            m_clipboard.reset(); // one empty text is no text
        return;
    }
    case Step::PasteText: {
        const QString text = oneOf(pastedTexts, picks[5]);
        QGuiApplication::clipboard()->setText(text);
        m_clipboard = text.isEmpty() ? std::nullopt : std::optional(cellsOf(text));
        [[fallthrough]];
    }
    case Step::PasteBlock:
        note(place);
        return paste(pane, block);
    case Step::EmptyBlock:
        note(place);
        selectCells(pane, block);
        hands::key(&m_fixture->grid(pane), Qt::Key_Delete);
        return m_model.rewrite(pane, block.range(), [](int, int) { return QString(); });
    case Step::FillDown:
        note(place);
        return fillDown(pane, block);
    case Step::SortColumn:
        return sortByColumn(pane, block.column);
    default:
        if (!activeOpen())
            return skip();
        m_fixture->choose(Command::ColumnSizeAdjust);
    }
}

void EditorSession::editCell(int pane, int row, int column, const QString &text, Leave leave) {
    const QString left = leave == Leave::Not     ? u", the editor stays open"_s
                         : leave == Leave::ByTab ? u", and the same in the next cell"_s
                                                 : QString();
    note(u"  (%1, %2) of pane %3: '%4'%5"_s.arg(row).arg(column).arg(pane).arg(text, left));
    leaveEditor(pane, row, column);
    beginEdit(*m_fixture, pane, row, column);
    retype(*m_fixture, pane, text);
    m_model.type(pane, row, column, text);
    if (leave == Leave::ByTab)
        tabOn(pane, row, column, text);
    else if (leave == Leave::ByReturn)
        hands::key(&m_fixture->cellEditor(pane), Qt::Key_Return);
}

/// From an open cell to the next one in reading order, if there is one, and types there.
void EditorSession::tabOn(int pane, int row, int column, const QString &text) {
    hands::key(&m_fixture->cellEditor(pane), Qt::Key_Tab);
    const PlainTable &table = *m_model.pane(pane).selectedTable();
    if (++column > table.fieldCount()) {
        column = 1;
        ++row;
    }
    if (row > table.recordCount())
        return; // the editor is closed
    retype(*m_fixture, pane, text);
    m_model.type(pane, row, column, text);
    hands::key(&m_fixture->cellEditor(pane), Qt::Key_Return);
}

/// Nobody can click a cell that lies under the editor.
void EditorSession::leaveEditor(int pane, int row, int column) {
    const EditedCell edited = m_fixture->editedCell();
    if (!editing(*m_fixture, pane) || edited.row != row || edited.column != column)
        return;
    if (!m_fixture->cellEditor(pane).hasFocus()) // a click elsewhere may have left it open
        hands::click(&m_fixture->cellEditor(pane), Qt::LeftButton);
    hands::key(&m_fixture->cellEditor(pane), Qt::Key_Return);
}

void EditorSession::selectCells(int pane, const GridSelection &block) {
    leaveEditor(pane, block.row, block.column);
    selectBlock(*m_fixture, pane, block);
    m_model.active = pane;
}

void EditorSession::paste(int pane, const GridSelection &block) {
    selectCells(pane, block);
    hands::key(&m_fixture->grid(pane), Qt::Key_V, Qt::ControlModifier);
    const GridRange range = block.range();
    if (m_clipboard)
        m_model.paste(pane, range.firstRow, range.firstColumn, range.lastRow, range.lastColumn, *m_clipboard);
}

void EditorSession::fillDown(int pane, const GridSelection &block) {
    selectCells(pane, block);
    hands::key(&m_fixture->grid(pane), Qt::Key_D, Qt::ControlModifier);
    GridRange cells = block.range();
    const int source = cells.firstRow == cells.lastRow ? cells.firstRow - 1 : cells.firstRow++;
    if (source >= 1)
        m_model.rewrite(pane, cells, [&](int, int column) {
            return m_model.pane(pane).texts[static_cast<std::size_t>(source - 1)][column - 1];
        });
}

void EditorSession::sortByColumn(int pane, int column) {
    note(u"  column %1 of pane %2"_s.arg(column).arg(pane));
    pressHeader(pane, column);
    trigger(Command::SortFPOP);
    m_model.sort(pane, column);
}

} // namespace qir::test
