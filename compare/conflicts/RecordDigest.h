#pragma once

#include "compare/conflicts/Conflict.h"
#include "db/FieldTypes.h"

#include <QCryptographicHash>
#include <QHash>
#include <QSet>

#include <map>

namespace qir {

/// What a record is known by again where there is no key: a digest of the values in some of its fields, in whatever
/// order.
class RecordDigest {
public:
    /// A field, by its name's key, with what it holds once this value is stored in it.
    void add(const QString &key, FieldType type, int size, const QVariant &value);
    bool isEmpty() const { return m_values.empty(); }
    /// Equal for equal names and values alone: 32 hexadecimal digits.
    QString text() const;

private:
    std::map<QString, QString> m_values; // by the names' keys
};

/// The same for records in their order.
class RecordsDigest {
public:
    void add(const RecordDigest &record);
    /// None of them is known by anything.
    bool isEmpty() const { return m_isEmpty; }
    QString text() const;

private:
    QCryptographicHash m_hash{QCryptographicHash::Sha256};
    bool m_isEmpty = true;
};

/// What the conflicts of a table are about: once a side is taken there, a digest of the other values stays as it is.
class DecidedFields {
public:
    void add(const Conflict &conflict);
    /// The field of this name's key, or its value in this record.
    bool contains(int record, const QString &key) const;
    bool containsField(const QString &key) const { return m_fields.contains(key); }

private:
    QSet<QString> m_fields; // by the names' keys, as the next
    QHash<int, QSet<QString>> m_cells;
};

} // namespace qir
