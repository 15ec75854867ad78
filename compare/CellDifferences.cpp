#include "compare/CellDifferences.h"

#include "compare/EqualTables.h"
#include "compare/TableMarks.h"
#include "compare/engine/TableComparison.h"

#include "platform/controls/Twips.h"
#include "platform/grid/Grid.h"
#include "platform/list/ListBox.h"
#include "platform/loop/MessageLoop.h"

#include <QGroupBox>
#include <QProgressBar>
#include <QToolTip>

#include <algorithm>
#include <cstdint>
#include <optional>

namespace qir {

namespace {

constexpr int barGap = 50;    // twips between the left list and the progress bar
constexpr int barSteps = 200; // the bar moves in no more steps than an eye can tell apart
/// More cells than these are not asked for one by one: comparing the tables by columns is quicker.
constexpr std::int64_t mostRechecked = 50'000;

/// A grid that takes part in a run: hidden while it is painted, then as it was before, however the run ends.
class PaintedGrid {
public:
    PaintedGrid(EditorContext &editor, int pane)
        : m_grid(editor.Tabella(pane))
        , m_selection(m_grid.selection()) {
        m_hidden.emplace(m_grid);
    }

    void show() { m_hidden.reset(); }
    void restoreSelection() {
        const GridSilence silence(m_grid);
        if (m_grid.shows(m_selection.row, m_selection.column))
            m_grid.setSelection(m_selection);
    }

private:
    Grid &m_grid;
    GridSelection m_selection;
    std::optional<GridHidden> m_hidden;
};

/// The progress bar below the lists, shown while it lives.
class ComparisonProgress {
public:
    ComparisonProgress(EditorContext &editor, int records)
        : m_bar(*editor.controls().ProgressBarCompare)
        , m_records(records)
        , m_stride(std::max(1, records / barSteps)) {
        place(editor);
        // A bar from 0 to 0 would show endless activity instead of nothing done.
        m_bar.setRange(0, std::max(records, 1));
        m_bar.setValue(0);
        m_bar.show();
        m_bar.raise();
        m_bar.repaint();
    }
    ~ComparisonProgress() { m_bar.hide(); }
    ComparisonProgress(const ComparisonProgress &) = delete;
    ComparisonProgress &operator=(const ComparisonProgress &) = delete;

    void advanceTo(int record) {
        if (record - m_shown < m_stride && record != m_records)
            return;
        m_shown = record;
        m_bar.setValue(record);
        m_bar.repaint();
    }

private:
    void place(EditorContext &editor) {
        const QRect left = editor.IDtb(0).geometry();
        const QRect right = editor.IDtb(1).geometry();
        const QRect list = editor.ListaTabelle(0).geometry();
        m_bar.setGeometry(left.x(), left.y() + list.y() + list.height() + toPixels(barGap),
                          right.x() + right.width() - left.x(), m_bar.height());
    }

