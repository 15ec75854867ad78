#include "tests/window/model/EditorModel.h"

#include "tests/model/Values.h"

#include <algorithm>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

const QString placeholderMarker = u" ?"_s;
const QString differenceMarker = u" !"_s;

/// Where a list that is filled again has its selection.
int keptPosition(int position, int count) {
    return position < count ? position : count > 0 ? 0 : -1;
}

} // namespace

PlainTable *ModelPane::selectedTable() {
    if (!open || selected < 0 || lines[static_cast<std::size_t>(selected)].number < 1)
        return nullptr;
    return &content.table(lines[static_cast<std::size_t>(selected)].number - 1);
}

bool EditorModel::linesPaired() const {
    const int line = panes[0].selected;
    return bothOpen() && line >= 0 && panes[1].selected == line &&
           nameKey(panes[0].line(line).text) == nameKey(panes[1].line(line).text);
}

bool EditorModel::sameTableSelected() const {
    return linesPaired() && panes[0].selectedTable() != nullptr && panes[1].selectedTable() != nullptr;
}

bool EditorModel::sameTableShown() const {
    return sameTableSelected() && panes[0].selectedTable()->recordCount() > 0 &&
           panes[1].selectedTable()->recordCount() > 0;
}

void EditorModel::settle() {
    for (const int index : {0, 1})
        settlePane(index);
    const bool sameLine = panes[0].selected == panes[1].selected;
    const bool asked = effects.compared && (effects.inAnyCase || sameLine);
    const bool leftAlone = m_comparisonDue && !sameLine && (redShown(0) || redShown(1));
    if (leftAlone)
        effects = {.reloaded = effects.reloaded}; // all of what is red goes
    if (asked || leftAlone || (m_comparisonDue && sameLine)) {
        m_comparisonDue = false;
        markCells();
        paintCells();
        if (linesPaired())
            mark(panes[0].selected, sameTableShown() && !marks.empty());
    }
    for (const int index : {0, 1}) { // nothing is painted beyond a grid
        const PlainTable *table = pane(index).selectedTable();
        std::erase_if(reds[static_cast<std::size_t>(index)], [table](const std::pair<int, int> &cell) {
            return table == nullptr || cell.first > table->recordCount() || cell.second > table->fieldCount();
        });
    }
}

bool EditorModel::redShown(int index) const {
    const PlainTable *table = pane(index).selectedTable();
    return table != nullptr && table->recordCount() > 0 && !reds[static_cast<std::size_t>(index)].empty();
}

void EditorModel::settlePane(int index) {
    const auto at = static_cast<std::size_t>(index);
    ModelPane &it = pane(index);
    const PlainTable *table = it.selectedTable();
    const int now = table == nullptr ? 0 : table->id;
    if (now != it.shown) {
        reload(index);
        reds[at].clear();
        m_comparisonDue = true;
    } else if (effects.reloaded[at]) {
        // A reload shows what is known to differ.
        reds[at] = sameTableSelected() ? marks : Cells();
    }
    it.shown = now;
    if (now == 0)
        return;
    it.lastShown = now;
    it.handled = it.selected;
    if (effects.reloaded[at])
        it.texts = table->texts();
}

void EditorModel::markCells() {
    marks = sameTableShown() ? differences(*panes[0].selectedTable(), *panes[1].selectedTable()) : Cells();
}

void EditorModel::paintCells() {
    const auto painted = [this](const std::pair<int, int> &cell) {
        return effects.onlyOneCell ? cell == effects.cell : cell.first >= effects.firstPaintedRow;
    };
    for (Cells &cells : reds) {
        std::erase_if(cells, painted);
        for (const std::pair<int, int> &cell : marks)
            if (painted(cell))
                cells.insert(cell);
    }
}

/// A typed text is compared as it stands, with the other grid's text.
void EditorModel::typedCell(int row, int column) {
    if (!sameTableSelected())
        return;
    const std::pair<int, int> cell{row, column};
    const auto textIn = [&](const ModelPane &it) -> std::optional<QString> {
        const PlainTable &table = *it.selectedTable();
        if (row > table.recordCount() || column > table.fieldCount())
            return std::nullopt;
        return it.texts[static_cast<std::size_t>(row - 1)][column - 1];
    };
    const bool different = textIn(panes[0]) != textIn(panes[1]);
    for (Cells *cells : {&marks, &reds[0], &reds[1]}) {
        cells->erase(cell);
        if (different)
            cells->insert(cell);
    }
    mark(panes[0].selected, sameTableShown() && !marks.empty());
}

// Lists

void EditorModel::refill(int index) {
    ModelPane &it = pane(index);
    std::map<QString, ModelLine> sorted;
    for (int t = 0; t < it.content.tableCount(); ++t)
        sorted[nameKey(it.content.table(t).name)] = {it.content.table(t).name, t + 1};
    it.lines.clear();
    it.handled = -1;
    for (const auto &[key, line] : sorted)
        it.lines.push_back(line);
    it.selected = keptPosition(it.selected, it.lineCount());
}

void EditorModel::align() {
    for (const int index : {0, 1})
        if (pane(index).open)
            refill(index);
    if (!bothOpen())
        return;
    std::map<QString, QString> merged;
    for (const ModelPane &it : panes)
        for (const PlainTable &table : it.content.tables)
            merged.emplace(nameKey(table.name), table.name);
    for (ModelPane &it : panes) {
        int line = 0;
        for (const auto &[key, name] : merged) {
            if (it.content.find(name) == nullptr) {
                it.lines.insert(it.lines.begin() + line, {name + placeholderMarker, 0});
                if (it.selected >= line)
                    ++it.selected; // the selected line moves on
            }
            ++line;
        }
    }
    for (int line = 0; line < panes[0].lineCount(); ++line) {
        const auto at = static_cast<std::size_t>(line);
        if (panes[0].lines[at].number >= 1 && panes[1].lines[at].number >= 1)
            mark(line, differ(panes[0].content.table(panes[0].lines[at].number - 1),
                              panes[1].content.table(panes[1].lines[at].number - 1)));
    }
}

void EditorModel::mark(int line, bool different) {
    if (line < 0 || panes[0].lineCount() != panes[1].lineCount())
        return;
    QString &left = panes[0].lines[static_cast<std::size_t>(line)].text;
    QString &right = panes[1].lines[static_cast<std::size_t>(line)].text;
    if (!different) {
        left.remove(differenceMarker);
        right.remove(differenceMarker);
    } else if (!left.contains(placeholderMarker)) {
        if (!left.contains(differenceMarker))
            left += differenceMarker;
        if (!right.contains(differenceMarker))
            right += differenceMarker;
    }
}

} // namespace qir::test
