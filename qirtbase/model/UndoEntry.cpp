#include "qirtbase/model/UndoEntry.h"

#include "base/columns/Parallel.h"

#include <type_traits>
#include <utility>

namespace qir::undo {

namespace {

/// Applies one entry; gives the one that takes it back, nothing where the entry has become that itself.
class Applier {
public:
    Applier(Entry &entry, Tables &tables)
        : m_entry(entry)
        , m_tables(tables) {}

    void operator()(CellChanged &entry) const {
        Column &column = entry.table->field(entry.field).column;
        CellValue now = column.value(entry.record);
        column.set(entry.record, entry.before);
        entry.before = std::move(now);
    }
    void operator()(RecordsAppended &entry) const {
        entry.table->dropRecords(entry.count);
        m_entry = RecordsDropped{entry.table, entry.count};
    }
    void operator()(RecordsDropped &entry) const {
        entry.table->appendRecords(entry.count);
        m_entry = RecordsAppended{entry.table, entry.count};
    }
    void operator()(RecordInserted &entry) const {
        RecordRemoved inverse{entry.table, entry.record, entry.table->record(entry.record)};
        entry.table->removeRecord(entry.record);
        m_entry = std::move(inverse);
    }
    void operator()(RecordRemoved &entry) const {
        entry.table->insertRecord(entry.record, entry.values);
        m_entry = RecordInserted{entry.table, entry.record};
    }
    void operator()(FieldInserted &entry) const {
        FieldRemoved inverse{entry.table, entry.index, std::make_unique<Field>(Field{{}, 0, Column(ColumnType::Bool)})};
        *inverse.field = entry.table->takeField(entry.index);
        m_entry = std::move(inverse);
    }
    void operator()(FieldRemoved &entry) const {
        entry.table->makeRoomForField(); // a field that is moved from must find its place
        entry.table->insertField(entry.index, std::move(*entry.field));
        m_entry = FieldInserted{entry.table, entry.index};
    }
    void operator()(FieldRenamed &entry) const { std::swap(entry.table->field(entry.index).name, entry.before); }
    void operator()(FieldResized &entry) const {
        Field &field = entry.table->field(entry.index);
        std::swap(field.size, entry.before);
        if (entry.column)
            std::swap(field.column, *entry.column);
    }
    void operator()(TableInserted &entry) const {
        const auto position = m_tables.begin() + static_cast<std::ptrdiff_t>(entry.index);
        TableRemoved inverse{entry.index, std::move(*position)};
        m_tables.erase(position);
        m_entry = std::move(inverse);
    }
    void operator()(TableRemoved &entry) const {
        m_tables.reserve(m_tables.size() + 1);
        const std::size_t index = entry.index;
        m_tables.insert(m_tables.begin() + static_cast<std::ptrdiff_t>(index), std::move(entry.table));
        m_entry = TableInserted{index};
    }
    void operator()(TableRenamed &entry) const {
        Name now = entry.table->name();
        entry.table->rename(std::move(entry.before));
        entry.before = std::move(now);
    }
    void operator()(TableImage &entry) const { std::swap(*entry.table, *entry.before); }
    void operator()(RecordsReordered &entry) const {
        RecordOrder back = inverse(entry.order);
        const std::vector<Field> &fields = entry.table->fields();
        std::vector<Column> columns;
        for (const Field &field : fields)
            columns.emplace_back(field.type());
        forEachColumn(columns.size(), back.size(),
                      [&](std::size_t field) { columns[field] = reordered(fields[field].column, entry.order); });
        for (std::size_t field = 0; field < columns.size(); ++field)
            std::swap(entry.table->field(field).column, columns[field]);
        entry.order = std::move(back);
    }
    void operator()(AllTables &entry) const { std::swap(m_tables, entry.before); }

private:
    Entry &m_entry;
    Tables &m_tables;
};

std::size_t textCost(const CellValue &value) {
    const auto *text = std::get_if<QString>(&value);
    return text ? static_cast<std::size_t>(text->size()) * sizeof(QChar) : 0;
}

} // namespace

void apply(Entry &entry, Tables &tables) {
    std::visit(Applier(entry, tables), entry);
}

Table *contentOf(const Entry &entry) {
    return std::visit(
        []<class Content>(const Content &content) -> Table * {
            constexpr bool isOfList = std::is_same_v<Content, TableInserted> || std::is_same_v<Content, TableRemoved> ||
                                      std::is_same_v<Content, TableRenamed> || std::is_same_v<Content, AllTables>;
            if constexpr (isOfList)
                return nullptr;
            else
                return content.table;
        },
        entry);
}

std::size_t costOf(const Entry &entry) {
    std::size_t bytes = sizeof(Entry);
    if (const auto *cell = std::get_if<CellChanged>(&entry)) {
        bytes += textCost(cell->before);
    } else if (const auto *record = std::get_if<RecordRemoved>(&entry)) {
        for (const CellValue &value : record->values)
            bytes += sizeof value + textCost(value);
    } else if (const auto *field = std::get_if<FieldRemoved>(&entry)) {
        bytes += field->field->column.memory();
    } else if (const auto *resized = std::get_if<FieldResized>(&entry)) {
        bytes += resized->column ? resized->column->memory() : 0;
    } else if (const auto *removed = std::get_if<TableRemoved>(&entry)) {
        bytes += removed->table->memory();
    } else if (const auto *image = std::get_if<TableImage>(&entry)) {
        bytes += image->before->memory();
    } else if (const auto *reordered = std::get_if<RecordsReordered>(&entry)) {
        bytes += reordered->order.size() * sizeof(std::uint32_t);
    } else if (const auto *all = std::get_if<AllTables>(&entry)) {
        for (const auto &table : all->before)
            bytes += table->memory();
    }
    return bytes;
}

} // namespace qir::undo
