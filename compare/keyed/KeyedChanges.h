#pragma once

#include "compare/engine/KeyedComparison.h"
#include "compare/engine/TableSnapshot.h"
#include "compare/report/KeyedRecords.h"

#include <QAbstractTableModel>

#include <cstdint>
#include <memory>
#include <vector>

namespace qir {

/// Two tables as they were compared by key, and what was found.
struct ComparedTables {
    std::shared_ptr<TableSnapshot> left;
    std::shared_ptr<TableSnapshot> right;
    KeyedDifference difference;
};

/// The changes of a comparison by key as rows of a view: one for each changed value, each record that was added,
/// removed or moved, each field of one side and each key that occurs twice. Texts are made when they are asked for.
class KeyedChanges : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Key, Change, Field, Left, Right, ColumnCount };
    enum class Kind : std::uint8_t { Duplicate, FieldOfOneSide, Removed, Changed, Added, Moved };

    using QAbstractTableModel::QAbstractTableModel;

    /// Shows a comparison; null for none.
    void show(std::unique_ptr<ComparedTables> compared);
    /// Shows only rows of these kinds (all where it is empty) that hold a text, whatever its case.
    void filter(const std::vector<Kind> &kinds, const QString &text);

    const ComparedTables *compared() const { return m_compared.get(); }
    std::size_t allRows() const { return m_rows.size(); }
    /// The records that a row is about, 0 on a side without one.
    PairedRecords recordsOf(int row) const;
    /// The field of the value that a row is about; 0 where it is about none.
    FieldPair fieldOf(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    struct Row {
        Kind kind;
        bool onRight = false; ///< Of a key or field of one side.
        int field = 0;        ///< Of a value: an element of the compared fields; of one side: its number.
        PairedRecords records;
        int count = 0; ///< Of a key that occurs more than once.
    };

    void listRows();
    const Row &shownRow(int row) const;
    QString text(const Row &row, Column column) const;
    QString keyText(const Row &row) const;
    QString changeText(const Row &row) const;
    QString fieldText(const Row &row) const;
    QString sideText(const Row &row, TableSide side) const;

    std::unique_ptr<ComparedTables> m_compared;
    std::vector<Row> m_rows;
    bool m_filtered = false;
    std::vector<std::uint32_t> m_shown; // of m_rows, while they are filtered
};

} // namespace qir
