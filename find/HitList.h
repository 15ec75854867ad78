#pragma once

#include <QAbstractTableModel>

namespace qir {

class CellFinder;

/// What a finder has found, a row for each hit, told when it is asked for: no object stands for a hit.
class HitList : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Pane, Table, Record, Field, Text, ColumnCount };

    /// More rows than a view can lay out at once are not listed.
    static constexpr int mostRows = 1'000'000;

    explicit HitList(const CellFinder &finder, QObject *parent = nullptr)
        : QAbstractTableModel(parent)
        , m_finder(finder) {}

    int rowCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : m_rows; }
    int columnCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : ColumnCount; }
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    /// Takes over how many hits there are.
    void refresh();

private:
    const CellFinder &m_finder;
    int m_rows = 0;
};

} // namespace qir
