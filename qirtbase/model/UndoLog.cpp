#include "qirtbase/model/UndoLog.h"

#include <algorithm>
#include <type_traits>

namespace qir {

namespace {

/// Undoes one entry.
class Undoer {
public:
    explicit Undoer(UndoLog::Tables &tables)
        : m_tables(tables) {}

    void operator()(undo::CellChanged &entry) const {
        entry.table->field(entry.field).column.set(entry.record, entry.before);
    }
    void operator()(undo::RecordAppended &entry) const { entry.table->dropRecords(entry.count); }
    void operator()(undo::RecordRemoved &entry) const { entry.table->insertRecord(entry.record, entry.values); }
    void operator()(undo::FieldAppended &entry) const { entry.table->takeField(entry.table->fieldCount() - 1); }
    void operator()(undo::FieldRemoved &entry) const { entry.table->insertField(entry.index, std::move(*entry.field)); }
    void operator()(undo::FieldRenamed &entry) const { entry.table->field(entry.index).name = std::move(entry.before); }
    void operator()(undo::FieldResized &entry) const {
        Field &field = entry.table->field(entry.index);
        field.size = entry.before;
        if (entry.column)
            field.column = std::move(*entry.column);
    }
    void operator()(undo::TableAppended & /*entry*/) const { m_tables.pop_back(); }
    void operator()(undo::TableRemoved &entry) const {
        m_tables.insert(m_tables.begin() + static_cast<std::ptrdiff_t>(entry.index), std::move(entry.table));
    }
    void operator()(undo::TableRenamed &entry) const { entry.table->rename(std::move(entry.before)); }
    void operator()(undo::TableImage &entry) const { *entry.table = std::move(*entry.before); }

private:
    UndoLog::Tables &m_tables;
};

/// The table whose fields or records an entry brings back, null for entries about the list of tables.
const Table *contentOf(const undo::Entry &entry) {
    return std::visit(
        []<class Entry>(const Entry &content) -> const Table * {
            constexpr bool isOfList = std::is_same_v<Entry, undo::TableAppended> ||
                                      std::is_same_v<Entry, undo::TableRemoved> ||
                                      std::is_same_v<Entry, undo::TableRenamed>;
            if constexpr (isOfList)
                return nullptr;
            else
                return content.table;
        },
        entry);
}

std::size_t costOf(const CellValue &value) {
    std::size_t bytes = sizeof(undo::Entry);
    if (const auto *text = std::get_if<QString>(&value))
        bytes += static_cast<std::size_t>(text->size()) * sizeof(QChar);
    return bytes;
}

} // namespace

void UndoLog::commit() {
    const std::size_t start = m_groups.back().start;
    m_groups.pop_back();
    if (m_groups.empty()) {
        m_entries = std::vector<undo::Entry>(); // gives the memory back
        return;
    }
    // What the outer group covers whole it no longer logs, so entries of the inner one would not find the table as they
    // left it.
    const std::vector<Coverage> &outer = m_groups.back().tables;
    const auto isCovered = [&](const undo::Entry &entry) {
        const Table *table = contentOf(entry);
        const auto found = std::ranges::find(outer, table, &Coverage::table);
        return table && found != outer.end() && found->whole;
    };
    const auto first = m_entries.begin() + static_cast<std::ptrdiff_t>(start);
    m_entries.erase(std::remove_if(first, m_entries.end(), isCovered), m_entries.end());
}

void UndoLog::undo(Tables &tables) {
    while (m_entries.size() > m_groups.back().start) {
        std::visit(Undoer(tables), m_entries.back());
        m_entries.pop_back();
    }
    commit();
}

bool UndoLog::keeps(const Table &table) {
    return isOpen() && !coverage(table).whole;
}

void UndoLog::makeRoom() {
    if (isOpen() && m_entries.size() == m_entries.capacity())
        m_entries.reserve(std::max<std::size_t>(16, m_entries.size() * 2));
}

void UndoLog::add(undo::Entry entry) {
    if (isOpen())
        m_entries.push_back(std::move(entry));
}

void UndoLog::keepCell(Table &table, std::size_t field, std::size_t record) {
    if (!isOpen())
        return;
    Coverage &kept = coverage(table);
    if (kept.whole)
        return;
    if (kept.bytes >= kept.limit) {
        m_entries.emplace_back(undo::TableImage{&table, std::make_unique<Table>(table)});
        kept.whole = true;
        return;
    }
    CellValue before = table.field(field).column.value(record);
    kept.bytes += costOf(before);
    m_entries.emplace_back(undo::CellChanged{&table, static_cast<std::uint32_t>(record),
                                             static_cast<std::uint16_t>(field), std::move(before)});
}

void UndoLog::keepTable(Table &table) {
    if (!isOpen() || coverage(table).whole)
        return;
    m_entries.emplace_back(undo::TableImage{&table, std::make_unique<Table>(table)});
    coverage(table).whole = true;
}

void UndoLog::coverNewTable(const Table &table) {
    if (isOpen())
        coverage(table).whole = true;
}

UndoLog::Coverage &UndoLog::coverage(const Table &table) {
    Group &group = m_groups.back();
    if (group.latest < group.tables.size() && group.tables[group.latest].table == &table)
        return group.tables[group.latest];
    const auto found = std::ranges::find(group.tables, &table, &Coverage::table);
    group.latest = static_cast<std::size_t>(found - group.tables.begin());
    if (found != group.tables.end())
        return *found;
    constexpr std::size_t alwaysKept = 4096; // small tables are not worth an image at the first change
    group.tables.push_back({&table, 0, table.memory() / 4 + alwaysKept, false});
    return group.tables.back();
}

} // namespace qir
