#pragma once

#include "platform/grid/GridRange.h"
#include "tests/model/PlainDatabase.h"

#include <QString>
#include <QStringList>

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace qir::test {

struct ModelLine {
    QString text;
    int number = 0; ///< Of the table in its database; 0 for a placeholder.
};

/// What a pane holds and shows. Lines and records count from 0 here.
struct ModelPane {
    bool open = false;
    PlainDatabase content;
    bool changed = false;
    int file = -1; ///< Where the component saves to.

    std::vector<ModelLine> lines;
    int selected = -1;
    int handled = -1;  ///< The line whose click does nothing, because it was handled already; -1 for none.
    QString label;     ///< The file's name above the list.
    int shown = 0;     ///< The id of the table in the grid, 0 for none.
    int lastShown = 0; ///< The same, though the grid may show none now; 0 when that table is gone.
    std::vector<QStringList> texts;

    const ModelLine &line(int index) const { return lines[static_cast<std::size_t>(index)]; }
    int lineCount() const { return static_cast<int>(lines.size()); }
    /// The table of the selected line; null for a placeholder or none.
    PlainTable *selectedTable();
    const PlainTable *selectedTable() const { return const_cast<ModelPane *>(this)->selectedTable(); }
};

/// What a step did to lists and grids besides changing content; settle() works it off.
struct StepEffects {
    std::array<bool, 2> reloaded{}; ///< The grid was filled again.
    bool compared = false;          ///< The cells were compared, if both lists have the same line selected,
    bool inAnyCase = false;         ///< or even if not,
    int firstPaintedRow = 1;        ///< and painted from this row on
    bool onlyOneCell = false;       ///< or only where the block is.
    std::pair<int, int> cell{};     ///< The only one painted; (0, 0) for none.
};

/// How many records a carried table changes, adds and removes on the other side.
struct CarriedTable {
    int changed = 0;
    int added = 0;
    int removed = 0;
};

/// How many values a carrying by key changes, and how many records it adds and removes.
struct CarriedByKey {
    int values = 0;
    int added = 0;
    int removed = 0;
};

/// The whole editor in its plainest form: the state of both panes, and the rules by which commands change it. No
/// widget, no component; what a person does and answers comes in as arguments. What the rules leave open, the grids'
/// current cells above all, the model takes from the window.
class EditorModel {
public:
    std::array<ModelPane, 2> panes;
    int active = -1;
    bool two = false;
    std::map<int, PlainDatabase> files; ///< What each file holds.
    StepEffects effects;
    Cells marks;               ///< The cells that differ, as far as the last comparison and typing tell.
    std::array<Cells, 2> reds; ///< The cells painted red.
    int lastType = 0;          ///< What the type picker's record holds.

    ModelPane &pane(int index) { return panes[static_cast<std::size_t>(index)]; }
    const ModelPane &pane(int index) const { return panes[static_cast<std::size_t>(index)]; }
    ModelPane &activePane() { return pane(active); }
    bool bothOpen() const { return panes[0].open && panes[1].open; }
    /// Both lists have the same line selected, of the same table.
    bool linesPaired() const;
    /// And both databases hold it.
    bool sameTableSelected() const;
    /// And both tables have records to show.
    bool sameTableShown() const;

    void beginStep() { effects = StepEffects{}; }
    /// Ends a step: what is shown, marked and painted follows from the selection and the effects.
    void settle();

    // Files and modes

    void start(std::optional<int> file, const QString &label);
    void open(int file, const QString &label);
    void save();
    void saveAs(int file, const QString &label);
    /// `keep` is the answer to the question about changes, if it is asked.
    void close(bool keep);
    void exit(const std::array<bool, 2> &keep);
    void toggleOneMenu(bool keep);
    void toggleTwoMenu(bool keep);
    void compareAgain();

    // Tables

    void select(int pane, int line);
    /// False when the name is taken or no name.
    bool addTable(const QString &name);
    bool renameTable(const QString &name);
    void removeTable();
    void cloneTable(int source);

    // Fields and records; columns and rows count from 1, as in the grid

    bool addField(const PlainField &field);
    bool renameField(int column, const QString &name);
    void removeField(int column);
    void resizeField(int column, double size);
    void addRecord();
    void removeRecord(int row);
    void cloneSize(int source, bool withContent);
    void cloneArea(int source, int firstRow, int firstColumn, int lastRow, int lastColumn);

    // Cells

    /// Types a text in place of a cell's own, key by key.
    void type(int pane, int row, int column, const QString &text);
    /// Other texts in these cells, all at once.
    void replace(int index, const std::vector<std::pair<int, int>> &cells,
                 const std::function<QString(int row, int column)> &text);
    /// The line of one list alone.
    void showAlone(int index, int line) { load(index, line); }
    /// Writes a text into each cell of a block, and no other cell.
    void rewrite(int index, const GridRange &cells, const std::function<QString(int row, int column)> &text);
    void paste(int pane, int firstRow, int firstColumn, int lastRow, int lastColumn,
               const std::vector<QStringList> &cells);
    void sort(int pane, int column);
    /// Lays a block from a cell on, over records that are added for it where the user wants that.
    void pasteAll(int pane, int firstRow, int firstColumn, const std::vector<QStringList> &cells, int newRecords);

    // Going back and forth

    /// The database holds what it held once. What has changed, a table's name and how many tables, the component tells.
    void goToState(int pane, const PlainDatabase &content, bool isChanged, const QString &table, int changedTables);

    // Differences

    /// The same types and sizes on both sides, in columns that both have.
    bool fieldsAlike(int firstColumn, int lastColumn) const;
    void carryCells(int from, const GridRange &cells);
    void carryRecord(int from, int row);
    CarriedTable carriedTable(int from) const;
    void carryTable(int from);
    /// Whether the first field can be the key of the shown tables, all fields being the same on both sides.
    bool firstFieldIsKey() const;
    CarriedByKey carriedByKey(int from) const;
    /// All that differs by the first field as the key.
    void carryByKey(int from);
    /// A command compared the shown cells.
    void compareShown() { compare(); }

private:
    void adopt(ModelPane &it, PlainDatabase content);
    void selectAfterRefill(int pane, const QString &table, const QString &selected, int before);
    /// Gives a line of both lists the marker of a differing table, or takes it away.
    void mark(int line, bool different);
    void markTable(const QString &name);
    int freshId() { return ++m_lastId; }
    void refill(int pane);
    void align();
    void release(int pane, bool keep);
    void changed(int pane) { this->pane(pane).changed = true; }
    void reload(int pane) { effects.reloaded[static_cast<std::size_t>(pane)] = true; }
    void storeText(int pane, int row, int column);
    void storeAll(int pane);
    void load(int pane, int line);
    void compare() { effects.compared = true; }
    /// Whether the pane's grid can be seen and has red cells.
    bool redShown(int pane) const;
    void settlePane(int pane);
    void markCells();
    void paintCells();
    void typedCell(int row, int column);

    int m_lastId = 0;
    bool m_comparisonDue = false; ///< Since a grid has shown another table or none.
};

} // namespace qir::test
