#pragma once

#include "compare/engine/KeyedFields.h"

#include <QAbstractListModel>
#include <QStringList>

#include <vector>

namespace qir {

/// The fields that two tables share, each with a box that makes it a part of the key.
class KeyFields : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    /// Shows these fields; checked are those of `key`, by name.
    void setFields(const QStringList &names, const QStringList &key);
    QStringList names() const { return m_names; }
    /// The fields that are checked, in their order.
    QStringList key() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

Q_SIGNALS:
    void keyChanged(); ///< By the user.

private:
    QStringList m_names;
    std::vector<bool> m_checked;
};

} // namespace qir
