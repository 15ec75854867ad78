#include "compare/engine/NameAlignment.h"

#include "base/Collation.h"
#include "db/QirDatabase.h"

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

QStringList keysOf(const QStringList &names) {
    QStringList keys;
    keys.reserve(names.size());
    for (const QString &name : names)
        keys.append(collationKey(name));
    return keys;
}

QString withoutMarkers(QString name) {
    return name.remove(u" ?"_s).remove(u" !"_s);
}

} // namespace

QStringList tableNames(const QirDatabase &database) {
    const int count = database.QIRTablesCount();
    QStringList names;
    names.reserve(std::max(count, 0));
    for (int table = 1; table <= count; ++table)
        names.append(database.QIRTableName(table));
    return names;
}

void sortNames(QStringList &names) {
    const QStringList keys = keysOf(names);
    std::vector<qsizetype> order(static_cast<std::size_t>(names.size()));
    std::iota(order.begin(), order.end(), 0);
    std::ranges::stable_sort(order, {}, [&](qsizetype i) -> const QString & { return keys[i]; });
    QStringList sorted;
    sorted.reserve(names.size());
    for (const qsizetype i : order)
        sorted.append(names[i]);
    names = std::move(sorted);
}

QStringList withoutRepeatedNames(const QStringList &sorted) {
    QStringList names;
    for (qsizetype i = 0; i < sorted.size(); ++i) {
        if (i == 0 || withoutMarkers(sorted[i]) != withoutMarkers(sorted[i - 1]))
            names.append(sorted[i]);
    }
    return names;
}

std::vector<AlignedRow> alignNames(const QStringList &left, const QStringList &right) {
    const QStringList leftKeys = keysOf(left);
    const QStringList rightKeys = keysOf(right);
    std::vector<AlignedRow> rows;
    rows.reserve(static_cast<std::size_t>(std::max(left.size(), right.size())));
    qsizetype l = 0;
    qsizetype r = 0;
    while (l < left.size() || r < right.size()) {
        // Twins need no case of their own: equal heads pair, and a twin left over has the lower key afterwards.
        const bool leftStands = l < left.size() && (r == right.size() || leftKeys[l] <= rightKeys[r]);
        const bool rightStands = r < right.size() && (l == left.size() || rightKeys[r] <= leftKeys[l]);
        AlignedRow row{-1, -1, AlignedRowKind::Both, leftStands ? left[l] : right[r]};
        if (leftStands)
            row.left = static_cast<int>(l++);
        if (rightStands)
            row.right = static_cast<int>(r++);
        if (row.right < 0)
            row.kind = AlignedRowKind::LeftOnly;
        else if (row.left < 0)
            row.kind = AlignedRowKind::RightOnly;
        rows.push_back(std::move(row));
    }
    return rows;
}

} // namespace qir
