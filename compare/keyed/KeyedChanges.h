#pragma once

#include "compare/engine/CarriedChange.h"
#include "compare/engine/KeyedComparison.h"
#include "compare/engine/TableSnapshot.h"
#include "compare/report/KeyedRecords.h"

#include <QAbstractTableModel>
#include <QBasicTimer>

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
/// What can be carried to the other side has a box to tick.
class KeyedChanges : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Key, Change, Field, Left, Right, ColumnCount };
    enum class Kind : std::uint8_t { Duplicate, FieldOfOneSide, Removed, Changed, Added, Moved };

    using QAbstractTableModel::QAbstractTableModel;

    /// Shows a comparison; null for none.
    void show(std::unique_ptr<ComparedTables> compared);
    /// Shows only rows of these kinds (all where it is empty) that hold a text, whatever its case. Where there are many
    /// what is found comes bit by bit, and filtered() at the end; another filter ends the search.
    void filter(const std::vector<Kind> &kinds, const QString &text);
    bool isFiltering() const { return m_search.isActive(); }

    const ComparedTables *compared() const { return m_compared.get(); }
    std::size_t allRows() const { return m_rows.size(); }
    /// The records that a row is about, 0 on a side without one.
    PairedRecords recordsOf(int row) const;
    /// The field of the value that a row is about; 0 where it is about none.
    FieldPair fieldOf(int row) const;

    /// Ticks all rows that are shown and can be carried, or none of these.
    void tickShown(bool ticked);
    std::size_t tickedCount() const { return m_tickedCount; }
    /// The ticked rows, shown or not, and the first ones in words, as they are to be on a side (0 left, 1 right).
    CarriedChanges ticked(int to) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

Q_SIGNALS:
    void ticksChanged();
    void filtered();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    struct Row {
        Kind kind;
        bool onRight = false; ///< Of a key or field of one side.
        int field = 0;        ///< Of a value: an element of the compared fields; of one side: its number.
        PairedRecords records;
        int count = 0; ///< Of a key that occurs more than once.

        bool canBeCarried() const { return kind == Kind::Removed || kind == Kind::Changed || kind == Kind::Added; }
    };

    void listRows();
    bool passes(const Row &row) const;
    std::vector<std::uint32_t> searchOn(int milliseconds);
    std::size_t indexOf(int row) const;
    const Row &shownRow(int row) const { return m_rows[indexOf(row)]; }
    void tick(std::size_t row, bool ticked);
    QString carriedWords(const Row &row, int to) const;
    QString text(const Row &row, Column column) const;
    QString keyText(const Row &row) const;
    QString changeText(const Row &row) const;
    QString fieldText(const Row &row) const;
    QString sideText(const Row &row, TableSide side) const;

    std::unique_ptr<ComparedTables> m_compared;
    std::vector<Row> m_rows;
    std::vector<bool> m_ticked; // each of them
    std::size_t m_tickedCount = 0;
    bool m_filtered = false;
    std::vector<std::uint32_t> m_shown; // of m_rows, while they are filtered
    // What is searched for, and from which row on.
    std::vector<Kind> m_kinds;
    QString m_text;
    std::size_t m_next = 0;
    QBasicTimer m_search;
};

} // namespace qir
