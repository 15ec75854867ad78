#pragma once

#include "compare/report/DatabaseDifference.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace qir {

/// The fields that all sides of a merge have in a table.
struct CommonFields {
    QString table;
    QStringList fields;
};

/// The keys of a merge, as they were chosen: the key of a table goes before one of all, a later one before an earlier.
class KeyChoice {
public:
    /// `usual` are keys of many databases, which go behind the others: this one need not have their tables.
    explicit KeyChoice(std::vector<ChosenKey> keys = {}, std::vector<ChosenKey> usual = {});

    bool isEmpty() const { return m_keys.empty(); }

    /// The key of a table that has these fields; none where none was chosen for it. Throws WrongChoice where one was
    /// chosen by the table's name and a field of it is missing.
    QStringList keyOf(const QString &table, const QStringList &fields) const;
    /// Throws WrongChoice where a key fits none of these tables.
    void requireFit(const std::vector<CommonFields> &tables) const;

private:
    std::vector<ChosenKey> m_keys; ///< The usual ones first.
    std::size_t m_usualCount;
};

} // namespace qir
