#include "cli/git/KeyChoice.h"

#include "base/Collation.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

bool hasName(const QStringList &names, const QString &name) {
    return std::ranges::any_of(names,
                               [key = collationKey(name)](const QString &other) { return collationKey(other) == key; });
}

} // namespace

QStringList KeyChoice::keyOf(const QString &table, const QStringList &fields) const {
    for (auto key = m_keys.rbegin(); key != m_keys.rend(); ++key) {
        if (key->table.isEmpty() || collationKey(key->table) != collationKey(table))
            continue;
        for (const QString &field : key->fields)
            if (!hasName(fields, field))
                throw WrongChoice(u"the table \"%1\" has no field \"%2\", which is to be its key"_s.arg(table, field));
        return key->fields;
    }
    for (auto key = m_keys.rbegin(); key != m_keys.rend(); ++key) {
        const auto isThere = [&](const QString &field) { return hasName(fields, field); };
        if (key->table.isEmpty() && std::ranges::all_of(key->fields, isThere))
            return key->fields;
    }
    return {};
}

void KeyChoice::requireTables(const QStringList &tables) const {
    for (const ChosenKey &key : m_keys)
        if (!key.table.isEmpty() && !hasName(tables, key.table))
            throw WrongChoice(u"there is no table \"%1\", for which a key is given"_s.arg(key.table));
}

} // namespace qir
