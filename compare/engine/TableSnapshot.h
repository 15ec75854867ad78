#pragma once

#include "base/columns/ColumnBlock.h"
#include "compare/engine/KeyedFields.h"
#include "compare/engine/TableSource.h"

#include <QStringList>

#include <vector>

namespace qir {

/// What the current table of a component holds, for good: it can be read whatever becomes of the component and its
/// current table. Shares the component's memory where it has whole columns.
class TableSnapshot final : public TableSource {
public:
    /// Reads the table. Throws what the component and `step` throw.
    explicit TableSnapshot(const QirDatabase &database, const KeyedStep &step = {});

    int records() const override { return m_records; }
    int fields() const override { return static_cast<int>(m_fields.size()); }
    QString fieldName(int field) const override { return at(field).name; }
    FieldType fieldType(int field) const override { return at(field).type; }
    CellView cell(int record, int field) override;

private:
    struct Field {
        QString name;
        FieldType type = FieldType::Text;
        std::vector<ColumnBlock> blocks;
        std::vector<int> lasts; ///< The last record of each block.
        std::size_t used = 0;   ///< The block that was read last.

        void append(ColumnBlock block);
    };

    const Field &at(int field) const { return m_fields[static_cast<std::size_t>(field - 1)]; }
    void readColumns(const QirDatabase &database, const KeyedStep &step);
    void readCells(const QirDatabase &database, const KeyedStep &step);

    int m_records;
    std::vector<Field> m_fields;
};

} // namespace qir
