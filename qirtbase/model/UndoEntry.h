#pragma once

#include "qirtbase/model/RecordOrder.h"
#include "qirtbase/model/Table.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <variant>
#include <vector>

namespace qir {

/// What brings one change back. Applied strictly in reverse, each finds tables, fields and records where they stood
/// when it was made; a table that was removed lives on in its entry, so pointers to it stay good.
namespace undo {

using Tables = std::vector<std::unique_ptr<Table>>;

struct CellChanged {
    Table *table;
    std::uint32_t record;
    std::uint16_t field;
    CellValue before;
};
/// Records without values, at the end.
struct RecordsAppended {
    Table *table;
    std::size_t count;
};
struct RecordsDropped {
    Table *table;
    std::size_t count;
};
struct RecordInserted {
    Table *table;
    std::size_t record;
};
struct RecordRemoved {
    Table *table;
    std::size_t record;
    std::vector<CellValue> values;
};
struct FieldInserted {
    Table *table;
    std::size_t index;
};
struct FieldRemoved {
    Table *table;
    std::size_t index;
    std::unique_ptr<Field> field;
};
struct FieldRenamed {
    Table *table;
    std::size_t index;
    FieldName before;
};
struct FieldResized {
    Table *table;
    std::size_t index;
    int before;
    std::unique_ptr<Column> column; ///< The texts before, null when none was cut.
};
struct TableInserted {
    std::size_t index;
};
struct TableRemoved {
    std::size_t index;
    std::unique_ptr<Table> table;
};
struct TableRenamed {
    Table *table;
    Name before;
};
/// The whole table as it was; nothing done to its fields and records after this needs an entry of its own.
struct TableImage {
    Table *table;
    std::unique_ptr<Table> before;
};
/// Nothing but the order of the records: the one to stand at i is the one at order[i].
struct RecordsReordered {
    Table *table;
    RecordOrder order;
};
/// The whole list of tables as it was.
struct AllTables {
    Tables before;
};

using Entry = std::variant<CellChanged, RecordsAppended, RecordsDropped, RecordInserted, RecordRemoved, FieldInserted,
                           FieldRemoved, FieldRenamed, FieldResized, TableInserted, TableRemoved, TableRenamed,
                           TableImage, RecordsReordered, AllTables>;

/// Brings back what an entry tells of and makes it the entry that takes this back in turn. Nothing has changed where it
/// throws (std::bad_alloc, std::length_error).
void apply(Entry &entry, Tables &tables);

/// The table whose fields or records an entry brings back, null for entries about the list of tables.
Table *contentOf(const Entry &entry);
/// Bytes of memory that an entry holds, as if it shared none with others.
std::size_t costOf(const Entry &entry);

} // namespace undo

} // namespace qir
