#include "cli/git/ContentMerge.h"

#include "base/Collation.h"
#include "cli/git/ConflictText.h"
#include "cli/git/TableMerge.h"

using namespace Qt::StringLiterals;

namespace qir {

namespace {

QVariantList headers(const TableContent *table) {
    if (table == nullptr)
        return {};
    // A table without fields is there all the same.
    return table->fields.empty() ? QVariantList{QString()} : headersOf(table->fields);
}

std::optional<ConflictRecords> recordsOf(const TableContent *table) {
    if (table == nullptr)
        return std::nullopt;
    ConflictRecords records;
    for (const RecordValues &values : table->records)
        records.emplace_back(values.begin(), values.end());
    return records;
}

Conflict tableConflict(const TableContent *base, const TableContent *ours, const TableContent *theirs,
                       const QString &reason) {
    Conflict conflict;
    conflict.table = (ours != nullptr ? ours : theirs)->name;
    conflict.base = headers(base);
    conflict.ours = headers(ours);
    conflict.theirs = headers(theirs);
    conflict.oursRecords = recordsOf(ours);
    conflict.theirsRecords = recordsOf(theirs);
    conflict.reason = reason;
    return conflict;
}

class Merge {
public:
    explicit Merge(const KeyChoice &keys)
        : m_keys(keys) {}

    void take(const TableContent *base, const TableContent *ours, const TableContent *theirs) {
        if (ours != nullptr && theirs != nullptr)
            takeBoth(base, *ours, *theirs);
        else if (base == nullptr)
            keep(ours != nullptr ? ours : theirs);
        else if (ours != nullptr && !sameContent(*base, *ours))
            conflict(base, ours, theirs, u"THEIRS has removed it, OURS has changed it"_s);
        else if (theirs != nullptr && !sameContent(*base, *theirs))
            conflict(base, ours, theirs, u"OURS has removed it, THEIRS has changed it"_s);
    }

    MergedContent result() { return std::move(m_merged); }

private:
    void takeBoth(const TableContent *base, const TableContent &ours, const TableContent &theirs) {
        if (base == nullptr && sameContent(ours, theirs)) {
            keep(&ours);
            return;
        }
        const bool bothChanged =
            base != nullptr && !sameContent(*base, ours) && !sameContent(*base, theirs) && !sameContent(ours, theirs);
        if (bothChanged && m_keys.keyOf(ours.name, commonFields(base, &ours, &theirs)).isEmpty())
            m_merged.byPosition += ours.name;
        if (base == nullptr) {
            conflict(nullptr, &ours, &theirs, u"both sides have added it, each in its own way"_s);
        } else if (std::optional<MergedTable> merged = mergeTables(*base, ours, theirs, m_keys)) {
            m_merged.content.tables.push_back(std::move(merged->table));
            for (Conflict &found : merged->conflicts)
                m_merged.conflicts.push_back(std::move(found));
        } else {
            conflict(
                base, &ours, &theirs,
                u"records were removed, inserted or moved beside other edits; a key would help: --key \"%1:FIELD\""_s
                    .arg(ours.name));
        }
    }

    void keep(const TableContent *table) {
        if (table != nullptr)
            m_merged.content.tables.push_back(*table);
    }

    void conflict(const TableContent *base, const TableContent *ours, const TableContent *theirs,
                  const QString &reason) {
        keep(ours);
        m_merged.conflicts.push_back(tableConflict(base, ours, theirs, reason));
    }

    const KeyChoice &m_keys;
    MergedContent m_merged;
};

} // namespace

MergedContent mergeContents(const DatabaseContent &base, const DatabaseContent &ours, const DatabaseContent &theirs,
                            const KeyChoice &keys) {
    const TablesByName inBase(base);
    const TablesByName inOurs(ours);
    const TablesByName inTheirs(theirs);
    std::vector<CommonFields> tables;
    for (const DatabaseContent *side : {&base, &ours, &theirs})
        for (const TableContent &table : side->tables)
            tables.push_back({table.name, commonFields(inBase.find(table.name), inOurs.find(table.name),
                                                       inTheirs.find(table.name))});
    keys.requireFit(tables);
    Merge merge(keys);
    for (const TableContent &table : ours.tables)
        merge.take(inBase.find(table.name), &table, inTheirs.find(table.name));
    for (const TableContent &table : theirs.tables)
        if (inOurs.find(table.name) == nullptr)
            merge.take(inBase.find(table.name), nullptr, &table);
    return merge.result();
}

} // namespace qir
