#include "tests/window/model/EditorModel.h"

#include "tests/model/Values.h"

#include <algorithm>

namespace qir::test {

// Going back and forth, and what brings a whole block in

namespace {

QStringList namesOf(const PlainDatabase &content) {
    QStringList names;
    for (const PlainTable &table : content.tables)
        names.append(table.name);
    return names;
}

/// The line whose name counts as this key, -1 for none.
int lineOf(const ModelPane &pane, const QString &key) {
    for (int line = 0; line < pane.lineCount(); ++line)
        if (nameKey(pane.line(line).text) == key)
            return line;
    return -1;
}

} // namespace

/// A table stays the one that it was as long as it has its name.
void EditorModel::adopt(ModelPane &it, PlainDatabase content) {
    for (PlainTable &table : content.tables) {
        const PlainTable *before = it.content.find(table.name);
        table.id = before != nullptr ? before->id : freshId();
    }
    it.content = std::move(content);
}

void EditorModel::goToState(int index, const PlainDatabase &content, bool isChanged, const QString &table,
                            int changedTables) {
    ModelPane &it = pane(index);
    const QStringList names = namesOf(it.content);
    const QString selected = it.selected < 0 ? QString() : nameKey(it.line(it.selected).text);
    const int before = it.selected;
    adopt(it, content);
    it.changed = isChanged;
    const int line = table.isEmpty() ? -1 : lineOf(it, nameKey(table));
    if (namesOf(it.content) == names && changedTables <= 1 && line >= 0) {
        if (line == it.selected) {
            load(index, line);
            compare();
        } else {
            it.handled = -1;
            select(index, line);
        }
        return;
    }
    for (const int id : {it.shown, it.lastShown}) {
        if (id != 0 && it.content.byId(id) == nullptr) {
            it.shown = 0;
            it.lastShown = 0;
            m_comparisonDue = true;
        }
    }
    align();
    selectAfterRefill(index, nameKey(table), selected, before);
}

void EditorModel::selectAfterRefill(int index, const QString &table, const QString &selected, int before) {
    ModelPane &it = pane(index);
    int line = table.isEmpty() ? -1 : lineOf(it, table);
    if (line < 0 && !selected.isEmpty())
        line = lineOf(it, selected);
    if (line < 0 && it.lineCount() > 0)
        line = std::clamp(before, 0, it.lineCount() - 1);
    for (ModelPane &each : panes)
        if (each.open && line < each.lineCount())
            each.selected = line;
    if (it.selectedTable() != nullptr && it.selectedTable()->id == it.shown)
        load(index, line);
    compare();
    effects.inAnyCase = true;
}

void EditorModel::pasteAll(int index, int firstRow, int firstColumn, const std::vector<QStringList> &cells,
                           int newRecords) {
    ModelPane &it = pane(index);
    PlainTable &table = *it.selectedTable();
    for (int record = 0; record < newRecords; ++record) {
        table.addRecord();
        changed(index);
    }
    if (newRecords > 0) { // the grid was filled again for them
        it.texts = table.texts();
        reds[static_cast<std::size_t>(index)] = sameTableSelected() ? marks : Cells();
    }
    for (std::size_t row = 0; row < cells.size(); ++row) {
        for (int column = 0; column < cells[row].size(); ++column) {
            const int r = firstRow + static_cast<int>(row);
            const int c = firstColumn + column;
            if (r > table.recordCount() || c > table.fieldCount())
                continue;
            it.texts[static_cast<std::size_t>(r - 1)][c - 1] = cells[row][column];
            storeText(index, r, c);
        }
    }
    compare();
}

} // namespace qir::test
