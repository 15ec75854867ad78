#pragma once

#include <QString>
#include <QStringList>

#include <string>
#include <vector>

namespace qir {

/// Which fields tell the records of tables apart, as [TABLE:]FIELD[,FIELD..]: a backslash before ":", "," or another
/// backslash makes it a part of a name.
class KeyChoice {
public:
    /// From options; throws for one that cannot be read.
    void add(const QString &text);
    /// From a file with one such choice, with its table, a line. Throws FileError.
    void addFile(const QString &file);

    /// The key of a table that has these fields; none where none was chosen for it. Throws where one was chosen by the
    /// table's name and a field of it is missing.
    QStringList keyOf(const QString &table, const QStringList &fields) const;
    /// Throws where a key names a table that is none of these.
    void requireTables(const QStringList &tables) const;

private:
    struct Key {
        QString table; ///< "" for every table that has the fields.
        QStringList fields;
    };
    std::vector<Key> m_keys;
};

} // namespace qir
