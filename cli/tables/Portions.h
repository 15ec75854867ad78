#pragma once

#include "base/columns/ColumnBlock.h"
#include "db/tables/TableReader.h"

#include <functional>
#include <vector>

namespace qir {

/// Consecutive records of a table, a block of as many values for each field.
struct Portion {
    int first; ///< The number of the first record.
    int count;
    std::vector<ColumnBlock> columns;
};

/// The type of a field's blocks.
ColumnType columnTypeOf(FieldType type);

/// Hands over all records of the chosen table in turn, in blocks that share the component's memory where it has
/// columns; else each is made of the texts of its records. Throws what the component throws.
void forEachPortion(const QirDatabase &database, const TableInfo &table,
                    const std::function<void(const Portion &portion)> &take);

/// Writes some records of a portion, counted from 0.
using AppendRecords = std::function<void(QByteArray &out, const Portion &portion, int from, int to)>;
using TakeText = std::function<void(QByteArrayView text)>;

/// Portions as text; the cores share the work, and the memory is that of the portion before.
class PortionTexts {
public:
    /// `take` gets the texts in the order of the records.
    void make(const Portion &portion, const AppendRecords &append, const TakeText &take);

private:
    std::vector<QByteArray> m_texts;
};

/// All records of the chosen table as text.
void forEachText(const QirDatabase &database, const TableInfo &table, const AppendRecords &append,
                 const TakeText &take);

/// Adds records behind those of the chosen table: by whole columns where the component has them, else value by value.
class RecordAppender {
public:
    /// `fields` are the numbers of the fields that the columns of the portions go to; the others get no value.
    RecordAppender(const QirDatabase &database, int records, std::vector<int> fields);

    /// The portion's own first record does not count. Throws what the component throws.
    void append(const Portion &portion);

private:
    void appendRecords(const Portion &portion) const;

    const QirDatabase &m_database;
    int m_records;
    std::vector<int> m_fields;
    bool m_byColumns;
};

} // namespace qir
