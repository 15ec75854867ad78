#include "cli/git/TableMerge.h"

#include "base/Collation.h"
#include "cli/git/FieldMerge.h"
#include "cli/git/RecordShift.h"
#include "cli/tables/TableWriter.h"

#include <algorithm>
#include <map>
#include <set>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

using Records = std::vector<const RecordValues *>;

void mergeByPosition(const TableContent &base, const TableContent &ours, const TableContent &theirs,
                     RecordMerge &merge) {
    const std::size_t common = base.records.size();
    for (std::size_t i = 0; i < common; ++i)
        merge.take({&base.records[i], &ours.records[i], &theirs.records[i], static_cast<int>(i) + 1, {}});
    // What both have added is one addition, as far as it is the same.
    std::size_t both = common;
    while (both < ours.records.size() && both < theirs.records.size() &&
           merge.isSame(ours.records[both], theirs.records[both])) {
        merge.take({nullptr, &ours.records[both], &theirs.records[both], static_cast<int>(both) + 1, {}});
        ++both;
    }
    for (std::size_t i = both; i < ours.records.size(); ++i)
        merge.add(ours.records[i], &FieldPlaces::ours);
    for (std::size_t i = both; i < theirs.records.size(); ++i) {
        merge.tellLeftOut({nullptr, nullptr, &theirs.records[i], merge.count() + 1, {}});
        merge.add(theirs.records[i], &FieldPlaces::theirs);
    }
}

/// The records of one key value on each side.
struct Group {
    Records base;
    Records ours;
    Records theirs;
    int record = 0; ///< The first one in OURS.
    QVariantList key;
};

class KeyedMerge {
public:
    KeyedMerge(const QStringList &key, RecordMerge &merge)
        : m_key(key)
        , m_merge(merge) {}

    void merge(const TableContent &base, const TableContent &ours, const TableContent &theirs) {
        collect(base, &Group::base);
        collect(ours, &Group::ours);
        collect(theirs, &Group::theirs);
        for (const QString &text : m_order)
            take(m_groups.at(text));
    }

private:
    void collect(const TableContent &table, Records Group::*side) {
        std::vector<int> places;
        for (const QString &name : m_key)
            places.push_back(fieldNumber(table.fields, name) - 1);
        int record = 0;
        for (const RecordValues &values : table.records) {
            ++record;
            const QString text = textOf(values, places);
            Group &group = m_groups[text];
            if (side != &Group::base && group.ours.empty() && (side == &Group::ours || group.theirs.empty()))
                m_order.append(text);
            if (side == &Group::ours && group.ours.empty())
                group.record = record;
            if (group.key.isEmpty())
                for (const int place : places)
                    group.key.append(values[static_cast<std::size_t>(place)]);
            (group.*side).push_back(&values);
        }
    }

    void take(const Group &group) {
        const std::size_t most = std::max({group.base.size(), group.ours.size(), group.theirs.size()});
        const auto triple = [&](std::size_t i) {
            const auto at = [i](const Records &records) { return i < records.size() ? records[i] : nullptr; };
            return RecordTriple{at(group.base), at(group.ours), at(group.theirs), group.record, group.key};
        };
        if (most <= 1) {
            m_merge.take(triple(0));
            return;
        }
        for (std::size_t i = 0; i < most; ++i)
            m_merge.tellLeftOut(triple(i));
        if (isUnchanged(group.base, group.ours, &FieldPlaces::ours)) {
            addAll(group.theirs, &FieldPlaces::theirs);
            return;
        }
        if (!isUnchanged(group.base, group.theirs, &FieldPlaces::theirs) && !isSame(group.ours, group.theirs))
            for (std::size_t i = 0; i < most; ++i)
                m_merge.conflict(triple(i), u"several records have this key, and both sides have changed them"_s);
        addAll(group.ours, &FieldPlaces::ours);
    }

    bool isUnchanged(const Records &base, const Records &side, int FieldPlaces::*place) const {
        return std::ranges::equal(base, side, [&](const RecordValues *before, const RecordValues *now) {
            return m_merge.isUnchanged(*before, *now, place);
        });
    }
    bool isSame(const Records &ours, const Records &theirs) const {
        return std::ranges::equal(ours, theirs, [&](const RecordValues *one, const RecordValues *other) {
            return m_merge.isSame(*one, *other);
        });
    }
    void addAll(const Records &records, int FieldPlaces::*place) {
        for (const RecordValues *values : records)
            m_merge.add(*values, place);
    }

    const QStringList &m_key;
    RecordMerge &m_merge;
    std::map<QString, Group> m_groups;
    QStringList m_order; ///< Those of OURS, then what THEIRS alone has.
};

} // namespace

QStringList commonFields(const TableContent *base, const TableContent *ours, const TableContent *theirs) {
    QStringList names;
    const TableContent *first = ours != nullptr ? ours : theirs != nullptr ? theirs : base;
    const auto takes = [](const TableContent *side, const QString &name) {
        return side == nullptr || fieldNumber(side->fields, name) != 0;
    };
    for (const FieldInfo &field : first->fields)
        if (takes(base, field.name) && takes(ours, field.name) && takes(theirs, field.name))
            names += field.name;
    return names;
}

std::optional<MergedTable> mergeTables(const TableContent &base, const TableContent &ours, const TableContent &theirs,
                                       const KeyChoice &keys) {
    if (sameContent(base, ours))
        return MergedTable{theirs, {}};
    if (sameContent(base, theirs) || sameContent(ours, theirs))
        return MergedTable{ours, {}};
    MergedFields fields = mergeFields(base, ours, theirs);
    const QStringList key = keys.keyOf(ours.name, commonFields(&base, &ours, &theirs));
    RecordMerge records(ours.name, key, fields.fields, fields.leftOut);
    if (!key.isEmpty())
        KeyedMerge(key, records).merge(base, ours, theirs);
    else if (isShifted(base, ours) || isShifted(base, theirs))
        return std::nullopt;
    else
        mergeByPosition(base, ours, theirs, records);
    MergedTable merged;
    merged.table.name = ours.name == base.name ? theirs.name : ours.name;
    for (const FieldPlaces &field : fields.fields)
        merged.table.fields.push_back(field.field);
    merged.table.records = records.takeRecords();
    merged.conflicts = std::move(fields.conflicts);
    if (ours.name != base.name && theirs.name != base.name && ours.name != theirs.name) {
        Conflict conflict;
        conflict.table = ours.name;
        conflict.base = {base.name};
        conflict.ours = {ours.name};
        conflict.theirs = {theirs.name};
        conflict.reason = u"both sides have spelled its name anew"_s;
        merged.conflicts.push_back(std::move(conflict));
    }
    for (Conflict &conflict : records.takeConflicts())
        merged.conflicts.push_back(std::move(conflict));
    return merged;
}

} // namespace qir
