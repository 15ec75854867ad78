#pragma once

#include "compare/engine/KeyedComparison.h"
#include "compare/engine/NameAlignment.h"
#include "compare/engine/TableComparison.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <optional>
#include <vector>

namespace qir {

/// A key that somebody chose: of one table, or of all that have its fields.
struct ChosenKey {
    QString table; ///< "" for every table.
    QStringList fields;
};

/// How two databases are compared. What is not chosen is compared by position, value by value.
struct ComparisonChoice {
    std::vector<ChosenKey> keys; ///< One of a table goes before one of all; the later one of either before the earlier.
    QStringList tables;          ///< Only these; empty for all.
    QStringList ignore;          ///< Fields, by name.
    CellTolerance tolerance;
};

/// A field as it is defined.
struct FieldDefinition {
    QString name;
    FieldType type = FieldType::Text;
    int size = 0; ///< Of a text field; 0 for any other.

    friend bool operator==(const FieldDefinition &, const FieldDefinition &) = default;
};

/// The fields of the current table.
std::vector<FieldDefinition> currentFields(const QirDatabase &database);

/// A table of either of two databases, and how the two compare there.
struct TableDifference {
    QString name;      ///< As the left database spells it where it has it.
    QString rightName; ///< As the right one spells it, "" where it lacks it.
    AlignedRowKind kind = AlignedRowKind::Both;
    bool different = false; ///< Of a table that both have: in size or in any value.
    TableSizes sizes;       ///< 0 on a side without the table.
    BitMatrix cells;        ///< By position: (record, field) from 1, where they differ. Empty for equal tables.
    std::optional<KeyedDifference> keyed; ///< Of a table that is compared by key.

    /// How many cells of either side differ from the other; what neither side has is none.
    std::size_t cellCount() const;
};

/// Everything that differs between two databases.
struct DatabaseDifference {
    std::vector<TableDifference> tables; ///< In the order of names.
    bool different = false;
};

/// A choice that does not fit: a table or field that is not there. Fit to be shown.
class WrongChoice : public std::runtime_error {
public:
    explicit WrongChoice(const QString &text)
        : std::runtime_error(text.toStdString()) {}
};

/// Compares two databases as the editor's table lists and grids do, or as chosen. Leaves their last common table
/// current. Throws WrongChoice, what the components throw and what `step` throws, which is called now and then.
DatabaseDifference compareDatabases(const QirDatabase &left, const QirDatabase &right,
                                    const ComparisonChoice &choice = {}, const KeyedStep &step = {});

/// Makes the table current on the sides that have it.
void chooseOnBothSides(const TableDifference &table, const QirDatabase &left, const QirDatabase &right);

/// One differing cell: its place, and its value on each side that has such a cell.
struct DifferingCell {
    QString table;
    int record = 0;
    int field = 0;
    QString fieldName; ///< The left one where there is one: names are not compared.
    bool inLeft = false;
    bool inRight = false;
    QVariant left; ///< Invalid on a side without the cell.
    QVariant right;
};

/// Reads the differing cells of a table by position, record by record. Makes the table current on both sides.
void forEachDifferingCell(const TableDifference &table, const QirDatabase &left, const QirDatabase &right,
                          const std::function<void(const DifferingCell &cell)> &take);

} // namespace qir
