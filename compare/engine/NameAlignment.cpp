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

AlignedRowKind kindOf(bool withLeft, bool withRight) {
    if (withLeft)
        return withRight ? AlignedRowKind::Both : AlignedRowKind::LeftOnly;
    return withRight ? AlignedRowKind::RightOnly : AlignedRowKind::Neither;
}

} // namespace

QStringList tableNames(const QirDatabase &database, int count) {
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
        // " ?" and " !" are names of their own, by key, though nothing is left of either without markers.
        if (i == 0 || withoutMarkers(sorted[i]) != withoutMarkers(sorted[i - 1]) ||
            collationKey(sorted[i]) != collationKey(sorted[i - 1]))
            names.append(sorted[i]);
    }
    return names;
}

std::vector<AlignedRow> alignNames(const QStringList &merged, const QStringList &left, const QStringList &right) {
    const QStringList leftKeys = keysOf(left);
    const QStringList rightKeys = keysOf(right);
    std::vector<AlignedRow> rows;
    rows.reserve(static_cast<std::size_t>(merged.size()));
    int l = 0;
    int r = 0;
    const auto addRow = [&](bool withLeft, bool withRight, const QString &name) {
        AlignedRow row{-1, -1, kindOf(withLeft, withRight), name};
        if (withLeft)
            row.left = l++;
        if (withRight)
            row.right = r++;
        rows.push_back(std::move(row));
    };
    QString lastKey;
    for (qsizetype m = 0; m < merged.size(); ++m) {
        const QString key = collationKey(merged[m]);
        if (m > 0 && key == lastKey)
            continue; // another spelling of a name that has its row
        lastKey = key;
        bool found = false;
        for (;;) {
            const bool withLeft = l < left.size() && leftKeys[l] == key;
            const bool withRight = r < right.size() && rightKeys[r] == key;
            if (!withLeft && !withRight)
                break;
            addRow(withLeft, withRight, withLeft ? left[l] : right[r]);
            found = true;
        }
        if (!found)
            addRow(false, false, merged[m]);
    }
    return rows;
}

} // namespace qir
