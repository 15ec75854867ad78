#include "tests/window/model/EditorModel.h"

#include "tests/model/Values.h"

#include <algorithm>
#include <numeric>

namespace qir::test {

// Files and modes

void EditorModel::release(int index, bool keep) {
    ModelPane &it = pane(index);
    if (it.open && it.changed && keep)
        files[it.file] = it.content;
    it = ModelPane{};
}

void EditorModel::start(std::optional<int> file, const QString &label) {
    panes = {};
    marks.clear();
    reds = {};
    m_comparisonDue = false;
    two = false;
    active = file ? 0 : -1;
    if (!file)
        return;
    ModelPane &it = pane(0);
    it.open = true;
    it.file = *file;
    it.label = label;
    it.content = files[*file];
    for (PlainTable &table : it.content.tables)
        table.id = freshId();
    refill(0);
    it.selected = it.lineCount() > 0 ? 0 : -1;
}

void EditorModel::open(int file, const QString &label) {
    active = std::max(active, 0);
    // A database that was there is replaced without a question, so its changes are kept.
    release(active, true);
    m_comparisonDue = true;
    ModelPane &it = activePane();
    it.open = true;
    it.file = file;
    it.label = label;
    it.content = files[file];
    for (PlainTable &table : it.content.tables)
        table.id = freshId();
    align();
    if (it.lineCount() == 0)
        return;
    load(active, 0);
    if (pane(1 - active).open && pane(1 - active).selected != 0)
        load(1 - active, 0);
    compare();
}

void EditorModel::save() {
    ModelPane &it = activePane();
    if (it.changed)
        files[it.file] = it.content;
    it.changed = false;
}

void EditorModel::saveAs(int file, const QString &label) {
    ModelPane &it = activePane();
    it.file = file;
    it.label = label;
    it.changed = true;
    save();
}

void EditorModel::close(bool keep) {
    release(active, keep);
    align();
    compare();
    effects.inAnyCase = true;
}

void EditorModel::exit(const std::array<bool, 2> &keep) {
    for (const int index : {0, 1})
        release(index, keep[static_cast<std::size_t>(index)]);
}

void EditorModel::toggleOneMenu(bool keep) {
    two = !two;
    if (two)
        return;
    release(1, keep);
    active = std::min(active, 0);
    compare();
    effects.inAnyCase = true;
    align();
}

void EditorModel::toggleTwoMenu(bool keep) {
    two = !two;
    if (two)
        return;
    release(1, keep); // the left list keeps its marks and placeholders
    active = std::min(active, 0);
}

void EditorModel::compareAgain() {
    ModelPane &it = activePane();
    const QString selected =
        it.selected < 0 ? QString() : nameKey(it.lines[static_cast<std::size_t>(it.selected)].text);
    align();
    for (int line = 0; line < it.lineCount(); ++line) {
        if (nameKey(it.lines[static_cast<std::size_t>(line)].text) == selected) {
            panes[0].selected = line;
            panes[1].selected = line;
            break;
        }
    }
    compare();
    effects.inAnyCase = true;
}

// Tables

/// Selects a line and shows its table, as a click does first.
void EditorModel::load(int index, int line) {
    pane(index).selected = line;
    pane(index).handled = line;
    reload(index);
}

void EditorModel::select(int index, int line) {
    ModelPane &it = pane(index);
    ModelPane &other = pane(1 - index);
    active = index;
    it.selected = line;
    if (line == it.handled)
        return;
    load(index, line);
    if (!other.open || other.selected == line)
        return;
    if (line < other.lineCount())
        load(1 - index, line);
    compare();
}

bool EditorModel::addTable(const QString &name) {
    ModelPane &it = activePane();
    if (nameKey(name).isEmpty() || it.content.find(name) != nullptr)
        return false;
    PlainTable table;
    table.id = freshId();
    table.name = name;
    it.content.tables.push_back(table);
    changed(active);
    refill(active);
    if (it.selected < 0) {
        select(active, 0); // as by a click
        return true;
    }
    reload(active);
    compare();
    return true;
}

bool EditorModel::renameTable(const QString &name) {
    ModelPane &it = activePane();
    PlainTable &table = *it.selectedTable();
    const PlainTable *holder = it.content.find(name);
    if (nameKey(name).isEmpty() || (holder != nullptr && holder->id != table.id))
        return false;
    if (table.name != name)
        changed(active);
    table.name = name;
    const std::array<int, 2> positions{panes[0].selected, panes[1].selected};
    align();
    for (const int index : {0, 1}) {
        const int position = positions[static_cast<std::size_t>(index)];
        pane(index).selected = position < pane(index).lineCount() ? position : 0;
    }
    load(active, it.selected);
    compare();
    return true;
}

void EditorModel::removeTable() {
    ModelPane &it = activePane();
    const int number = it.lines[static_cast<std::size_t>(it.selected)].number;
    it.content.tables.erase(it.content.tables.begin() + (number - 1));
    it.lastShown = 0;
    it.shown = 0;
    m_comparisonDue = true;
    changed(active);
    it.selected = -1;
    align();
    if (number >= it.lineCount())
        return; // nothing is selected, and the other list has no such line either
    load(active, number);
    const ModelPane &other = pane(1 - active);
    if (other.open && other.selected != number && number < other.lineCount()) {
        load(1 - active, number);
        compare();
    }
}

void EditorModel::cloneTable(int source) {
    ModelPane &from = pane(source);
    ModelPane &to = pane(1 - source);
    const int position = from.selected;
    PlainTable table = *from.selectedTable();
    table.name = withoutMarkers(from.lines[static_cast<std::size_t>(position)].text);
    table.id = freshId();
    to.content.tables.push_back(table);
    changed(1 - source);
    align();
    for (const int index : {source, 1 - source}) {
        if (pane(index).selected != position)
            load(index, position);
    }
    compare();
}

// Fields and records

bool EditorModel::addField(const PlainField &field) {
    ModelPane &it = activePane();
    PlainTable &table = *it.content.byId(it.lastShown);
    if (nameKey(field.name).isEmpty() || table.hasField(field.name))
        return false;
    table.addField(field);
    changed(active);
    if (it.selectedTable() != nullptr)
        reload(active);
    else
        markTable(table.name); // nobody sees the change
    compare();
    return true;
}

/// Marks the line of a table that both lists have there.
void EditorModel::markTable(const QString &name) {
    if (!bothOpen())
        return;
    for (int line = 0; line < std::min(panes[0].lineCount(), panes[1].lineCount()); ++line) {
        const ModelLine &left = panes[0].line(line);
        const ModelLine &right = panes[1].line(line);
        if (nameKey(left.text) == nameKey(name) && nameKey(right.text) == nameKey(name) && left.number >= 1 &&
            right.number >= 1)
            mark(line, differ(panes[0].content.table(left.number - 1), panes[1].content.table(right.number - 1)));
    }
}

bool EditorModel::renameField(int column, const QString &name) {
    PlainTable &table = *activePane().selectedTable();
    if (nameKey(name).isEmpty() || table.hasField(name, column - 1))
        return false;
    if (table.field(column - 1).name != name)
        changed(active);
    table.field(column - 1).name = name;
    reload(active);
    return true;
}

void EditorModel::removeField(int column) {
    activePane().selectedTable()->removeField(column - 1);
    changed(active);
    reload(active);
    compare();
}

void EditorModel::resizeField(int column, double size) {
    if (!activePane().selectedTable()->resizeField(column - 1, size))
        return;
    changed(active); // nothing is loaded or compared
}

void EditorModel::addRecord() {
    PlainTable &table = *activePane().selectedTable();
    table.addRecord();
    changed(active);
    reload(active);
    compare();
    effects.firstPaintedRow = table.recordCount();
}

void EditorModel::removeRecord(int row) {
    PlainTable &table = *activePane().selectedTable();
    table.records.erase(table.records.begin() + (row - 1));
    changed(active);
    reload(active);
    compare();
}

void EditorModel::cloneSize(int source, bool withContent) {
    const PlainTable &from = *pane(source).selectedTable();
    PlainTable &to = *pane(1 - source).selectedTable();
    while (to.recordCount() < from.recordCount()) {
        to.addRecord();
        const int record = to.recordCount() - 1;
        for (int k = 0; withContent && k < from.fieldCount(); ++k)
            to.store(record, k, to.field(k).from(from.value(record, k)));
        changed(1 - source);
    }
    reload(1 - source);
    compare();
}

void EditorModel::cloneArea(int source, int firstRow, int firstColumn, int lastRow, int lastColumn) {
    const ModelPane &from = pane(source);
    ModelPane &to = pane(1 - source);
    for (int r = firstRow; r <= lastRow; ++r) {
        for (int c = firstColumn; c <= lastColumn; ++c) {
            to.texts[static_cast<std::size_t>(r - 1)][c - 1] = from.texts[static_cast<std::size_t>(r - 1)][c - 1];
            storeText(1 - source, r, c);
        }
    }
    compare();
    effects.onlyOneCell = true;
    if (firstRow == lastRow && firstColumn == lastColumn)
        effects.cell = {firstRow, firstColumn};
}

// Cells

void EditorModel::storeText(int index, int row, int column) {
    PlainTable &table = *pane(index).selectedTable();
    const QString &text = pane(index).texts[static_cast<std::size_t>(row - 1)][column - 1];
    if (table.store(row - 1, column - 1, table.field(column - 1).from(text)))
        changed(index);
}

void EditorModel::type(int index, int row, int column, const QString &text) {
    active = index;
    QString &shown = pane(index).texts[static_cast<std::size_t>(row - 1)][column - 1];
    // The first key replaces the whole text; each key writes.
    for (qsizetype length = text.isEmpty() ? 0 : 1; length <= text.size(); ++length) {
        if (shown == text.first(length))
            continue;
        shown = text.first(length);
        storeText(index, row, column);
        typedCell(row, column);
    }
}

void EditorModel::paste(int index, int firstRow, int firstColumn, int lastRow, int lastColumn,
                        const std::vector<QStringList> &cells) {
    ModelPane &it = pane(index);
    for (int r = firstRow; r <= lastRow; ++r) {
        for (int c = firstColumn; c <= lastColumn; ++c) {
            const auto row = static_cast<std::size_t>(r - firstRow);
            if (row < cells.size() && c - firstColumn < cells[row].size())
                it.texts[static_cast<std::size_t>(r - 1)][c - 1] = cells[row][c - firstColumn];
        }
    }
    storeAll(index);
}

void EditorModel::replace(int index, const std::vector<std::pair<int, int>> &cells,
                          const std::function<QString(int row, int column)> &text) {
    for (const auto &[row, column] : cells) {
        pane(index).texts[static_cast<std::size_t>(row - 1)][column - 1] = text(row, column);
        storeText(index, row, column);
    }
    compare();
}

void EditorModel::rewrite(int index, const GridRange &cells, const std::function<QString(int row, int column)> &text) {
    for (int r = cells.firstRow; r <= cells.lastRow; ++r) {
        for (int c = cells.firstColumn; c <= cells.lastColumn; ++c) {
            pane(index).texts[static_cast<std::size_t>(r - 1)][c - 1] = text(r, c);
            storeText(index, r, c);
        }
    }
    compare();
}

void EditorModel::sort(int index, int column) {
    std::vector<QStringList> &texts = pane(index).texts;
    std::vector<std::size_t> order(texts.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t left, std::size_t right) {
        return sortsBefore(texts[left][column - 1], texts[right][column - 1]);
    });
    const std::vector<QStringList> before = texts;
    Cells &cells = reds[static_cast<std::size_t>(index)];
    const Cells redBefore = cells;
    cells.clear();
    for (std::size_t row = 0; row < order.size(); ++row) {
        texts[row] = before[order[row]];
        for (const auto &[from, c] : redBefore) // rows move with their colours
            if (from == static_cast<int>(order[row]) + 1)
                cells.insert({static_cast<int>(row) + 1, c});
    }
    storeAll(index);
}

/// Sorting and pasting write every cell back from its text.
void EditorModel::storeAll(int index) {
    const PlainTable &table = *pane(index).selectedTable();
    for (int r = 1; r <= table.recordCount(); ++r)
        for (int c = 1; c <= table.fieldCount(); ++c)
            storeText(index, r, c);
    compare();
}

} // namespace qir::test
