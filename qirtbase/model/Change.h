#pragma once

#include "base/columns/ColumnBlock.h"

#include <QString>
#include <QStringView>

#include <cstddef>
#include <cstdint>
#include <span>

namespace qir {

class Table;

/// The kinds of change that a database goes through. On disk in journals: never change a number.
enum class ChangeKind : std::uint8_t {
    AddTable = 1,
    RenameTable = 2,
    RemoveTable = 3,
    AddField = 4,
    RenameField = 5,
    RemoveField = 6,
    ResizeField = 7,
    AddRecord = 8,
    RemoveRecord = 9,
    SetNumber = 10,
    SetText = 11,
    SetBlock = 12,
    AddRecords = 13,
};

/// One change as it was made, enough to make it again. What a kind has no use for stays as it is here. Names and texts
/// are the checked and cut ones; they live as long as the call that hands the change on.
struct Change {
    ChangeKind kind;
    const Table *table = nullptr; ///< Whose fields or records changed; null for changes of the list of tables.
    std::size_t index = 0;        ///< Of the field, or of the table where the list of tables changed.
    std::size_t record = 0;       ///< The first of a block; how many were added.
    int type = 0;                 ///< Of a new field: its code.
    double number = 0;            ///< A value or a size.
    QStringView text = {};        ///< A name or a value.
    const ColumnBlock *block = nullptr;
};

/// What an outermost group of changes is to the history of its database.
enum class StepKind : std::uint8_t {
    Step,   ///< A new step.
    Joined, ///< More of the step before it.
    Undone, ///< A step that was made before is undone by these changes.
};

struct StepMark {
    StepKind kind = StepKind::Step;
    QString name;
    std::int64_t time = 0; ///< Milliseconds since 1970; 0 where it is not known.
};

/// Is told of every change of a database right after it was made. Must not throw and must not change the database.
class ChangeListener {
public:
    virtual ~ChangeListener() = default;

    virtual void changed(const Change &change) noexcept = 0;
    /// Groups nest; what was told since groupBegan() is undone by groupUndone().
    virtual void groupBegan() noexcept = 0;
    virtual void groupEnded() noexcept = 0;
    virtual void groupUndone() noexcept = 0;
    /// Right after the beginning of an outermost group, where it is more than a step without a name.
    virtual void groupMarked(const StepMark & /*mark*/) noexcept {}
    /// Within a group: a table is another one now in more than single values; null says so of the list of tables.
    virtual void replaced(const Table * /*table*/) noexcept {}
    /// All that the innermost group has done to a table is to bring its records into this order.
    virtual void reordered(const Table & /*table*/, std::span<const std::uint32_t> /*order*/) noexcept {}
    /// The last step was undone, or the first undone one made again. False where the listener does not know that step,
    /// and wants to be told the changes.
    virtual bool stepUndone() noexcept { return true; }
    virtual bool stepRedone() noexcept { return true; }
};

} // namespace qir
