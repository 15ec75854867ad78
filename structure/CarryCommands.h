#pragma once

#include "pane/EditorContext.h"
#include "platform/grid/GridRange.h"

#include <QCoreApplication>

#include <functional>
#include <optional>

QT_BEGIN_NAMESPACE
class QAction;
QT_END_NAMESPACE

namespace qir {

class CarryLosses;
class CellDifferences;
class CloneCommands;
class DifferenceWalk;
class TableLoader;

/// Carrying what one side has to the same place on the other side: cells, a record, a whole table. Nothing is written
/// before it is told which fields are of another type or size, and which value would not survive that; these are left
/// out on request. What one command writes is one group of changes.
class CarryCommands {
    Q_DECLARE_TR_FUNCTIONS(CarryCommands)

public:
    enum class Then { Stay, GoOn };

    CarryCommands(EditorContext &editor, CellDifferences &differences, TableLoader &tables, CloneCommands &clone,
                  DifferenceWalk &walk)
        : m_editor(editor)
        , m_differences(differences)
        , m_tables(tables)
        , m_clone(clone)
        , m_walk(walk) {}

    /// Its rows for the menus, and the keys that have a direction.
    void addCommands();

    /// The selected cells of a pane's grid.
    void carryCells(int from, Then then = Then::Stay);
    /// The current record; added at the end where the other side lacks it.
    void carryRecord(int from, Then then = Then::Stay);
    /// The shown table: afterwards the other side's records are equal to it. Asks before.
    void carryTable(int from, Then then = Then::Stay);

private:
    /// Whether a cell is to be carried; empty for all.
    using Takes = std::function<bool(int row, int column)>;
    struct Work;

    QAction &addKey(const QKeySequence &key, const std::function<void()> &carry);
    static Then chosenThen();
    void goOn(Then then);
    int activePane() const;
    bool sameTableShown();
    void tell(const QString &text);
    int commonFields() const;
    std::optional<Takes> ask(const QString &question, const CarryLosses &losses, const QString &told = {});
    QString fieldsLeftBehind(int from) const;
    Takes onlyShown(int from, const Takes &takes) const;
    void copyBlock(int from, const GridRange &cells, const Takes &takes);
    void addRecord(int from, int row, const Takes &takes);
    bool carryWholeTable(int from);
    Work workFor(int from) const;
    int write(int from, const Work &work, const Takes &takes);
    void appendRecords(int from, const Work &work, const Takes &takes);
    static QString otherFieldsWords();
    int writeRecord(int from, int source, int target, const Takes &takes);

    EditorContext &m_editor;
    CellDifferences &m_differences;
    TableLoader &m_tables;
    CloneCommands &m_clone;
    DifferenceWalk &m_walk;
};

} // namespace qir
