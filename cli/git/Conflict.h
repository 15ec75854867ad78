#pragma once

#include "cli/git/Content.h"

#include <QByteArray>
#include <QStringList>

#include <optional>
#include <vector>

namespace qir {

/// Something that both sides of a merge have changed, each in its own way: the result has it as OURS has.
struct Conflict {
    enum class What { Cell, Record, Field, Table };

    What what = What::Table;
    QString table;
    int record = 0;    ///< By position, in the result; 0 where there is a key, or no record is meant.
    QVariantList key;  ///< The values of the key, where there is one.
    QString field;     ///< Of a cell or a field.
    QVariantList base; ///< One value of a cell, the values of a record, the fields of a table; empty for nothing.
    QVariantList ours;
    QVariantList theirs;
    QString reason; ///< More about it, for a person; may be "".

    /// As a line of the file of conflicts.
    void appendJson(QByteArray &out) const;
    /// As a person reads it.
    QString text() const;
};

/// The names and types of fields, as values of a conflict.
QVariantList headersOf(const std::vector<FieldInfo> &fields);

} // namespace qir
