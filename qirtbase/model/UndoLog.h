#pragma once

#include "qirtbase/model/History.h"
#include "qirtbase/model/UndoEntry.h"

#include <QString>

#include <cstddef>
#include <optional>
#include <vector>

namespace qir {

/// The way back for groups of changes. Groups nest: undoing an inner one leaves what the outer one did before it. Where
/// steps are kept an outermost group that is committed becomes one.
///
/// Costs what was changed, not what the tables hold: a changed cell keeps its old value. Once the old values of a table
/// outweigh a quarter of it, the table is copied once and its further changes cost nothing; a table made within the
/// group costs nothing from the start.
class UndoLog {
public:
    using Tables = undo::Tables;

    bool isOpen() const { return !m_groups.empty(); }
    void begin();
    /// Says what the outermost open group is to the history. Without this it is a step without a name.
    void mark(const StepMark &mark, const QString &key);
    /// The group of a single change, which knows by itself what it has to keep. Ended by commit() or abandon().
    void beginSingle();
    /// Ends the innermost group; what it did now belongs to the group around it, if there is one.
    void commit();
    /// Brings back what stood before the innermost group and ends it.
    void undo(Tables &tables);
    /// Ends the group of a single change that was not made.
    void abandon();

    /// From now on steps are kept, with so many bytes at most.
    void keepSteps(std::size_t budget);
    bool keepsSteps() const { return m_keepsSteps; }
    History &history() { return m_history; }
    const History &history() const { return m_history; }

    /// True when a change to the fields or records of `table` needs an entry.
    bool keeps(const Table &table);
    /// Makes sure that the next add() does not throw. A change that may fail and whose entry must not be there then is
    /// made between makeRoom() and add(); an entry that would but write back what still stands there may come first.
    void makeRoom();
    void add(undo::Entry entry);
    /// Keeps the value of a cell that is about to change, or the whole table.
    void keepCell(Table &table, std::size_t field, std::size_t record);
    /// What takes the removal of a record back, to be added once that is done, which needs no more memory then; nothing
    /// where the table is kept whole.
    std::optional<undo::Entry> removal(Table &table, std::size_t record);
    /// Keeps the whole table, whose values are shared until they change.
    void keepTable(Table &table);
    /// All that the innermost group has done to a table is to bring its records into this order: it is kept in place of
    /// the table. Does nothing, and gives False, where that is not so.
    bool keepAsOrder(Table &table, const RecordOrder &order);
    /// Says that undoing removes the table altogether.
    void coverNewTable(const Table &table);

private:
    /// What a group has kept of one table.
    struct Coverage {
        const Table *table;
        std::size_t bytes; // of old values
        std::size_t limit; // from where on the whole table is kept instead
        bool measured;     // the limit counts the table's size
        bool whole;        // an image or the table's removal covers all that comes
    };
    struct Group {
        std::size_t start; // its first entry
        std::vector<Coverage> tables;
        std::size_t latest; // index of the table asked for last, which is nearly always the next one too
    };

    void takeOver(const Group &inner) noexcept;
    Coverage &coverage(const Table &table);
    bool outweighs(Coverage &kept) const;
    bool logs(Table &table);
    void count(const Table &table, const undo::Entry &entry);
    void prepareStep();
    void finish();

    std::vector<undo::Entry> m_entries;
    std::vector<Group> m_groups;
    bool m_isSingle = false;
    bool m_keepsSteps = false;
    History m_history;
    StepMark m_mark;
    QString m_key;
};

} // namespace qir
