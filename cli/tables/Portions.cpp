#include "cli/tables/Portions.h"

#include "base/LeadingNumber.h"
#include "base/columns/BlockOrder.h"
#include "base/columns/ColumnBuilder.h"
#include "base/columns/Parallel.h"

#include <algorithm>

namespace qir {

namespace {

/// As many records from `first` on as all fields keep together.
Portion columnsPortion(const QirDatabase &database, const TableInfo &table, int first) {
    Portion portion{first, std::min(table.records - first + 1, static_cast<int>(usualBlockValues)), {}};
    portion.columns.reserve(table.fields.size());
    for (std::size_t field = 0; field < table.fields.size(); ++field) {
        portion.columns.push_back(database.ReadColumn(static_cast<int>(field) + 1, first, portion.count));
        portion.count = static_cast<int>(portion.columns.back().count());
    }
    for (ColumnBlock &column : portion.columns)
        column = column.sliced(0, portion.count);
    return portion;
}

/// The same from a component without columns.
Portion recordsPortion(const QirDatabase &database, const TableInfo &table, int first, QStringList &values) {
    constexpr int most = 4096;
    Portion portion{first, std::min(table.records - first + 1, most), {}};
    std::vector<ColumnBuilder> builders;
    for (const FieldInfo &field : table.fields)
        builders.emplace_back(columnTypeOf(field.type), portion.count);
    for (int record = first; record < first + portion.count; ++record) {
        database.GetQirRecord(record, values);
        for (std::size_t field = 0; field < builders.size(); ++field) {
            const QString &text = values.at(static_cast<qsizetype>(field) + 1);
            if (table.fields[field].type == FieldType::Text)
                builders[field].add(QStringView(text));
            else
                builders[field].add(leadingNumber(text));
        }
    }
    for (ColumnBuilder &builder : builders)
        portion.columns.push_back(builder.take());
    return portion;
}

} // namespace

ColumnType columnTypeOf(FieldType type) {
    return static_cast<ColumnType>(type);
}

void forEachPortion(const QirDatabase &database, const TableInfo &table,
                    const std::function<void(const Portion &portion)> &take) {
    const bool byColumns = database.hasColumns();
    QStringList values;
    for (int first = 1; first <= table.records;) {
        const Portion portion =
            byColumns ? columnsPortion(database, table, first) : recordsPortion(database, table, first, values);
        take(portion);
        first += portion.count;
    }
}

void PortionTexts::make(const Portion &portion, const AppendRecords &append, const TakeText &take) {
    constexpr int share = 8192;
    const auto shares = static_cast<std::size_t>((portion.count + share - 1) / share);
    m_texts.resize(std::max(m_texts.size(), shares));
    inParallel(shares, [&](std::size_t index) {
        const int from = static_cast<int>(index) * share;
        m_texts[index].resize(0); // keeps its memory
        append(m_texts[index], portion, from, std::min(from + share, portion.count));
    });
    for (std::size_t index = 0; index < shares; ++index)
        take(m_texts[index]);
}

void forEachText(const QirDatabase &database, const TableInfo &table, const AppendRecords &append,
                 const TakeText &take) {
    PortionTexts texts;
    forEachPortion(database, table, [&](const Portion &portion) { texts.make(portion, append, take); });
}

RecordAppender::RecordAppender(const QirDatabase &database, int records, std::vector<int> fields)
    : m_database(database)
    , m_records(records)
    , m_fields(std::move(fields))
    , m_byColumns(database.hasColumns()) {}

void RecordAppender::append(const Portion &portion) {
    if (m_byColumns) {
        m_database.AppendRecords(portion.count);
        for (std::size_t column = 0; portion.count != 0 && column < m_fields.size(); ++column)
            m_database.WriteColumn(m_fields[column], m_records + 1, portion.columns[column]);
    } else {
        appendRecords(portion);
    }
    m_records += portion.count;
}

void RecordAppender::appendRecords(const Portion &portion) const {
    for (int record = 0; record < portion.count; ++record) {
        m_database.AddRecord();
        m_database.setQIRTableRecordsPointerOut(m_records + record + 1);
        for (std::size_t column = 0; column < m_fields.size(); ++column) {
            const ColumnBlock &values = portion.columns[column];
            const QVariant value = values.isText() ? QVariant(values.text(record)) : QVariant(values.number(record));
            m_database.setQIRTableRecordSetByIndex(m_fields[column], value);
        }
    }
}

} // namespace qir
