#include "find/HitList.h"

#include "find/CellFinder.h"

#include <algorithm>

namespace qir {

QVariant HitList::data(const QModelIndex &index, int role) const {
    if ((role != Qt::DisplayRole && role != Qt::ToolTipRole) || !index.isValid())
        return {};
    const auto found = m_finder.hit(index.row());
    if (!found)
        return {}; // gone since the list was made
    switch (index.column()) {
    case Pane:
        return found->pane == 0 ? tr("Left") : tr("Right");
    case Table:
        return found->table;
    case Record:
        return QString::number(found->cell.record);
    case Field:
        return m_finder.fieldName(*found);
    default:
        return m_finder.text(index.row());
    }
}

QVariant HitList::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Pane:
        return tr("Pane");
    case Table:
        return tr("Table");
    case Record:
        return tr("Record");
    case Field:
        return tr("Field");
    default:
        return tr("Text");
    }
}

void HitList::refresh() {
    const int rows = static_cast<int>(std::min<std::int64_t>(m_finder.count(), mostRows));
    if (rows == m_rows) {
        if (rows > 0)
            Q_EMIT dataChanged(index(0, 0), index(rows - 1, ColumnCount - 1));
        return;
    }
    beginResetModel();
    m_rows = rows;
    endResetModel();
}

} // namespace qir
