#pragma once

#include "base/columns/ColumnBlock.h"
#include "platform/cells/CellColumn.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <vector>

namespace qir {

/// The texts of a table, a column for each field. They are what the grid shows and, at the same time, the snapshot of
/// the shown table that comparing and editing go by: there is no second copy, and where the database hands out its
/// columns there is not even a first one.
///
/// Fields and records count from 1; field 0 and record 0 (the grid's fixed column and row) always read empty, as does
/// everything outside. Memory errors are the columns'; what was set before stays.
class CellTexts {
public:
    CellTexts() = default;
    /// All texts empty. Negative counts are taken as 0.
    CellTexts(int fields, int records);

    int fields() const { return static_cast<int>(m_columns.size()); }
    int records() const { return m_records; }

    QString at(int field, int record) const;
    /// at() into a string that keeps its memory, for loops over many cells.
    void read(int field, int record, QString &text) const;
    /// Replaces a text; does nothing outside.
    void set(int field, int record, QStringView text);

    /// The column of a field (1..fields()); index 0 in it is record 1.
    const CellColumn &column(int field) const { return m_columns[static_cast<std::size_t>(field - 1)]; }

    /// Cuts or extends with empty texts.
    void setShape(int fields, int records);
    /// Makes room for `records` records; `bytes` is what the texts of each field will take, field by field.
    void reserve(int records, const std::vector<std::size_t> &bytes);
    /// Adds a record whose field k is values[k]: element 0 is not used, missing elements are empty texts.
    void appendRecord(const QStringList &values);
    /// Adds as many records as the blocks have values, which is the same number in all; one block for each field.
    void appendRecords(const std::vector<ColumnBlock> &blocks);
    /// Reorders the records: afterwards record i + 1 is the one that was record order[i] + 1.
    void permuteRecords(const std::vector<std::uint32_t> &order);

    /// Bytes of memory held, shared or not.
    std::size_t memory() const;

private:
    bool holds(int field, int record) const {
        return field >= 1 && field <= fields() && record >= 1 && record <= m_records;
    }

    /// Takes from the first columns what they have beyond the records.
    void cutColumns(std::size_t count);

    std::vector<CellColumn> m_columns;
    int m_records = 0;
};

} // namespace qir
