#include "compare/SummaryModel.h"

#include "base/Collation.h"

#include <limits>
#include <utility>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

QString fieldsWords(const TableSummary &table) {
    if (table.otherFields)
        return SummaryModel::tr("other fields");
    return table.otherTypes ? SummaryModel::tr("other types") : QString();
}

QVariant recordsOf(const TableSummary &table, int pane) {
    const Standing lacking = pane == 0 ? Standing::OnlyRight : Standing::OnlyLeft;
    return table.standing == lacking ? QVariant() : table.records.at(static_cast<std::size_t>(pane));
}

} // namespace

int SummaryModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_tables.size());
}

int SummaryModel::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QString SummaryModel::differenceWords(const TableSummary &table) {
    const auto [left, right] = table.records;
    switch (table.standing) {
    case Standing::OnlyLeft:
        return tr("only left");
    case Standing::OnlyRight:
        return tr("only right");
    case Standing::Differ:
        break;
    default:
        return tr("equal");
    }
    if ((left == 0) != (right == 0) || table.cells == 0)
        return tr("%1 and %2 records").arg(left).arg(right);
    const QString cells = table.cells == 1 ? tr("1 cell") : tr("%1 cells").arg(table.cells);
    return table.differingRecords == 1 ? tr("%1 in 1 record").arg(cells)
                                       : tr("%1 in %2 records").arg(cells).arg(table.differingRecords);
}

QVariant SummaryModel::sortValue(const TableSummary &table, int column) {
    switch (column) {
    case Name:
        return collationKey(table.name);
    case Difference:
        if (table.standing == Standing::OnlyLeft || table.standing == Standing::OnlyRight)
            return std::numeric_limits<qulonglong>::max();
        return table.standing == Standing::Differ ? table.cells + 1 : qulonglong{0};
    case LeftRecords:
    case RightRecords:
        return recordsOf(table, column == LeftRecords ? 0 : 1);
    default:
        return fieldsWords(table);
    }
}

QVariant SummaryModel::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const TableSummary &table = m_tables[static_cast<std::size_t>(index.row())];
    if (role == Qt::UserRole)
        return sortValue(table, index.column());
    const bool number = index.column() == LeftRecords || index.column() == RightRecords;
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(Qt::Alignment(Qt::AlignVCenter | (number ? Qt::AlignRight : Qt::AlignLeft)));
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case Name:
        return table.name;
    case Difference:
        return differenceWords(table);
    case LeftRecords:
        return recordsOf(table, 0);
    case RightRecords:
        return recordsOf(table, 1);
    default:
        return fieldsWords(table);
    }
}

QVariant SummaryModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section >= ColumnCount)
        return {};
    return QStringList{tr("Table"), tr("Difference"), tr("Left records"), tr("Right records"), tr("Fields")}.at(
        section);
}

void SummaryModel::setTables(std::vector<TableSummary> tables) {
    if (tables == m_tables)
        return;
    beginResetModel();
    m_tables = std::move(tables);
    endResetModel();
}

void SummaryModel::setTable(int row, const TableSummary &table) {
    TableSummary &kept = m_tables[static_cast<std::size_t>(row)];
    if (kept == table)
        return;
    kept = table;
    Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

} // namespace qir
