#pragma once

#include "compare/DifferingTables.h"

#include <QAbstractTableModel>

#include <array>
#include <vector>

namespace qir {

/// What is known of one table of two databases.
struct TableSummary {
    QString name;
    Standing standing = Standing::Unknown; ///< Never Unknown once it was looked at.
    std::array<int, 2> records{};
    qulonglong cells = 0; ///< How many differ, in how many records.
    qulonglong differingRecords = 0;
    bool otherFields = false; ///< Names or their number.
    bool otherTypes = false;  ///< Types or sizes.
    friend bool operator==(const TableSummary &, const TableSummary &) = default;
};

/// The tables of two databases as Qt's item model, one in each row. Qt::UserRole is what a column is sorted by.
class SummaryModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Name, Difference, LeftRecords, RightRecords, Fields, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    const std::vector<TableSummary> &tables() const { return m_tables; }
    void setTables(std::vector<TableSummary> tables);
    void setTable(int row, const TableSummary &table);

    /// "12 cells in 3 records", "only left" and so on.
    static QString differenceWords(const TableSummary &table);

private:
    static QVariant sortValue(const TableSummary &table, int column);

    std::vector<TableSummary> m_tables;
};

} // namespace qir
