#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

#include <initializer_list>
#include <set>
#include <utility>
#include <vector>

namespace qir::test {

/// A database in its plainest form: what a component holds, by the rules of the data model, without any thought of
/// speed. A value is an int, a double or a QString. Tables, fields and records count from 0.
struct PlainField {
    QString name;
    int type = 10;
    int size = 0; ///< Of a text; 0 for all other types.

    bool isText() const { return type == 10; }
    /// What a new record has.
    QVariant empty() const;
    /// What the field keeps when it is given this value.
    QVariant from(const QVariant &value) const;
    friend bool operator==(const PlainField &, const PlainField &) = default;
};

/// A value of a table that is written out in a test.
class PlainValue {
public:
    PlainValue(double number)
        : m_value(number) {}
    PlainValue(const char *text)
        : m_value(QString::fromUtf8(text)) {}
    const QVariant &value() const { return m_value; }

private:
    QVariant m_value;
};

/// Cells of two grids or two tables, row and column from 1.
using Cells = std::set<std::pair<int, int>>;

struct PlainTable {
    int id = 0; ///< Stays when the table is renamed or another one removed; a test's own.
    QString name;
    std::vector<PlainField> fields;
    std::vector<QVariantList> records;

    PlainTable() = default;
    /// Fields "F1" and so on, a text of size 50 for true and a double for false.
    PlainTable(const char *tableName, const std::vector<bool> &textFields,
               const std::vector<std::vector<PlainValue>> &values);

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
    /// The next of the fields "F1" and so on.
    void addField(bool text);
    void removeField(int index);
    /// True when the size is another one than before; longer texts are cut.
    bool resizeField(int index, double size);
    /// The texts of the records, as a grid shows a table just loaded.
    std::vector<QStringList> texts() const;
};

struct PlainDatabase {
    std::vector<PlainTable> tables;

    PlainDatabase() = default;
    PlainDatabase(std::initializer_list<PlainTable> all)
        : tables(all) {}

    int tableCount() const { return static_cast<int>(tables.size()); }
    PlainTable &table(int index) { return tables[static_cast<std::size_t>(index)]; }
    const PlainTable &table(int index) const { return tables[static_cast<std::size_t>(index)]; }
    /// The table of that name, or of one that counts as the same; null when there is none.
    const PlainTable *find(const QString &name) const;
    const PlainTable *byId(int id) const;
    PlainTable *byId(int id) { return const_cast<PlainTable *>(std::as_const(*this).byId(id)); }
};

/// `table` with another value; record and field count from 1.
PlainTable with(PlainTable table, int record, int field, const PlainValue &value);

bool isFieldType(int code);
/// The size that a field of this type keeps when it is given this one.
int keptSize(int type, double size);
/// The cells in which two tables differ, those that only one of them has included.
Cells differences(const PlainTable &left, const PlainTable &right);
/// True when the records or fields differ in number, or any value differs.
bool differ(const PlainTable &left, const PlainTable &right);
/// Where two tables or databases are not the same in every name, type, size, value and order; "" when they are.
QString difference(const PlainTable &left, const PlainTable &right);
QString difference(const PlainDatabase &left, const PlainDatabase &right);
inline bool operator==(const PlainTable &left, const PlainTable &right) {
    return difference(left, right).isEmpty();
}
inline bool operator==(const PlainDatabase &left, const PlainDatabase &right) {
    return difference(left, right).isEmpty();
}

} // namespace qir::test
