#include "cli/git/TableMerge.h"

#include "base/Collation.h"
#include "cli/git/FieldMerge.h"
#include "cli/git/RecordShift.h"
#include "compare/conflicts/RecordDigest.h"
#include "db/tables/TableWriter.h"

#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

using Records = std::vector<const RecordValues *>;

/// Gives how many records of THEIRS stand at their places in the result; the others are behind those of OURS.
std::size_t mergeByPosition(const TableContent &base, const TableContent &ours, const TableContent &theirs,
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
    return both;
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
            take(m_groups[text]);
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
            const int occurrence = most > 1 ? static_cast<int>(i) + 1 : 0;
            return RecordTriple{at(group.base), at(group.ours), at(group.theirs), group.record, group.key, occurrence};
        };
        if (most <= 1) {
            m_merge.take(triple(0));
            return;
        }
        for (std::size_t i = 0; i < most; ++i)
            m_merge.tellLeftOut(triple(i));
        if (isUnchanged(group.base, group.ours, &FieldPlaces::ours)) {
            for (std::size_t i = 0; i < group.theirs.size(); ++i)
                m_merge.add(*group.theirs[i], &FieldPlaces::theirs, triple(i).ours);
            return;
        }
        if (!isUnchanged(group.base, group.theirs, &FieldPlaces::theirs) && !isSame(group.ours, group.theirs))
            for (std::size_t i = 0; i < most; ++i)
                m_merge.conflict(triple(i), u"several records have this key, and both sides have changed them"_s);
        for (const RecordValues *values : group.ours)
            m_merge.add(*values, &FieldPlaces::ours);
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
    const QStringList &m_key;
    RecordMerge &m_merge;
    QHash<QString, Group> m_groups;
    QStringList m_order; ///< Those of OURS, then what THEIRS alone has.
};

/// What a side has in a field in conflict, so that it can be taken from there.
class FieldRecords {
public:
    FieldRecords(const QStringList &key, std::size_t inPlace, std::size_t behind, std::size_t count)
        : m_key(key)
        , m_inPlace(inPlace)
        , m_behind(behind)
        , m_count(count) {}

    std::optional<ConflictRecords> of(const TableContent &side, const QString &field) const {
        const int place = fieldNumber(side.fields, field) - 1;
        if (place < 0 || m_key.contains(field))
            return std::nullopt;
        return m_key.isEmpty() ? byPosition(side, static_cast<std::size_t>(place))
                               : byKey(side, static_cast<std::size_t>(place));
    }

private:
    ConflictRecords byKey(const TableContent &side, std::size_t place) const {
        ConflictRecords records;
        for (const RecordValues &values : side.records) {
            QVariantList record;
            for (const QString &name : m_key)
                record.append(values[static_cast<std::size_t>(fieldNumber(side.fields, name)) - 1]);
            record.append(values[place]);
            records.push_back(std::move(record));
        }
        return records;
    }
    ConflictRecords byPosition(const TableContent &side, std::size_t place) const {
        ConflictRecords records(m_count);
        for (std::size_t i = 0; i < side.records.size(); ++i)
            records[i < m_inPlace ? i : m_behind + i - m_inPlace] = {side.records[i][place]};
        return records;
    }

    const QStringList &m_key;
    std::size_t m_inPlace; ///< So many records of the side have their own places in the result.
    std::size_t m_behind;  ///< The others stand behind as many records.
    std::size_t m_count;   ///< Of the result.
};

void tellFields(std::vector<Conflict> &conflicts, const QStringList &key, const TableContent &ours,
                const TableContent &theirs, std::size_t theirsInPlace, std::size_t count) {
    for (Conflict &conflict : conflicts) {
        if (conflict.what != Conflict::What::Field)
            continue;
        conflict.keyFields = key;
        conflict.oursRecords = FieldRecords(key, ours.records.size(), 0, count).of(ours, conflict.field);
        conflict.theirsRecords =
            FieldRecords(key, theirsInPlace, ours.records.size(), count).of(theirs, conflict.field);
    }
}

/// Lines that name records by their numbers tell what else these are known by.
void tellDigests(MergedTable &merged) {
    DecidedFields decided;
    for (const Conflict &conflict : merged.conflicts)
        decided.add(conflict);
    const TableContent &table = merged.table;
    QStringList keys;
    for (const FieldInfo &field : table.fields)
        keys.append(collationKey(field.name));
    const auto digestOf = [&](int record) {
        RecordDigest digest;
        const RecordValues &values = table.records[static_cast<std::size_t>(record) - 1];
        for (std::size_t i = 0; i < table.fields.size(); ++i)
            if (const QString &key = keys[static_cast<qsizetype>(i)]; !decided.contains(record, key))
                digest.add(key, table.fields[i].type, table.fields[i].size, values[i]);
        return digest;
    };
    QString ofAll;
    for (Conflict &conflict : merged.conflicts) {
        if (conflict.what == Conflict::What::Cell && conflict.record > 0 && conflict.key.isEmpty()) {
            conflict.recordDigest = digestOf(conflict.record).text();
        } else if (conflict.what == Conflict::What::Field && conflict.keyFields.isEmpty()) {
            if (ofAll.isEmpty()) {
                RecordsDigest digest;
                for (int record = 1; record <= static_cast<int>(table.records.size()); ++record)
                    digest.add(digestOf(record));
                ofAll = digest.text();
            }
            conflict.recordDigest = ofAll;
        }
    }
}

} // namespace

QStringList commonFields(const TableContent *base, const TableContent *ours, const TableContent *theirs) {
    QStringList names;
    const TableContent *first = ours != nullptr ? ours : theirs != nullptr ? theirs : base;
    QHash<QString, int> sidesWith;
    int sides = 0;
    for (const TableContent *side : {base, ours, theirs}) {
        if (side == nullptr)
            continue;
        ++sides;
        for (const FieldInfo &field : side->fields)
            ++sidesWith[collationKey(field.name)];
    }
    for (const FieldInfo &field : first->fields)
        if (sidesWith.value(collationKey(field.name)) == sides)
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
    std::size_t inPlace = 0;
    if (!key.isEmpty())
        KeyedMerge(key, records).merge(base, ours, theirs);
    else if (isShifted(base, ours) || isShifted(base, theirs))
        return std::nullopt;
    else
        inPlace = mergeByPosition(base, ours, theirs, records);
    MergedTable merged;
    merged.table.name = ours.name == base.name ? theirs.name : ours.name;
    for (const FieldPlaces &field : fields.fields)
        merged.table.fields.push_back(field.field);
    merged.table.records = records.takeRecords();
    merged.conflicts = std::move(fields.conflicts);
    tellFields(merged.conflicts, key, ours, theirs, inPlace, merged.table.records.size());
    if (ours.name != base.name && theirs.name != base.name && ours.name != theirs.name) {
        Conflict conflict;
        conflict.about = Conflict::About::Name;
        conflict.table = ours.name;
        conflict.base = {base.name};
        conflict.ours = {ours.name};
        conflict.theirs = {theirs.name};
        conflict.reason = u"both sides have spelled its name anew"_s;
        merged.conflicts.push_back(std::move(conflict));
    }
    for (Conflict &conflict : records.takeConflicts())
        merged.conflicts.push_back(std::move(conflict));
    tellDigests(merged);
    return merged;
}

} // namespace qir
