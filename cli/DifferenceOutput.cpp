#include "cli/DifferenceOutput.h"

#include "base/NumberText.h"
#include "base/VariantKind.h"
#include "cli/tables/JsonText.h"
#include "cli/tables/TextTable.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

bool isText(const QVariant &value) {
    return kindOf(value) == VariantKind::Text;
}

QString sides(int left, int right, const QString &what) {
    return left == right ? QString() : u", %1 | %2 %3"_s.arg(left).arg(right).arg(what);
}

QString tableText(const TableDifference &table) {
    const QString name = printableText(table.name);
    if (table.kind == AlignedRowKind::LeftOnly)
        return u"only left: "_s + name;
    if (table.kind == AlignedRowKind::RightOnly)
        return u"only right: "_s + name;
    if (!table.different)
        return u"same: "_s + name;
    const auto count = static_cast<qulonglong>(table.cellCount());
    return u"differs: %1 (%2%3%4)"_s.arg(name, count == 1 ? u"1 cell"_s : u"%1 cells"_s.arg(count),
                                         sides(table.sizes.leftRecords, table.sizes.rightRecords, u"records"_s),
                                         sides(table.sizes.leftFields, table.sizes.rightFields, u"fields"_s));
}

/// A foreign component may hold what no decimal stands for.
QString numberWords(double number) {
    return std::isfinite(number) ? numberText(number) : QString::number(number);
}

QString valueText(const QVariant &value, bool exists) {
    if (!exists)
        return u"nothing"_s;
    return isText(value) ? u'"' + printableText(value.toString()) + u'"' : numberWords(value.toDouble());
}

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

void appendPair(QByteArray &out, const char *key, int left, int right) {
    out += QByteArray(", \"") + key + "\": [" + QByteArray::number(left) + ", " + QByteArray::number(right) + ']';
}

void appendValueJson(QByteArray &out, const QVariant &value) {
    if (!value.isValid())
        out += "null";
    else if (isText(value))
        appendJsonString(out, value.toString());
    else if (const double number = value.toDouble(); std::isfinite(number))
        out += numberText(number).toLatin1();
    else
        appendJsonString(out, numberWords(number));
}

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

void appendTableJson(QByteArray &out, const TableDifference &table) {
    out += "{\"table\": ";
    appendJsonString(out, table.name);
    out += QByteArray(", \"state\": \"") + stateName(table) + '"';
    if (table.different) {
        out += ", \"cells\": " + QByteArray::number(static_cast<qulonglong>(table.cellCount()));
        appendPair(out, "records", table.sizes.leftRecords, table.sizes.rightRecords);
        appendPair(out, "fields", table.sizes.leftFields, table.sizes.rightFields);
    }
    out += "}\n";
}

void appendCellJson(QByteArray &out, const DifferingCell &cell) {
    out += "{\"table\": ";
    appendJsonString(out, cell.table);
    out += ", \"record\": " + QByteArray::number(cell.record) + ", \"field\": " + QByteArray::number(cell.field);
    out += ", \"left\": ";
    appendValueJson(out, cell.left);
    out += ", \"right\": ";
    appendValueJson(out, cell.right);
    out += "}\n";
}

} // namespace qir
