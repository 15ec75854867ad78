#include "tests/model/PlainDatabase.h"

#include "tests/model/Values.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

constexpr double largest = std::numeric_limits<double>::max();

int nearestWhole(double number, double least, double most) {
    return static_cast<int>(std::nearbyint(std::clamp(number, least, most)));
}

double numberIn(const QVariant &value) {
    const double number = isText(value) ? numberAtStart(value.toString()) : value.toDouble();
    return std::isnan(number) ? 0.0 : std::clamp(number, -largest, largest);
}

} // namespace

QVariant PlainField::empty() const {
    return isText() ? QVariant(u""_s) : from(0.0);
}

QVariant PlainField::from(const QVariant &value) const {
    if (isText())
        return firstCharacters(test::isText(value) ? value.toString() : textOf(numberIn(value)), size);
    const double number = numberIn(value);
    switch (type) {
    case 1:
        return number == 0.0 ? 0 : 1;
    case 2:
        return nearestWhole(number, 0, 255);
    case 3:
        return nearestWhole(number, -32768, 32767);
    case 4:
        return nearestWhole(number, -2147483648.0, 2147483647.0);
    default:
        return number;
    }
}

PlainTable::PlainTable(const char *tableName, const std::vector<bool> &textFields,
                       const std::vector<std::vector<PlainValue>> &values)
    : name(QString::fromUtf8(tableName)) {
    for (const bool text : textFields)
        addField(text);
    for (const std::vector<PlainValue> &written : values) {
        QVariantList record;
        for (const PlainValue &value : written)
            record.append(value.value());
        records.push_back(record);
    }
}

bool PlainTable::store(int record, int field, const QVariant &value) {
    QVariant &held = this->value(record, field);
    const bool changes = !identical(held, value);
    held = value;
    return changes;
}

bool PlainTable::hasField(const QString &fieldName, int except) const {
    for (int k = 0; k < fieldCount(); ++k)
        if (k != except && nameKey(field(k).name) == nameKey(fieldName))
            return true;
    return false;
}

void PlainTable::addRecord() {
    QVariantList record;
    for (const PlainField &field : fields)
        record.append(field.empty());
    records.push_back(record);
}

void PlainTable::addField(const PlainField &field) {
    fields.push_back(field);
    for (QVariantList &record : records)
        record.append(field.empty());
}

void PlainTable::addField(bool text) {
    addField({u"F%1"_s.arg(fieldCount() + 1), text ? 10 : 7, text ? 50 : 0});
}

void PlainTable::removeField(int index) {
    fields.erase(fields.begin() + index);
    for (QVariantList &record : records)
        record.removeAt(index);
}

bool PlainTable::resizeField(int index, double size) {
    PlainField &resized = field(index);
    const int kept = keptSize(resized.type, size);
    const bool changes = resized.size != kept;
    resized.size = kept;
    for (int r = 0; r < recordCount(); ++r)
        value(r, index) = resized.from(value(r, index));
    return changes;
}

std::vector<QStringList> PlainTable::texts() const {
    std::vector<QStringList> all;
    for (const QVariantList &record : records) {
        QStringList row;
        for (const QVariant &value : record)
            row.append(textOf(value));
        all.push_back(row);
    }
    return all;
}

const PlainTable *PlainDatabase::find(const QString &name) const {
    const auto found = std::find_if(tables.begin(), tables.end(),
                                    [&](const PlainTable &table) { return nameKey(table.name) == nameKey(name); });
    return found == tables.end() ? nullptr : &*found;
}

const PlainTable *PlainDatabase::byId(int id) const {
    const auto found =
        std::find_if(tables.begin(), tables.end(), [id](const PlainTable &table) { return table.id == id; });
    return found == tables.end() ? nullptr : &*found;
}

PlainTable with(PlainTable table, int record, int field, const PlainValue &value) {
    table.value(record - 1, field - 1) = value.value();
    return table;
}

bool isFieldType(int code) {
    return QList<int>{1, 2, 3, 4, 7, 8, 10}.contains(code);
}

int keptSize(int type, double size) {
    return type == 10 ? nearestWhole(size, 0, 65535) : 0;
}

Cells differences(const PlainTable &left, const PlainTable &right) {
    Cells different;
    for (int r = 0; r < std::max(left.recordCount(), right.recordCount()); ++r) {
        for (int k = 0; k < std::max(left.fieldCount(), right.fieldCount()); ++k) {
            const bool inBoth = r < std::min(left.recordCount(), right.recordCount()) &&
                                k < std::min(left.fieldCount(), right.fieldCount());
            if (!inBoth || !equalValues(left.value(r, k), right.value(r, k)))
                different.emplace(r + 1, k + 1);
        }
    }
    return different;
}

bool differ(const PlainTable &left, const PlainTable &right) {
    return left.recordCount() != right.recordCount() || left.fieldCount() != right.fieldCount() ||
           !differences(left, right).empty();
}

QString difference(const PlainTable &left, const PlainTable &right) {
    if (left.name != right.name)
        return u"table '%1' against '%2'; "_s.arg(left.name, right.name);
    if (left.fields != right.fields)
        return u"the fields of '%1'; "_s.arg(left.name);
    if (left.recordCount() != right.recordCount())
        return u"'%1' has %2 records against %3; "_s.arg(left.name).arg(left.recordCount()).arg(right.recordCount());
    for (int r = 0; r < left.recordCount(); ++r)
        for (int k = 0; k < left.fieldCount(); ++k)
            if (!identical(left.value(r, k), right.value(r, k)))
                return u"'%1' (%2, %3) holds '%4' against '%5'; "_s.arg(left.name).arg(r + 1).arg(k + 1).arg(
                    left.value(r, k).toString(), right.value(r, k).toString());
    return {};
}

QString difference(const PlainDatabase &left, const PlainDatabase &right) {
    if (left.tableCount() != right.tableCount())
        return u"%1 tables against %2; "_s.arg(left.tableCount()).arg(right.tableCount());
    QString text;
    for (int t = 0; t < left.tableCount(); ++t)
        text += difference(left.table(t), right.table(t));
    return text;
}

} // namespace qir::test
