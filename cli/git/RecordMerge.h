#pragma once

#include "cli/git/Content.h"
#include "compare/conflicts/Conflict.h"

#include <vector>

namespace qir {

/// A field of a merged table: where each side has it, -1 for a side without it.
struct FieldPlaces {
    FieldInfo field;
    int base = -1;
    int ours = -1;
    int theirs = -1;
    bool isOurs = false; ///< Its values are those of OURS, whatever THEIRS has: a conflict tells of it.
};

/// A record on each side that has it; null for a side without it.
struct RecordTriple {
    const RecordValues *base = nullptr;
    const RecordValues *ours = nullptr;
    const RecordValues *theirs = nullptr;
    int record = 0;     ///< In the result, from 1, which begins as OURS does; 0 where it has none.
    QVariantList key;   ///< Where records belong together by key.
    int occurrence = 0; ///< Which of several records of the key, from 1; 0 where no side has several.
};

/// Brings records of one table together.
class RecordMerge {
public:
    /// `key` names the fields by which records belong together, if any.
    RecordMerge(QString table, QStringList key, const std::vector<FieldPlaces> &fields,
                const std::vector<FieldPlaces> &leftOut)
        : m_table(std::move(table))
        , m_key(std::move(key))
        , m_fields(fields)
        , m_leftOut(leftOut) {}

    /// Adds what becomes of a record, if it stays, and tells what is left out of it.
    void take(const RecordTriple &record);
    void conflict(const RecordTriple &record, const QString &reason);
    /// Tells what THEIRS has written in fields whose values are not taken, if anything.
    void tellLeftOut(const RecordTriple &record);
    /// Adds a record of one side as it is; `ours` is the one of OURS that it takes the place of, if any.
    void add(const RecordValues &values, int FieldPlaces::*place, const RecordValues *ours = nullptr) {
        m_records.push_back(moved(values, place, ours));
    }

    int count() const { return static_cast<int>(m_records.size()); }
    std::vector<RecordValues> takeRecords() { return std::move(m_records); }
    std::vector<Conflict> takeConflicts() { return std::move(m_conflicts); }

    /// Whether a side has changed nothing in a record: the values of all fields that both have are the same ones, and
    /// it has none of its own.
    bool isUnchanged(const RecordValues &base, const RecordValues &side, int FieldPlaces::*place) const;
    /// The same for records of the two sides.
    bool isSame(const RecordValues &ours, const RecordValues &theirs) const;

private:
    /// THEIRS has the value of BASE. Most have: nothing is copied to see that.
    static bool isUnchanged(const RecordTriple &record, const FieldPlaces &field);
    Conflict cellConflict(const RecordTriple &record, const FieldPlaces &field) const;
    QVariant mergedValue(const RecordTriple &record, const FieldPlaces &field);
    /// A record of one side, in the merged fields.
    RecordValues moved(const RecordValues &values, int FieldPlaces::*place, const RecordValues *ours = nullptr) const;

    /// The names of a side's fields in their order, "" for one that does not count.
    QStringList namesOf(const RecordValues *values, int FieldPlaces::*place) const;

    QString m_table;
    QStringList m_key;
    const std::vector<FieldPlaces> &m_fields;
    const std::vector<FieldPlaces> &m_leftOut;
    std::vector<RecordValues> m_records;
    std::vector<Conflict> m_conflicts;
};

} // namespace qir
