#include "cli/diff/JsonOutput.h"

#include "cli/tables/JsonText.h"
#include "compare/report/KeyedRecords.h"

namespace qir {

namespace {

const char *stateName(const TableDifference &table) {
    switch (table.kind) {
    case AlignedRowKind::LeftOnly:
        return "left";
    case AlignedRowKind::RightOnly:
        return "right";
    default:
        return table.different ? "different" : "same";
    }
}

void appendCount(QByteArray &out, const char *key, std::size_t count) {
    out += QByteArray(", \"") + key + "\": " + QByteArray::number(static_cast<qulonglong>(count));
}

void appendNames(QByteArray &out, const char *key, const QStringList &names) {
    out += QByteArray(", \"") + key + "\": ";
    appendJsonNames(out, names);
}

void appendKeyedRecord(QByteArray &out, const TableDifference &table, const KeyedRecord &record, TableSource &left,
                       TableSource &right) {
    const KeyedDifference &keyed = *table.keyed;
    const bool added = record.change == RecordChange::Added;
    const QVariantList key = added ? keyValues(right, keyed, TableSide::Right, record.records.right)
                                   : keyValues(left, keyed, TableSide::Left, record.records.left);
    if (record.change != RecordChange::Changed) {
        openJsonChange(out, table.name, key, added ? "added" : "removed");
        appendJsonRecord(out, added ? right : left, added ? record.records.right : record.records.left);
        closeJsonLine(out);
        return;
    }
    for (const FieldPair &field : changedFields(keyed, record.row)) {
        openJsonChange(out, table.name, key, "changed");
        appendJsonValueChange(out, left.fieldName(field.left), valueOf(left.cell(record.records.left, field.left)),
                              valueOf(right.cell(record.records.right, field.right)), record.records);
        closeJsonLine(out);
    }
}

} // namespace

void openJsonTable(QByteArray &out, const TableDifference &table) {
    out += "{\"table\": ";
    appendJsonString(out, table.name);
    out += QByteArray(", \"state\": \"") + stateName(table) + '"';
    appendCount(out, "cells", table.cellCount());
    appendJsonPair(out, "records", table.sizes.leftRecords, table.sizes.rightRecords);
    appendJsonPair(out, "fields", table.sizes.leftFields, table.sizes.rightFields);
    if (!table.keyed)
        return;
    const KeyedDifference &keyed = *table.keyed;
    appendNames(out, "key", keyed.keyNames);
    appendCount(out, "added", keyed.added.size());
    appendCount(out, "removed", keyed.removed.size());
    appendCount(out, "changed", keyed.changed.size());
    appendCount(out, "moved", keyed.moved.size());
    appendNames(out, "fieldsLeft", keyed.onlyLeftNames);
    appendNames(out, "fieldsRight", keyed.onlyRightNames);
}

void closeJsonLine(QByteArray &out) {
    out += "}\n";
}

void appendCellJson(QByteArray &out, const DifferingCell &cell) {
    out += "{\"table\": ";
    appendJsonString(out, cell.table);
    out += ", \"record\": " + QByteArray::number(cell.record) + ", \"field\": " + QByteArray::number(cell.field);
    out += ", \"left\": ";
    appendJsonValue(out, cell.left);
    out += ", \"right\": ";
    appendJsonValue(out, cell.right);
    closeJsonLine(out);
}

void openJsonChange(QByteArray &out, const QString &table, const QVariantList &key, const char *change) {
    out += "{\"table\": ";
    appendJsonString(out, table);
    out += ", \"key\": ";
    appendJsonValues(out, key);
    out += QByteArray(", \"change\": \"") + change + '"';
}

void appendJsonValueChange(QByteArray &out, const QString &field, const QVariant &left, const QVariant &right,
                           const PairedRecords &records) {
    out += ", \"field\": ";
    appendJsonString(out, field);
    out += ", \"left\": ";
    appendJsonValue(out, left);
    out += ", \"right\": ";
    appendJsonValue(out, right);
    appendJsonPair(out, "records", records.left, records.right);
}

void appendJsonRecord(QByteArray &out, TableSource &table, int record) {
    QVariantList values;
    for (int field = 1; field <= table.fields(); ++field)
        values.append(valueOf(table.cell(record, field)));
    out += ", \"record\": " + QByteArray::number(record) + ", \"values\": ";
    appendJsonValues(out, values);
}

void appendDuplicatesJson(QByteArray &out, const TableDifference &table, TableSource &left, TableSource &right) {
    for (const DuplicateKey &key : table.keyed->duplicates) {
        const bool isLeft = key.side == TableSide::Left;
        out += "{\"table\": ";
        appendJsonString(out, table.name);
        out += ", \"duplicate\": ";
        appendJsonValues(out, keyValues(isLeft ? left : right, *table.keyed, key.side, key.record));
        out += isLeft ? ", \"side\": \"left\"" : ", \"side\": \"right\"";
        closeJsonLine(out);
    }
}

void appendDetailsJson(QByteArray &out, const TableDifference &table, const QirDatabase &left, const QirDatabase &right,
                       const OutputSink &sink) {
    if (!table.keyed) {
        forEachDifferingCell(table, left, right, [&](const DifferingCell &cell) {
            appendCellJson(out, cell);
            sink(out);
        });
        return;
    }
    chooseOnBothSides(table, left, right);
    CurrentTable leftTable(left);
    CurrentTable rightTable(right);
    appendDuplicatesJson(out, table, leftTable, rightTable);
    forEachKeyedRecord(*table.keyed, [&](const KeyedRecord &record) {
        appendKeyedRecord(out, table, record, leftTable, rightTable);
        sink(out);
    });
}

} // namespace qir
