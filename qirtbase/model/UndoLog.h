#pragma once

#include "qirtbase/model/Table.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <variant>
#include <vector>

namespace qir {

/// What brings one change back. Undone strictly in reverse, each finds tables, fields and records where they stood when
/// it was made; a table that was removed lives on in its entry, so pointers to it stay good.
namespace undo {

struct CellChanged {
    Table *table;
    std::uint32_t record;
    std::uint16_t field;
    CellValue before;
};
struct RecordAppended {
    Table *table;
    std::size_t count = 1;
};
struct RecordRemoved {
    Table *table;
    std::size_t record;
    std::vector<CellValue> values;
};
struct FieldAppended {
    Table *table;
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
struct TableAppended {};
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

using Entry = std::variant<CellChanged, RecordAppended, RecordRemoved, FieldAppended, FieldRemoved, FieldRenamed,
                           FieldResized, TableAppended, TableRemoved, TableRenamed, TableImage>;

} // namespace undo

/// The way back for groups of changes. Groups nest: undoing an inner one leaves what the outer one did before it.
///
/// Costs what was changed, not what the tables hold: a changed cell keeps its old value. Once the old values of a table
/// outweigh a quarter of it, the table is copied once and its further changes cost nothing; a table made within the
/// group costs nothing from the start.
class UndoLog {
public:
    using Tables = std::vector<std::unique_ptr<Table>>;

    bool isOpen() const { return !m_groups.empty(); }
    void begin() { m_groups.push_back({.start = m_entries.size(), .tables = {}, .latest = 0}); }
    /// Ends the innermost group; what it did now belongs to the group around it, if there is one.
    void commit();
    /// Brings back what stood before the innermost group and ends it.
    void undo(Tables &tables);

    /// True when a change to the fields or records of `table` needs an entry.
    bool keeps(const Table &table);
    /// Makes sure that the next add() does not throw. A change that may fail and whose entry must not be there then is
    /// made between makeRoom() and add(); an entry that would but write back what still stands there may come first.
    void makeRoom();
    void add(undo::Entry entry);
    /// Keeps the value of a cell that is about to change, or the whole table.
    void keepCell(Table &table, std::size_t field, std::size_t record);
    /// Keeps the whole table, whose values are shared until they change.
    void keepTable(Table &table);
    /// Says that undoing removes the table altogether.
    void coverNewTable(const Table &table);

private:
    /// What a group has kept of one table.
    struct Coverage {
        const Table *table;
        std::size_t bytes; // of old values
        std::size_t limit; // from where on the whole table is kept instead
        bool whole;        // an image or the table's removal covers all that comes
    };
    struct Group {
        std::size_t start; // its first entry
        std::vector<Coverage> tables;
        std::size_t latest; // index of the table asked for last, which is nearly always the next one too
    };

    Coverage &coverage(const Table &table);

    std::vector<undo::Entry> m_entries;
    std::vector<Group> m_groups;
};

} // namespace qir
