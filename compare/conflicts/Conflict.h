#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

namespace qir {

/// Something that both sides of a merge have changed, each in its own way: the result has it as OURS has.
struct Conflict {
    enum class What { Cell, Record, Field, Table };

    What what = What::Table;
    QString table;
    int record = 0;        ///< By position, in the result; 0 where there is a key, or no record is meant.
    QVariantList key;      ///< The values of the key, where there is one.
    QStringList keyFields; ///< The names of its fields; empty where the file does not tell them.
    QString field;         ///< Of a cell or a field.
    QVariantList base;     ///< One value of a cell, the values of a record, the fields of a table; empty for nothing.
    QVariantList ours;
    QVariantList theirs;
    QStringList oursFields; ///< Of a record's values, "" for a field that the result lacks; may be empty, as above.
    QStringList theirsFields;
    QString reason; ///< More about it, for a person; may be "".
};

} // namespace qir
