#pragma once

#include "qirtbase/model/Change.h"
#include "qirtbase/model/Table.h"
#include "qirtbase/model/UndoLog.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace qir {

/// Part of a file that a newer version wrote and that a reader need not know: kept and written back.
struct ForeignSection {
    std::uint8_t type;
    std::uint8_t flags;
    QByteArray payload;
};

/// An ordered list of tables, and the rules by which it changes.
///
/// Everything counts from 0 here and is the caller's to keep in range. What breaks a rule (a taken or empty name, an
/// unknown type, a limit passed) throws DatabaseError, a lack of memory std::bad_alloc or std::length_error; nothing is
/// changed then. Members that give bool tell whether anything changed: writing what is already there does not. Tables
/// keep their address while they are in the list, also through undo.
class Database {
public:
    std::size_t tableCount() const { return m_tables.size(); }
    const Table &table(std::size_t index) const { return *m_tables[index]; }
    Table &table(std::size_t index) { return *m_tables[index]; }
    /// By collation key.
    std::optional<std::size_t> findTable(const QString &name) const;

    /// Appends a table of one text field and one record.
    void addTable(const QString &name);
    bool renameTable(std::size_t index, const QString &name);
    void removeTable(std::size_t index);

    // The tables given to the following are this database's own.

    /// Appends a field of zeros or empty texts. `size` counts for text only: rounded, halves to even, and kept within
    /// 0 to limits::textSize.
    void addField(Table &table, const QString &name, int typeCode, double size);
    bool renameField(Table &table, std::size_t index, const QString &name);
    void removeField(Table &table, std::size_t index);
    /// Does nothing to a field that is no text. Texts longer than the new size are cut.
    bool resizeField(Table &table, std::size_t index, double size);

    void addRecord(Table &table);
    void addRecords(Table &table, std::size_t count);
    void removeRecord(Table &table, std::size_t record);
    /// Takes the records of tables without fields away, which no file keeps. More of the last step. Outside groups
    /// only.
    void dropRecordsWithoutFields();

    /// Stores the nearest value that the field holds; a text field gets the number's text.
    bool setNumber(Table &table, std::size_t field, std::size_t record, double number);
    /// Stores the text cut at the field's size; a field of another type gets the number that it begins with.
    bool setText(Table &table, std::size_t field, std::size_t record, const QString &text);

    /// Stores the values of a block of the field's type from `first` on, each as setNumber() and setText() store it.
    /// All of them or none.
    bool setBlock(Table &table, std::size_t field, std::size_t first, const ColumnBlock &block);

    /// The innermost group has only brought the table's records into another order: the one at i stood at order[i]. So
    /// its undoing needs no more than that. Nothing happens where it has done something else. `order` is a permutation
    /// of the records.
    void recordsReordered(Table &table, const RecordOrder &order) {
        if (m_undo.keepAsOrder(table, order) && m_listener)
            m_listener->reordered(table, order);
    }

    /// Groups of changes; they nest. `endGroup` keeps what the innermost did, `undoGroup` brings back what stood
    /// before.
    bool hasOpenGroup() const { return m_undo.isOpen(); }
    void beginGroup();
    void endGroup();
    void undoGroup();

    /// From now on an outermost group that is kept becomes a step that can be undone, and so does each change outside
    /// groups. `budget` is how many bytes of memory the steps may hold.
    void keepSteps(std::size_t budget) { m_undo.keepSteps(budget); }
    bool keepsSteps() const { return m_undo.keepsSteps(); }
    const History &history() const { return m_undo.history(); }
    /// As History::takeEmpty().
    void takeEmptySteps(bool empty) { m_undo.history().takeEmpty(empty); }
    /// As History::enter().
    void enterState(std::uint64_t state, StepKind kind) { m_undo.history().enter(state, kind); }
    /// A group that is a step of this name. Where it is the outermost one and the step before has the same key, which
    /// is not "", it is more of that.
    void beginStep(const QString &name, const QString &key);
    /// A group that is what a mark tells, outside groups.
    void beginMarked(const StepMark &mark, const QString &key = {});
    /// What comes is no more of the last step, whatever its key.
    void endJoining() { m_undo.history().seal(); }
    /// Undo the last step, make again the one that was undone last; there must be one, and no group. Strong: but where
    /// memory is short on the way back too the history is lost. Gives the place that changed.
    std::optional<StepPlace> undoStep();
    std::optional<StepPlace> redoStep();
    /// Makes the tables those of `other`, in a step of this name; they are in the state of that number then.
    void revertTo(Database &&other, const QString &name, std::uint64_t state);

    /// Who is told of changes from now on; null for nobody. Must outlive the database or be taken away first.
    void setListener(ChangeListener *listener) { m_listener = listener; }

    /// For whoever reads a file: appends a table that obeys all rules, its key not taken.
    void append(std::unique_ptr<Table> table) { m_tables.push_back(std::move(table)); }
    /// For whoever restores a database: makes a table, which keeps its address, another one that obeys all rules, its
    /// key not taken by another. Told to nobody.
    void replaceTable(std::size_t index, std::unique_ptr<Table> table);
    /// The same for all of them; they have another address then.
    void replaceTables(Database &&other);
    /// For whoever restores steps: brings back what an entry tells of, as part of the open group. It obeys all rules,
    /// and what it names is there. Told to nobody.
    void restore(undo::Entry entry);
    /// The same tables and foreign sections, without listener, groups and steps; shares the columns' memory until one
    /// of the two changes it.
    Database copy() const;
    std::vector<ForeignSection> &foreignSections() { return m_foreignSections; }
    const std::vector<ForeignSection> &foreignSections() const { return m_foreignSections; }

private:
    /// A change outside any group, which is a step of its own where steps are kept.
    class SingleChange;

    std::optional<std::size_t> findKey(const QString &key) const;
    void tellBlock(Table &table, std::size_t field, std::size_t first, const ColumnBlock &block) const;
    void tell(const Change &change) const {
        if (m_listener)
            m_listener->changed(change);
    }
    void tellChangesOf(const Step &step, StepKind kind) const;
    /// A change of a table's fields or records.
    void tell(Table &table, const Change &change) const {
        table.touch();
        tell(change);
    }

    UndoLog::Tables m_tables;
    std::vector<ForeignSection> m_foreignSections;
    UndoLog m_undo;
    ChangeListener *m_listener = nullptr;
};

} // namespace qir
