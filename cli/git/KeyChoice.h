#pragma once

#include "compare/report/DatabaseDifference.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace qir {

/// The keys of a merge, as they were chosen: the key of a table goes before one of all, a later one before an earlier.
class KeyChoice {
public:
    explicit KeyChoice(std::vector<ChosenKey> keys = {})
        : m_keys(std::move(keys)) {}

    /// The key of a table that has these fields; none where none was chosen for it. Throws WrongChoice where one was
    /// chosen by the table's name and a field of it is missing.
    QStringList keyOf(const QString &table, const QStringList &fields) const;
    /// Throws WrongChoice where a key names a table that is none of these.
    void requireTables(const QStringList &tables) const;

private:
    std::vector<ChosenKey> m_keys;
};

} // namespace qir
