#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>
#include <vector>

namespace qir {

/// The values of records, each in the order of its fields.
using ConflictRecords = std::vector<QVariantList>;

/// Something that both sides of a merge have changed, each in its own way: the result has it as OURS has.
struct Conflict {
    enum class What { Cell, Record, Field, Table };
    /// What of a table it is.
    enum class About { Content, Name, Order };

    What what = What::Table;
    About about = About::Content; ///< Of a table: its fields and records, the spelling of its name, its fields' order.
    QString table;
    int record = 0;        ///< By position, in the result; 0 where there is a key, or no record is meant.
    QString recordDigest;  ///< What its other values are known by; of a field those of all records. "" if not told.
    QVariantList key;      ///< The values of the key, where there is one.
    QStringList keyFields; ///< The names of its fields; empty where the file does not tell them.
    int occurrence = 0;    ///< Which of several records of the key, from 1; 0 where no side has several.
    QString field;         ///< Of a cell or a field.
    QVariantList base;     ///< One value of a cell, the values of a record, the fields of a table; empty for nothing.
    QVariantList ours;
    QVariantList theirs;
    QStringList oursFields; ///< Of a record's values, "" for a field that the result lacks; may be empty, as above.
    QStringList theirsFields;
    QString reason; ///< More about it, for a person; may be "".
    /// What a side has in a table or in a field; nothing where it has none, or where the file does not tell it. A
    /// table's are its records. A field's are, with keyFields, for each record of the side the values of the key and of
    /// the field, and without for each record of the result the value of the field, or none where the side lacks it.
    std::optional<ConflictRecords> oursRecords;
    std::optional<ConflictRecords> theirsRecords;
};

} // namespace qir
