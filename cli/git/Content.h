#pragma once

#include "db/tables/TableReader.h"

#include <QHash>
#include <QString>
#include <QVariant>

#include <vector>

namespace qir {

/// The values of a record, one for each field: numbers as double, texts as QString.
using RecordValues = std::vector<QVariant>;

/// A table as a plain value.
struct TableContent {
    QString name;
    std::vector<FieldInfo> fields;
    std::vector<RecordValues> records;
};

/// A database as a plain value.
struct DatabaseContent {
    std::vector<TableContent> tables;
};

/// Finds the tables of a content, which must stay as it is, by their names.
class TablesByName {
public:
    explicit TablesByName(const DatabaseContent &content);

    /// The table of that name as the component looks names up; null for none.
    const TableContent *find(const QString &name) const;

private:
    QHash<QString, const TableContent *> m_tables;
};

/// Equal in name letter by letter, type and size.
bool sameField(const FieldInfo &left, const FieldInfo &right);
/// Equal letter by letter in names, fields and values.
bool sameContent(const TableContent &left, const TableContent &right);
/// Whether two values are the same one, numbers by value; nothing is the same as nothing alone.
bool sameValue(const QVariant &left, const QVariant &right);

DatabaseContent readContent(const QirDatabase &database);
/// Makes a database hold this, table by table; those that are so already are not touched.
void writeContent(const QirDatabase &database, const DatabaseContent &content);

} // namespace qir