    QProgressBar &m_bar;
    int m_records;
    int m_stride;
    int m_shown = 0;
};

std::size_t atLeastZero(int number) {
    return static_cast<std::size_t>(std::max(number, 0));
}

BitMatrix noDifferences(int records, int fields) {
    return {atLeastZero(records) + 1, atLeastZero(fields) + 1};
}

/// Paints the cells of a grid inside a window as CelleDiverse says. None of its bounds is 0.
void paintWindow(EditorContext &editor, int pane, const CellWindow &window) {
    Grid &grid = editor.Tabella(pane);
    grid.paintDifferences(editor.CelleDiverse(),
                          {window.firstRow, window.firstColumn, std::min(window.lastRow, grid.Rows() - 1),
                           std::min(window.lastColumn, grid.Cols() - 1)});
}

/// How many fields a grid shows.
int shownFields(const Grid &grid) {
    return grid.ColData(1) < 1 ? 0 : grid.Cols() - 1;
}

} // namespace

TableSizes shownSizes(const EditorContext &editor) {
    const Grid &left = editor.Tabella(0);
    const Grid &right = editor.Tabella(1);
    return {left.Rows() - 1, right.Rows() - 1, shownFields(left), shownFields(right)};
}

void SetEqualColor(EditorContext &editor, int pane, int row, int column) {
    Grid &grid = editor.Tabella(pane);
    if (row < 0 || column < 0 || row >= grid.Rows() || column >= grid.Cols())
        return;
    const bool different = editor.CelleDiverse().at(static_cast<std::size_t>(row), static_cast<std::size_t>(column));
    const CellColour wanted = different ? CellColour::Red : CellColour::White;
    if (editor.ColoriCelle(pane).at(row, column) != wanted)
        grid.setCellBackColor(row, column, wanted);
}

void CellDifferences::EvidenziaDifferenzeTabella(SelectionRule rule, CellWindow window) {
    const std::array<int, 2> lines{m_editor.ListaTabelle(0).ListIndex(), m_editor.ListaTabelle(1).ListIndex()};
    if (lines[0] != lines[1] && rule == SelectionRule::SameLine)
        return;
    m_due = false;
    std::array<std::optional<PaintedGrid>, 2> grids;
    for (const int pane : {0, 1}) {
        const auto i = static_cast<std::size_t>(pane);
        if (m_editor.Tabella(pane).Visible() && m_editor.DtbAperto(pane) && lines[i] >= 0)
            grids[i].emplace(m_editor, pane);
    }
    yieldToMessages();
    window.firstRow = window.firstRow == 0 ? 1 : window.firstRow;
    window.firstColumn = window.firstColumn == 0 ? 1 : window.firstColumn;
    if (grids[0] && grids[1] && m_editor.gridsShowSameTable()) {
        compareGrids(window);
    } else {
        for (const int pane : {0, 1}) {
            if (grids[static_cast<std::size_t>(pane)])
                clearGrid(pane, window);
        }
    }
    if (m_compared)
        m_compared();
    for (std::optional<PaintedGrid> &grid : grids) {
        if (!grid)
            continue;
        grid->show();
        yieldToMessages();
        grid->restoreSelection();
    }
    m_marks.MostraTabellaDiversaInLista();
    for (const int pane : {0, 1}) {
        const auto i = static_cast<std::size_t>(pane);
        if (grids[i])
            m_editor.ListaTabelle(pane).setListIndex(lines[i]); // raises nothing when it is the line still selected
    }
    yieldToMessages();
}

void CellDifferences::recheck(const GridRange &cells) {
    if (!m_editor.Tabella(0).Visible() || !m_editor.Tabella(1).Visible() || !m_editor.gridsShowSameTable())
        return;
    if (std::int64_t{cells.lastRow - cells.firstRow + 1} * (cells.lastColumn - cells.firstColumn + 1) > mostRechecked) {
        EvidenziaDifferenzeTabella();
        return;
    }
    for (const int pane : {0, 1})
        m_editor.pane(pane).makeShownTableCurrent();
    compareCurrentCells(m_editor.OggettoDtb(0), m_editor.OggettoDtb(1),
                        {cells.firstRow, cells.firstColumn, cells.lastRow, cells.lastColumn},
                        m_editor.foundDifferences());
    for (const int pane : {0, 1})
        paintWindow(m_editor, pane, {cells.firstRow, cells.lastRow, cells.firstColumn, cells.lastColumn});
    QToolTip::hideText(); // it may say what a cell was before
    m_marks.MostraTabellaDiversaInLista();
}

void CellDifferences::markTable(const QString &name) {
    m_marks.markTable(name);
}

void CellDifferences::clearGrid(int pane, CellWindow window) {
    m_editor.pane(pane).makeShownTableCurrent();
    const QirDatabase &database = m_editor.OggettoDtb(pane);
    const int records = database.QirTableRecordsCount();
    const int fields = database.QirTableFieldsCount();
    window.lastRow = window.lastRow == 0 ? records : window.lastRow;
    window.lastColumn = window.lastColumn == 0 ? fields : window.lastColumn;
    m_editor.foundDifferences() = noDifferences(records, fields);
    paintWindow(m_editor, pane, window);
}

void CellDifferences::compareGrids(CellWindow window) {
    m_editor.pane(0).makeShownTableCurrent();
    m_editor.pane(1).makeShownTableCurrent();
    const TableSizes sizes = currentTableSizes(m_editor.OggettoDtb(0), m_editor.OggettoDtb(1));
    window.lastRow = window.lastRow == 0 ? sizes.mostRecords() : window.lastRow;
    window.lastColumn = window.lastColumn == 0 ? sizes.mostFields() : window.lastColumn;
    const int commonRecords =
        std::min({m_editor.Tabella(0).Rows() - 1, m_editor.Tabella(1).Rows() - 1, sizes.commonRecords()});
    // A grid keeps one column even for a table without fields.
    const int commonFields =
        std::min({m_editor.Tabella(0).Cols() - 1, m_editor.Tabella(1).Cols() - 1, sizes.commonFields()});

    BitMatrix &different = m_editor.foundDifferences();
    different = noDifferences(sizes.mostRecords(), sizes.mostFields());
    {
        // Painting whole rows takes no time worth showing: the bar goes along with the comparing.
        ComparisonProgress progress(m_editor, commonRecords);
        TabelleDiverseBool(commonRecords, commonFields, different, [&](int record) { progress.advanceTo(record); });
        markOneSided(different, commonRecords, commonFields);
        // The window bounds the painting only: what differs is known for all cells.
        paintWindow(m_editor, 0, window);
        paintWindow(m_editor, 1, window);
    }
}

void CellDifferences::TabelleDiverseBool(int R, int F, BitMatrix &matrix, const ComparisonStep &step) {
    if (!m_editor.DtbAperto(0) || !m_editor.DtbAperto(1))
        return;
    YieldTimer timer;
    const ComparisonStep stepAndYield = [&](int record) {
        if (step)
            step(record);
        timer.yieldIfDue();
    };
    if (m_equal.currentTablesKnownEqual())
        markEqualTables(R, F, matrix, stepAndYield);
    else
        compareCurrentTables(m_editor.OggettoDtb(0), m_editor.OggettoDtb(1), R, F, matrix, stepAndYield);
}

} // namespace qir
