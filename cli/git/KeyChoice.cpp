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

QString noFieldWords(const QString &table, const QString &field) {
    return u"the table \"%1\" has no field \"%2\", which is to be its key"_s.arg(table, field);
}

} // namespace

KeyChoice::KeyChoice(std::vector<ChosenKey> keys, std::vector<ChosenKey> usual)
    : m_keys(std::move(usual))
    , m_usualCount(m_keys.size()) {
    m_keys.insert(m_keys.end(), keys.begin(), keys.end());
}

QStringList KeyChoice::keyOf(const QString &table, const QStringList &fields) const {
    for (auto key = m_keys.rbegin(); key != m_keys.rend(); ++key) { // NOLINT(modernize-loop-convert): backwards
        if (key->table.isEmpty() || collationKey(key->table) != collationKey(table))
            continue;
        for (const QString &field : key->fields)
            if (!hasName(fields, field))
                throw WrongChoice(noFieldWords(table, field));
        return key->fields;
    }
    for (auto key = m_keys.rbegin(); key != m_keys.rend(); ++key) { // NOLINT(modernize-loop-convert): backwards
        const auto isThere = [&](const QString &field) { return hasName(fields, field); };
        if (key->table.isEmpty() && std::ranges::all_of(key->fields, isThere))
            return key->fields;
    }
    return {};
}

void KeyChoice::requireFit(const std::vector<CommonFields> &tables) const {
    for (std::size_t i = m_usualCount; i < m_keys.size(); ++i) {
        const ChosenKey &key = m_keys[i];
        const auto isOfKey = [&key](const CommonFields &table) {
            return key.table.isEmpty() || collationKey(key.table) == collationKey(table.table);
        };
        const auto missing = [&key](const CommonFields &table) {
            const auto found = std::ranges::find_if_not(
                key.fields, [&table](const QString &field) { return hasName(table.fields, field); });
            return found == key.fields.end() ? QString() : *found;
        };
        const auto table = std::ranges::find_if(tables, isOfKey);
        if (!key.table.isEmpty() && table == tables.end())
            throw WrongChoice(u"there is no table \"%1\", for which a key is given"_s.arg(key.table));
        if (!key.table.isEmpty() && !missing(*table).isEmpty())
            throw WrongChoice(noFieldWords(key.table, missing(*table)));
        if (std::ranges::none_of(tables,
                                 [&](const CommonFields &one) { return isOfKey(one) && missing(one).isEmpty(); }))
            throw WrongChoice(u"no table has the fields of the key on all sides: %1"_s.arg(key.fields.join(u", "_s)));
    }
}

} // namespace qir
