#pragma once

#include "compare/engine/TableSource.h"

#include <QVariant>

#include <string>
#include <vector>

namespace qir::test {

/// A table in memory. A field is a name and a type, a record a value for each: a QString or a double.
struct SourceField {
    QString name;
    FieldType type;
};
struct SourceTable {
    std::vector<SourceField> fields;
    std::vector<QVariantList> rows;
};

class PlainSource final : public TableSource {
public:
    explicit PlainSource(SourceTable table)
        : m_table(std::move(table)) {}

    int records() const override { return static_cast<int>(m_table.rows.size()); }
    int fields() const override { return static_cast<int>(m_table.fields.size()); }
    QString fieldName(int field) const override { return m_table.fields.at(static_cast<std::size_t>(field - 1)).name; }
    FieldType fieldType(int field) const override {
        return m_table.fields.at(static_cast<std::size_t>(field - 1)).type;
    }
    CellView cell(int record, int field) override {
        // As a component does it: what a view shows lasts until the next value is read.
        m_value = m_table.rows.at(static_cast<std::size_t>(record - 1)).at(field - 1);
        if (m_value.typeId() != QMetaType::QString)
            return {false, m_value.toDouble(), {}, {}};
        m_text = m_value.toString().toStdU16String();
        return {true, 0, QStringView(m_text.data(), static_cast<qsizetype>(m_text.size())), {}};
    }

private:
    SourceTable m_table;
    QVariant m_value;
    std::u16string m_text;
};

} // namespace qir::test
