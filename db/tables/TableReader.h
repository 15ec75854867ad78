#pragma once

#include "db/FieldTypes.h"
#include "db/QirDatabase.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace qir {

struct FieldInfo {
    QString name;
    FieldType type = FieldType::Text;
    int size = 0; ///< Of a text field; 0 for any other.
};

/// A table of a database as a command reads it.
struct TableInfo {
    QString name;
    std::vector<FieldInfo> fields;
    int records = 0;
};

/// Chooses a table by name and describes it. Throws what the component throws, and std::runtime_error for a field of a
/// type without a name.
TableInfo chooseTable(const QirDatabase &database, const QString &name);
/// The names of all tables, in their order.
QStringList tableNames(const QirDatabase &database);
/// Hands over the texts of every record of the chosen table in turn; element 0 is unused.
void forEachRecord(const QirDatabase &database, const TableInfo &table,
                   const std::function<void(const QStringList &values)> &take);

} // namespace qir
