#include "compare/keyed/KeyFields.h"

#include "base/Collation.h"

#include <algorithm>

namespace qir {

void KeyFields::setFields(const QStringList &names, const QStringList &key) {
    beginResetModel();
    m_names = names;
    m_checked.clear();
    for (const QString &name : names) {
        m_checked.push_back(std::any_of(
            key.begin(), key.end(), [&](const QString &other) { return collationKey(other) == collationKey(name); }));
    }
    endResetModel();
}

QStringList KeyFields::key() const {
    QStringList key;
    for (qsizetype i = 0; i < m_names.size(); ++i) {
        if (m_checked[static_cast<std::size_t>(i)])
            key += m_names[i];
    }
    return key;
}

int KeyFields::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_names.size());
}

QVariant KeyFields::data(const QModelIndex &index, int role) const {
    if (!index.isValid())
        return {};
    if (role == Qt::DisplayRole)
        return m_names[index.row()];
    if (role == Qt::CheckStateRole)
        return m_checked[static_cast<std::size_t>(index.row())] ? Qt::Checked : Qt::Unchecked;
    return {};
}

bool KeyFields::setData(const QModelIndex &index, const QVariant &value, int role) {
    if (!index.isValid() || role != Qt::CheckStateRole)
        return false;
    m_checked[static_cast<std::size_t>(index.row())] = value.toInt() == Qt::Checked;
    Q_EMIT dataChanged(index, index, {Qt::CheckStateRole});
    Q_EMIT keyChanged();
    return true;
}

Qt::ItemFlags KeyFields::flags(const QModelIndex &index) const {
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable : Qt::NoItemFlags;
}

} // namespace qir
