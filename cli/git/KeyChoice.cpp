#include "cli/git/KeyChoice.h"

#include "base/Collation.h"
#include "cli/FileError.h"
#include "cli/WholeFile.h"

#include <algorithm>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

bool hasName(const QStringList &names, const QString &name) {
    return std::ranges::any_of(names,
                               [key = collationKey(name)](const QString &other) { return collationKey(other) == key; });
}

[[noreturn]] void refuse(const QString &reason) {
    throw std::runtime_error(reason.toStdString());
}

} // namespace

void KeyChoice::add(const QString &text) {
    Key key;
    QString name;
    bool hasTable = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'\\' && i + 1 < text.size()) {
            name += text[++i];
        } else if (text[i] == u':' && !hasTable && key.fields.isEmpty()) {
            key.table = std::exchange(name, QString());
            hasTable = true;
        } else if (text[i] == u',') {
            key.fields += std::exchange(name, QString());
        } else {
            name += text[i];
        }
    }
    key.fields += name;
    if ((hasTable && key.table.isEmpty()) || key.fields.contains(QString()))
        refuse(u"the key \"%1\" is not of the form [TABLE:]FIELD[,FIELD..]"_s.arg(text));
    m_keys.push_back(std::move(key));
}

void KeyChoice::addFile(const QString &file) {
    const QByteArray bytes = readWholeFile(file);
    int number = 0;
    for (const QByteArray &line : bytes.split('\n')) {
        ++number;
        const QString text = QString::fromUtf8(line).trimmed();
        if (text.isEmpty() || text.startsWith(u'#'))
            continue;
        try {
            add(text);
        } catch (const std::exception &error) {
            throw FileError(file, u"line %1: %2"_s.arg(number).arg(QString::fromUtf8(error.what())));
        }
        if (m_keys.back().table.isEmpty())
            throw FileError(file, u"line %1: it names no table"_s.arg(number));
    }
}

QStringList KeyChoice::keyOf(const QString &table, const QStringList &fields) const {
    for (const Key &key : m_keys) {
        if (key.table.isEmpty() || collationKey(key.table) != collationKey(table))
            continue;
        for (const QString &field : key.fields)
            if (!hasName(fields, field))
                refuse(u"the table \"%1\" has no field \"%2\", which is to be its key"_s.arg(table, field));
        return key.fields;
    }
    for (const Key &key : m_keys) {
        const auto isThere = [&](const QString &field) { return hasName(fields, field); };
        if (key.table.isEmpty() && std::ranges::all_of(key.fields, isThere))
            return key.fields;
    }
    return {};
}

void KeyChoice::requireTables(const QStringList &tables) const {
    for (const Key &key : m_keys)
        if (!key.table.isEmpty() && !hasName(tables, key.table))
            refuse(u"there is no table \"%1\", for which a key is given"_s.arg(key.table));
}

} // namespace qir
