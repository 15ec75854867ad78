#include "platform/list/ListLines.h"

#include "base/Collation.h"

#include <algorithm>

namespace qir {

int ListLines::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_lines.size());
}

QVariant ListLines::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return text(index.row());
    case Qt::UserRole:
        return number(index.row());
    case Qt::DecorationRole:
        return iconOf(index.row());
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
        return m_signs ? m_signs(index.row()).words : QVariant();
    default:
        return {};
    }
}

QVariant ListLines::iconOf(int line) const {
    const QIcon icon = m_signs ? m_signs(line).icon : QIcon();
    return icon.isNull() ? QVariant() : icon; // one that is there takes room, even a null one
}

void ListLines::setText(int line, const QString &text) {
    Line &changed = m_lines[static_cast<std::size_t>(line)];
    changed.text = text;
    changed.key = collationKey(text);
    Q_EMIT dataChanged(index(line), index(line), {Qt::DisplayRole});
}

void ListLines::setNumber(int line, int number) {
    m_lines[static_cast<std::size_t>(line)].number = number;
    Q_EMIT dataChanged(index(line), index(line), {Qt::UserRole});
}

void ListLines::insert(int line, const QString &text) {
    beginInsertRows({}, line, line);
    m_lines.insert(m_lines.begin() + line, {text, collationKey(text), 0});
    endInsertRows();
}

void ListLines::clear() {
    beginResetModel();
    m_lines.clear();
    endResetModel();
}

int ListLines::sortedPlace(const QString &text) const {
    const QString key = collationKey(text);
    const auto behind = std::upper_bound(m_lines.begin(), m_lines.end(), key,
                                         [](const QString &left, const Line &right) { return left < right.key; });
    return static_cast<int>(behind - m_lines.begin());
}

} // namespace qir
