#pragma once

#include "qirtbase/model/Column.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qir {

/// A name as it was given, and the key that it is unique and looked up by.
struct Name {
    QString text;
    QString key;

    /// The name of a table or field, lone surrogates as U+FFFD. Throws DatabaseError when nothing but blanks and
    /// markers is left of it as a key, or when it is longer than limits::nameLength.
    static Name checked(const QString &text);
};

/// The name of a field in little memory, since a file may have millions: its key is made when it is asked for.
class FieldName {
public:
    FieldName() = default;
    explicit FieldName(const Name &name);

    QString text() const;
    QString key() const;
    const std::string &utf8() const { return m_utf8; }

private:
    std::string m_utf8; // of a well-formed text
};

struct Field {
    FieldName name;
    int size = 0; ///< Of a text field, in code points; 0 for any other type.
    Column column;

    ColumnType type() const { return column.type(); }
};

/// A table's fields and records, plain data: every column has recordCount() values. Counts from 0. Rules, limits and
/// undo are the Database's, which is who changes tables.
class Table {
public:
    explicit Table(Name name)
        : m_name(std::move(name)) {}
    Table(Name name, std::vector<Field> fields, std::size_t records)
        : m_name(std::move(name))
        , m_fields(std::move(fields))
        , m_records(records) {}

    const Name &name() const { return m_name; }
    std::size_t fieldCount() const { return m_fields.size(); }
    std::size_t recordCount() const { return m_records; }
    const Field &field(std::size_t index) const { return m_fields[index]; }
    const std::vector<Field> &fields() const { return m_fields; }
    std::optional<std::size_t> findField(const QString &key) const;
    /// Goes on with the memory of another table where that holds the same values in the same fields.
    void shareWith(const Table &other);
    /// Bytes of memory that the values take.
    std::size_t memory() const;
    /// Stands for fields and records as they are now: no other table, and no other state of this one, has the number.
    std::uint64_t revision() const { return m_revision; }
    /// Fields or records have changed.
    void touch() { m_revision = nextRevision(); }

    void rename(Name name) { m_name = std::move(name); }
    Field &field(std::size_t index) { return m_fields[index]; }
    /// Makes sure that the next insertField() does not throw.
    void makeRoomForField() { m_fields.reserve(m_fields.size() + 1); }
    void insertField(std::size_t index, Field field);
    Field takeField(std::size_t index);
    /// Appends records of zeros and empty texts; unchanged when it throws.
    void appendRecords(std::size_t count);
    /// Removes the last records.
    void dropRecords(std::size_t count);
    /// Puts a record before the one at `record`; unchanged when it throws.
    void insertRecord(std::size_t record, const std::vector<CellValue> &values);
    std::vector<CellValue> record(std::size_t record) const;
    /// Unchanged when it throws.
    void removeRecord(std::size_t record);

private:
    static std::uint64_t nextRevision();

    Name m_name;
    std::vector<Field> m_fields;
    std::size_t m_records = 0;
    std::uint64_t m_revision = nextRevision();
};

} // namespace qir
