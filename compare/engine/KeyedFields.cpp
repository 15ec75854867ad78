#include "compare/engine/KeyedFields.h"

#include "base/Collation.h"
#include "compare/engine/KeyTable.h"

#include <QHash>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr int recordsPerStep = 1024;

QSet<QString> keysOf(const QStringList &names) {
    QSet<QString> keys;
    for (const QString &name : names)
        keys.insert(collationKey(name));
    return keys;
}

/// The fields of a table by the keys of their names, those of equal ones in their order.
QHash<QString, std::vector<int>> fieldsByName(const TableSource &table) {
    QHash<QString, std::vector<int>> fields;
    for (int field = 1; field <= table.fields(); ++field)
        fields[collationKey(table.fieldName(field))].push_back(field);
    return fields;
}

/// The fields of one table without those that are paired or ignored.
std::vector<int> unpaired(const TableSource &table, std::vector<int> paired, const QSet<QString> &ignored) {
    std::ranges::sort(paired);
    std::vector<int> fields;
    for (int field = 1; field <= table.fields(); ++field) {
        if (!std::ranges::binary_search(paired, field) && !ignored.contains(collationKey(table.fieldName(field))))
            fields.push_back(field);
    }
    return fields;
}

bool isUnique(TableSource &table, int field, const CellTolerance &tolerance, const KeyedStep &step) {
    KeyTable keys(table, {field}, table, {field}, tolerance);
    for (int record = 1; record <= table.records(); ++record) {
        if (step && record % recordsPerStep == 0)
            step();
        if (!keys.insert(KeyTable::Side::Left, record).isNew)
            return false;
    }
    return true;
}

} // namespace

std::vector<FieldPair> commonFields(const TableSource &left, const TableSource &right) {
    const auto others = fieldsByName(right);
    QHash<QString, std::size_t> used;
    std::vector<FieldPair> pairs;
    for (int field = 1; field <= left.fields(); ++field) {
        const QString key = collationKey(left.fieldName(field));
        const auto found = others.constFind(key);
        if (found != others.constEnd() && used[key] < found->size())
            pairs.push_back({field, (*found)[used[key]++]});
    }
    return pairs;
}

Result<KeyedFields> matchFields(const TableSource &left, const TableSource &right, const KeyedRules &rules) {
    const std::vector<FieldPair> common = commonFields(left, right);
    KeyedFields fields;
    std::vector<bool> inKey(common.size());
    for (const QString &name : rules.key) {
        const auto found = std::ranges::find(
            common, collationKey(name), [&](const FieldPair &pair) { return collationKey(left.fieldName(pair.left)); });
        if (found == common.end())
            return failure(u"there is no field \"%1\" in both tables"_s.arg(name));
        const auto index = static_cast<std::size_t>(found - common.begin());
        if (!inKey[index])
            fields.key.push_back(*found);
        inKey[index] = true;
    }
    if (fields.key.empty())
        return failure(u"a key has one field at least"_s);
    const QSet<QString> ignored = keysOf(rules.ignore);
    std::vector<int> pairedLeft;
    std::vector<int> pairedRight;
    for (std::size_t i = 0; i < common.size(); ++i) {
        pairedLeft.push_back(common[i].left);
        pairedRight.push_back(common[i].right);
        if (!inKey[i] && !ignored.contains(collationKey(left.fieldName(common[i].left))))
            fields.compared.push_back(common[i]);
    }
    fields.onlyLeft = unpaired(left, std::move(pairedLeft), ignored);
    fields.onlyRight = unpaired(right, std::move(pairedRight), ignored);
    return fields;
}

std::optional<QString> proposedKey(TableSource &left, TableSource &right, const KeyedRules &rules,
                                   const KeyedStep &step) {
    const QSet<QString> ignored = keysOf(rules.ignore);
    for (const FieldPair &pair : commonFields(left, right)) {
        const bool leftText = left.fieldType(pair.left) == FieldType::Text;
        const bool rightText = right.fieldType(pair.right) == FieldType::Text;
        if (leftText == rightText && !ignored.contains(collationKey(left.fieldName(pair.left))) &&
            isUnique(left, pair.left, rules.tolerance, step) && isUnique(right, pair.right, rules.tolerance, step))
            return left.fieldName(pair.left);
    }
    return std::nullopt;
}

} // namespace qir
