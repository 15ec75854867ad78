#pragma once

#include "db/QirDatabase.h"

#include <QString>
#include <QVariant>

#include <vector>

namespace qir::test {

/// A database in its plainest form: what a component holds, by the rules of the data model. A value is a double or a
/// QString. Tables, fields and records count from 0.
struct PlainField {
    QString name;
    int type = 10;
    int size = 0; ///< Of a text; 0 for all other types.

    /// What the field keeps when it is given this text through the editor.
    QVariant fromText(const QString &text) const;
    /// What the field keeps when it is given this value.
    QVariant from(const QVariant &value) const;
    friend bool operator==(const PlainField &, const PlainField &) = default;
};

struct PlainTable {
    int id = 0; ///< Stays when the table is renamed or another one removed; a test's own.
    QString name;
    std::vector<PlainField> fields;
    std::vector<QVariantList> records;

    int fieldCount() const { return static_cast<int>(fields.size()); }
    int recordCount() const { return static_cast<int>(records.size()); }
    QVariant &value(int record, int field) { return records[static_cast<std::size_t>(record)][field]; }
    const QVariant &value(int record, int field) const { return records[static_cast<std::size_t>(record)][field]; }
    PlainField &field(int index) { return fields[static_cast<std::size_t>(index)]; }
    const PlainField &field(int index) const { return fields[static_cast<std::size_t>(index)]; }

    /// Stores a value; true when it is another one than before.
    bool store(int record, int field, const QVariant &value);
    /// True when a field other than `except` (-1 none) has this name, or one that counts as the same.
    bool hasField(const QString &fieldName, int except = -1) const;
    void addRecord();
    void addField(const PlainField &field);
    void removeField(int index);
    /// True when the size is another one than before; longer texts are cut.
    bool resizeField(int index, double size);
    /// The texts of the records, as a grid shows a table just loaded.
    std::vector<QStringList> texts() const;
};

struct PlainDatabase {
    std::vector<PlainTable> tables;

    int tableCount() const { return static_cast<int>(tables.size()); }
    PlainTable &table(int index) { return tables[static_cast<std::size_t>(index)]; }
    const PlainTable &table(int index) const { return tables[static_cast<std::size_t>(index)]; }
    /// The table of that name, or of one that counts as the same; null when there is none.
    const PlainTable *find(const QString &name) const;
    const PlainTable *byId(int id) const;
    PlainTable *byId(int id) { return const_cast<PlainTable *>(std::as_const(*this).byId(id)); }
};

/// The size that a text field keeps when it is given this one.
int keptSize(double size);
/// True when the records or fields differ in number, or any value differs.
bool differ(const PlainTable &left, const PlainTable &right);
/// Where two databases are not the same in every name, type, size, value and order; "" when they are.
QString difference(const PlainDatabase &left, const PlainDatabase &right);

/// All that a component holds. Leaves another table current.
PlainDatabase readAll(const QirDatabase &database);
/// Fills an empty component.
void writeAll(const QirDatabase &database, const PlainDatabase &content);

} // namespace qir::test
