#pragma once

#include "compare/engine/TableSource.h"
#include "db/QirDatabase.h"

#include <vector>

namespace qir {

/// Appends to the target's current table a field of the same name, type and size for every field of the source's
/// current table, in the same order.
void copyFields(const QirDatabase &source, const QirDatabase &target);

/// Whether whole columns can be copied from one to the other: both hand them out, and each field of the source's
/// current table has one of its type in the target's.
bool canCopyColumns(const QirDatabase &source, const QirDatabase &target);
/// Copies all fields of `count` records from `first` on, which both have, into the same records. Yields.
void copyColumns(const QirDatabase &source, const QirDatabase &target, int first, int count);

/// Fills a field of the target's records from `first` on with what a field of the same type has in these records of the
/// source. The target takes whole columns, and has as many records there. Yields.
void copyToColumn(TableSource &source, int sourceField, const std::vector<int> &records, const QirDatabase &target,
                  int targetField, int first);

/// Copies fields from the current record of one database to that of another, value by value, without making texts of
/// them. For loops over many records: the source's field count is asked for once. Both databases must outlive it.
class RecordCopy {
public:
    RecordCopy(const QirDatabase &source, const QirDatabase &target);

    /// All fields of the source's current record into the same fields of the target's.
    void copyCurrentRecord();

private:
    const QirDatabase &m_source;
    const QirDatabase &m_target;
    int m_fields;
    QVariant m_value; // keeps its memory from field to field
};

} // namespace qir
