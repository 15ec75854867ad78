#include "cli/diff/DifferenceOutput.h"

#include "cli/tables/TextTable.h"
#include "compare/report/KeyedRecords.h"

using namespace Qt::StringLiterals;

namespace qir {

namespace {

QString sides(int left, int right, const QString &what) {
    return left == right ? QString() : u", %1 | %2 %3"_s.arg(left).arg(right).arg(what);
}

/// "by Name: 2 added, 1 changed"; what there is none of is left out.
QString keyedWords(const TableDifference &table, const QStringList &key) {
    const KeyedDifference &keyed = *table.keyed;
    QStringList parts;
    const auto addPart = [&](std::size_t count, const QString &what) {
        if (count > 0)
            parts += u"%1 %2"_s.arg(static_cast<qulonglong>(count)).arg(what);
    };
    addPart(keyed.added.size(), u"added"_s);
    addPart(keyed.removed.size(), u"removed"_s);
    addPart(keyed.changed.size(), u"changed"_s);
    addPart(keyed.moved.size(), u"moved"_s);
    addPart(keyed.fields.onlyLeft.size(), u"fields only left"_s);
    addPart(keyed.fields.onlyRight.size(), u"fields only right"_s);
    const QString by = u"by "_s + printableText(key.join(u", "_s));
    return parts.isEmpty() ? by : by + u": "_s + parts.join(u", "_s);
}

QString tableText(const TableDifference &table) {
    const QString name = printableText(table.name);
    if (table.kind == AlignedRowKind::LeftOnly)
        return u"only left: "_s + name;
    if (table.kind == AlignedRowKind::RightOnly)
        return u"only right: "_s + name;
    const QString state = table.different ? u"differs: "_s : u"same: "_s;
    if (table.keyed)
        return u"%1%2 (%3)"_s.arg(state, name, keyedWords(table, table.keyed->keyNames));
    if (!table.different)
        return state + name;
    const auto count = static_cast<qulonglong>(table.cellCount());
    return u"%1%2 (%3%4%5)"_s.arg(state, name, count == 1 ? u"1 cell"_s : u"%1 cells"_s.arg(count),
                                  sides(table.sizes.leftRecords, table.sizes.rightRecords, u"records"_s),
                                  sides(table.sizes.leftFields, table.sizes.rightFields, u"fields"_s));
}

QString valueText(const QVariant &value, bool exists) {
    return exists ? valueWords(value) : u"nothing"_s;
}

QString valueList(const QVariantList &values) {
    QStringList words;
    for (const QVariant &value : values)
        words += valueWords(value);
    return words.join(u", "_s);
}

/// Writes what differs in one table that is compared by key.
class KeyedText {
public:
    KeyedText(QByteArray &out, const TableDifference &table, const QirDatabase &left, const QirDatabase &right,
              const OutputSink &sink)
        : m_out(out)
        , m_keyed(*table.keyed)
        , m_name(printableText(table.name))
        , m_left(left)
        , m_right(right)
        , m_sink(sink) {}

    void write() {
        for (const int field : m_keyed.fields.onlyLeft)
            line(u"field %1: only left"_s.arg(printableText(m_left.fieldName(field))));
        for (const int field : m_keyed.fields.onlyRight)
            line(u"field %1: only right"_s.arg(printableText(m_right.fieldName(field))));
        for (const DuplicateKey &key : m_keyed.duplicates)
            line(u"the key %1 occurs %2 times on the %3, first in the records %4 and %5"_s.arg(
                valueList(keyValues(source(key.side), m_keyed, key.side, key.record)), QString::number(key.count),
                key.side == TableSide::Left ? u"left"_s : u"right"_s, QString::number(key.record),
                QString::number(key.second)));
        forEachKeyedRecord(m_keyed, [this](const KeyedRecord &record) { writeRecord(record); });
        for (const PairedRecords &moved : m_keyed.moved)
            line(u"%1: moved, record %2 | %3"_s.arg(valueList(keyValues(m_left, m_keyed, TableSide::Left, moved.left)),
                                                    QString::number(moved.left), QString::number(moved.right)));
    }

private:
    TableSource &source(TableSide side) { return side == TableSide::Left ? m_left : m_right; }

    void line(const QString &text) {
        m_out += (m_name + u": "_s + text + u'\n').toUtf8();
        m_sink(m_out);
    }

    void writeRecord(const KeyedRecord &record) {
        const bool added = record.change == RecordChange::Added;
        const TableSide side = added ? TableSide::Right : TableSide::Left;
        TableSource &table = source(side);
        const int number = added ? record.records.right : record.records.left;
        const QString key = valueList(keyValues(table, m_keyed, side, number));
        if (record.change == RecordChange::Changed) {
            for (const FieldPair &field : changedFields(m_keyed, record.row))
                line(u"%1: changed, record %2 | %3, field %4: %5 | %6"_s.arg(
                    key, QString::number(number), QString::number(record.records.right),
                    printableText(m_left.fieldName(field.left)), valueWords(valueOf(m_left.cell(number, field.left))),
                    valueWords(valueOf(m_right.cell(record.records.right, field.right)))));
            return;
        }
        QVariantList values;
        for (int field = 1; field <= table.fields(); ++field)
            values.append(valueOf(table.cell(number, field)));
        line(u"%1: %2, record %3: %4"_s.arg(key, added ? u"added"_s : u"removed"_s, QString::number(number),
                                            valueList(values)));
    }

    QByteArray &m_out;
    const KeyedDifference &m_keyed;
    QString m_name;
    CurrentTable m_left;
    CurrentTable m_right;
    const OutputSink &m_sink;
};

} // namespace

void appendTableText(QByteArray &out, const TableDifference &table) {
    out += tableText(table).toUtf8() + '\n';
}

void appendCellText(QByteArray &out, const DifferingCell &cell) {
    out +=
        u"%1: record %2, field %3 (%4): %5 | %6\n"_s
            .arg(printableText(cell.table), QString::number(cell.record), QString::number(cell.field),
                 printableText(cell.fieldName), valueText(cell.left, cell.inLeft), valueText(cell.right, cell.inRight))
            .toUtf8();
}

void appendDetailsText(QByteArray &out, const TableDifference &table, const QirDatabase &left, const QirDatabase &right,
                       const OutputSink &sink) {
    if (table.keyed) {
        chooseOnBothSides(table, left, right);
        KeyedText(out, table, left, right, sink).write();
        return;
    }
    forEachDifferingCell(table, left, right, [&](const DifferingCell &cell) {
        appendCellText(out, cell);
        sink(out);
    });
}

} // namespace qir
