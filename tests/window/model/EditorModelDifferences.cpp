// Carrying what differs from one pane to the other.

#include "tests/model/Values.h"
#include "tests/window/model/EditorModel.h"

#include <algorithm>

namespace qir::test {

namespace {

/// The record that has a value in its first field, null for none.
const QVariantList *recordOf(const PlainTable &table, const QVariant &key) {
    const auto found = std::find_if(table.records.begin(), table.records.end(),
                                    [&](const QVariantList &record) { return equalValues(record[0], key); });
    return found == table.records.end() ? nullptr : &*found;
}

bool firstValuesAreUnique(const PlainTable &table) {
    return std::all_of(table.records.begin(), table.records.end(),
                       [&](const QVariantList &record) { return recordOf(table, record[0]) == &record; });
}

} // namespace

bool EditorModel::fieldsAlike(int firstColumn, int lastColumn) const {
    const PlainTable &left = *panes[0].selectedTable();
    const PlainTable &right = *panes[1].selectedTable();
    for (int c = firstColumn; c <= lastColumn; ++c) {
        if (c > std::min(left.fieldCount(), right.fieldCount()) || left.field(c - 1).type != right.field(c - 1).type ||
            left.field(c - 1).size != right.field(c - 1).size)
            return false;
    }
    return true;
}

void EditorModel::carryCells(int from, const GridRange &cells) {
    for (int r = cells.firstRow; r <= cells.lastRow; ++r) {
        for (int c = cells.firstColumn; c <= cells.lastColumn; ++c) {
            const auto row = static_cast<std::size_t>(r - 1);
            pane(1 - from).texts[row][c - 1] = pane(from).texts[row][c - 1];
            storeText(1 - from, r, c);
            typedCell(r, c);
        }
    }
}

void EditorModel::carryRecord(int from, int row) {
    const PlainTable &source = *pane(from).selectedTable();
    PlainTable &target = *pane(1 - from).selectedTable();
    const int fields = std::min(source.fieldCount(), target.fieldCount());
    if (row <= target.recordCount()) {
        carryCells(from, {row, 1, row, fields});
        return;
    }
    target.addRecord();
    for (int k = 0; k < fields; ++k)
        target.store(target.recordCount() - 1, k, source.value(row - 1, k));
    changed(1 - from);
    reload(1 - from);
    compare();
}

CarriedTable EditorModel::carriedTable(int from) const {
    const PlainTable &source = *pane(from).selectedTable();
    const PlainTable &target = *pane(1 - from).selectedTable();
    const int common = std::min(source.recordCount(), target.recordCount());
    CarriedTable carried;
    std::set<int> rows;
    for (const auto &[row, column] : differences(source, target)) {
        if (row <= common)
            rows.insert(row);
    }
    carried.changed = static_cast<int>(rows.size());
    carried.added = std::max(source.recordCount() - target.recordCount(), 0);
    carried.removed = std::max(target.recordCount() - source.recordCount(), 0);
    return carried;
}

void EditorModel::carryTable(int from) {
    const CarriedTable carried = carriedTable(from);
    compare();
    if (carried.changed + carried.added + carried.removed == 0)
        return;
    pane(1 - from).selectedTable()->records = pane(from).selectedTable()->records;
    changed(1 - from);
    reload(1 - from);
}

bool EditorModel::firstFieldIsKey() const {
    const PlainTable &left = *panes[0].selectedTable();
    const PlainTable &right = *panes[1].selectedTable();
    const int fields = left.fieldCount();
    if (fields == 0 || fields != right.fieldCount() || !fieldsAlike(1, fields))
        return false;
    for (int k = 0; k < fields; ++k)
        if (nameKey(left.field(k).name) != nameKey(right.field(k).name))
            return false;
    return firstValuesAreUnique(left) && firstValuesAreUnique(right);
}

CarriedByKey EditorModel::carriedByKey(int from) const {
    const PlainTable &source = *pane(from).selectedTable();
    const PlainTable &target = *pane(1 - from).selectedTable();
    CarriedByKey carried;
    for (const QVariantList &record : target.records) {
        const QVariantList *partner = recordOf(source, record[0]);
        carried.removed += partner == nullptr ? 1 : 0;
        for (int k = 1; partner != nullptr && k < target.fieldCount(); ++k)
            carried.values += equalValues((*partner)[k], record[k]) ? 0 : 1;
    }
    for (const QVariantList &record : source.records)
        carried.added += recordOf(target, record[0]) == nullptr ? 1 : 0;
    return carried;
}

void EditorModel::carryByKey(int from) {
    const PlainTable &source = *pane(from).selectedTable();
    PlainTable &target = *pane(1 - from).selectedTable();
    std::vector<QVariantList> records;
    for (const QVariantList &record : target.records) {
        const QVariantList *partner = recordOf(source, record[0]);
        if (partner == nullptr)
            continue;
        records.push_back(record);
        for (int k = 1; k < target.fieldCount(); ++k)
            if (!equalValues((*partner)[k], record[k]))
                records.back()[k] = (*partner)[k];
    }
    for (const QVariantList &record : source.records)
        if (recordOf(target, record[0]) == nullptr)
            records.push_back(record);
    target.records = records;
    changed(1 - from);
    reload(1 - from);
    compare();
}

} // namespace qir::test
