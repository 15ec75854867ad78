#include "cli/git/TableMerge.h"

#include "base/Collation.h"
#include "cli/git/FieldMerge.h"
#include "cli/tables/TableWriter.h"

#include <QHash>

#include <algorithm>
#include <map>
#include <set>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

using Records = std::vector<const RecordValues *>;

/// A text that values have in common only where they are the same ones.
QString textOf(const RecordValues &values, const std::vector<int> &places) {
    QString text;
    for (const int place : places) {
        const QVariant &value = values[static_cast<std::size_t>(place)];
        const bool isText = value.typeId() == QMetaType::QString;
        const QString part = isText ? value.toString() : QString::number(value.toDouble() + 0.0, 'g', 17); // no -0
        text += (isText ? u't' : u'n') + QString::number(part.size()) + u':' + part;
    }
    return text;
}

/// Whether a side has removed, inserted or moved records, rather than changed their cells and added some at the end:
/// records of BASE stand at other places of it, or there are fewer.
bool isShifted(const TableContent &base, const TableContent &side, const std::vector<FieldPlaces> &fields,
               int FieldPlaces::*place) {
    if (side.records.size() < base.records.size())
        return true;
    std::vector<int> before;
    std::vector<int> now;
    for (const FieldPlaces &field : fields)
        if (field.base >= 0 && field.*place >= 0) {
            before.push_back(field.base);
            now.push_back(field.*place);
        }
    QHash<QString, int> counts;
    std::size_t inPlace = 0;
    for (std::size_t i = 0; i < base.records.size(); ++i) {
        const QString text = textOf(base.records[i], before);
        ++counts[text];
        inPlace += text == textOf(side.records[i], now) ? 1 : 0;
    }
    std::size_t anywhere = 0;
    for (const RecordValues &record : side.records) {
        const auto found = counts.find(textOf(record, now));
        if (found != counts.end() && *found > 0) {
            --*found;
            ++anywhere;
        }
    }
    return anywhere > inPlace;
}

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
    for (std::size_t i = both; i < theirs.records.size(); ++i)
        merge.add(theirs.records[i], &FieldPlaces::theirs);
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
        const auto first = [](const Records &records) { return records.empty() ? nullptr : records.front(); };
        const RecordTriple triple{first(group.base), first(group.ours), first(group.theirs), group.record, group.key};
        if (std::max({group.base.size(), group.ours.size(), group.theirs.size()}) <= 1) {
            m_merge.take(triple);
            return;
        }
        if (isUnchanged(group.base, group.ours, &FieldPlaces::ours)) {
            addAll(group.theirs, &FieldPlaces::theirs);
            return;
        }
        if (!isUnchanged(group.base, group.theirs, &FieldPlaces::theirs) && !isSame(group.ours, group.theirs))
            m_merge.conflict(triple, u"several records have this key, and both sides have changed them"_s);
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

QStringList namesOf(const std::vector<FieldInfo> &fields) {
    QStringList names;
    for (const FieldInfo &field : fields)
        names += field.name;
    return names;
}

/// The key of the table, which all three must have.
QStringList keyOf(const TableContent &base, const TableContent &ours, const TableContent &theirs,
                  const KeyChoice &keys) {
    QStringList names;
    for (const QString &name : namesOf(ours.fields))
        if (fieldNumber(base.fields, name) != 0 && fieldNumber(theirs.fields, name) != 0)
            names += name;
    return keys.keyOf(ours.name, names);
}

} // namespace

std::optional<MergedTable> mergeTables(const TableContent &base, const TableContent &ours, const TableContent &theirs,
                                       const KeyChoice &keys) {
    if (sameContent(base, ours))
        return MergedTable{theirs, {}};
    if (sameContent(base, theirs) || sameContent(ours, theirs))
        return MergedTable{ours, {}};
    MergedFields fields = mergeFields(base, ours, theirs);
    RecordMerge records(ours.name, fields.fields);
    if (const QStringList key = keyOf(base, ours, theirs, keys); !key.isEmpty())
        KeyedMerge(key, records).merge(base, ours, theirs);
    else if (isShifted(base, ours, fields.fields, &FieldPlaces::ours) ||
             isShifted(base, theirs, fields.fields, &FieldPlaces::theirs))
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
