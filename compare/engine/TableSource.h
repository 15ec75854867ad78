#pragma once

#include "base/columns/ColumnBlock.h"
#include "db/FieldTypes.h"
#include "db/QirDatabase.h"

#include <QByteArrayView>
#include <QString>
#include <QStringView>
#include <QVariant>

#include <vector>

namespace qir {

/// A value as it is compared: a text, or a number of whatever type. An empty value is what a field of its type holds
/// without one.
struct CellView {
    bool isText = false;
    double number = 0;    ///< Of a number.
    QStringView text;     ///< Of a text; lasts until the source is read again.
    QByteArrayView bytes; ///< Of a text that stands so in memory, as UTF-8, in place of `text`; lasts as the source.
};

/// The text of a value; `buffer` may be needed to hold it.
QStringView textOf(const CellView &cell, QString &buffer);

/// A table to read values from: whoever compares needs no more of it. Records and fields count from 1.
class TableSource {
public:
    TableSource() = default;
    virtual ~TableSource() = default;
    TableSource(const TableSource &) = delete;
    TableSource &operator=(const TableSource &) = delete;

    virtual int records() const = 0;
    virtual int fields() const = 0;
    virtual QString fieldName(int field) const = 0;
    virtual FieldType fieldType(int field) const = 0;
    virtual CellView cell(int record, int field) = 0;
};

/// The current table of a component, by whole columns where it has them. It stays current and as it is while it is
/// read; the current record may be moved. What the component throws passes.
class CurrentTable final : public TableSource {
public:
    explicit CurrentTable(const QirDatabase &database);

    int records() const override { return m_records; }
    int fields() const override { return static_cast<int>(m_types.size()); }
    QString fieldName(int field) const override { return m_database.QIRTableFieldName(field); }
    FieldType fieldType(int field) const override { return m_types[static_cast<std::size_t>(field - 1)]; }
    CellView cell(int record, int field) override;

private:
    /// The blocks of a field, which share the component's memory, and the last records of each.
    struct Column {
        std::vector<ColumnBlock> blocks;
        std::vector<int> lasts;
        std::size_t used = 0; ///< The block that was read last.
    };

    CellView columnCell(int record, int field);
    void readColumn(int field, Column &column) const;

    const QirDatabase &m_database;
    int m_records;
    bool m_hasColumns;
    std::vector<Column> m_columns; // by field; empty until it is read
    std::vector<FieldType> m_types;
    int m_record = 0;
    QVariant m_value; // keeps its memory from cell to cell
};

/// A value of its own that a view shows: a QString or a double.
QVariant valueOf(const CellView &cell);

} // namespace qir
