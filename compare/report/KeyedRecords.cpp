#include "compare/report/KeyedRecords.h"

namespace qir {

void forEachKeyedRecord(const KeyedDifference &difference, const std::function<void(const KeyedRecord &)> &take) {
    auto removed = difference.removed.begin();
    for (const ChangedRecord &changed : difference.changed) {
        for (; removed != difference.removed.end() && *removed < changed.records.left; ++removed)
            take({RecordChange::Removed, {*removed, 0}, 0});
        take({RecordChange::Changed, changed.records, changed.row});
    }
    for (; removed != difference.removed.end(); ++removed)
        take({RecordChange::Removed, {*removed, 0}, 0});
    for (const int record : difference.added)
        take({RecordChange::Added, {0, record}, 0});
}

std::vector<FieldPair> changedFields(const KeyedDifference &difference, std::size_t row) {
    std::vector<FieldPair> fields;
    for (std::size_t i = 0; i < difference.fields.compared.size(); ++i) {
        if (difference.cells.at(row, i))
            fields.push_back(difference.fields.compared[i]);
    }
    return fields;
}

QVariantList keyValues(TableSource &table, const KeyedDifference &difference, TableSide side, int record) {
    QVariantList values;
    for (const FieldPair &field : difference.fields.key)
        values.append(valueOf(table.cell(record, side == TableSide::Left ? field.left : field.right)));
    return values;
}

} // namespace qir
