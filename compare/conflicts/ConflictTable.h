#pragma once

#include "compare/conflicts/RecordDigest.h"
#include "compare/engine/KeyedFields.h"
#include "compare/engine/TableSource.h"
#include "db/QirDatabase.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <vector>

namespace qir {

/// What goes through records tells so after as many.
constexpr int recordsBetweenSteps = 1000;

/// An empty text, 0 or nothing.
bool isEmptyValue(const QVariant &value);
/// Equal for equal values alone.
QString keyText(const QVariantList &values);

/// The records of each key, by its text.
using RecordsOfKeys = QHash<QString, std::vector<int>>;

/// The current table of a database, where some of the conflicts are.
class ConflictTable {
public:
    explicit ConflictTable(const QirDatabase &database);

    int records() const { return m_table.records(); }
    int fields() const { return m_table.fields(); }
    /// By name; 0 for none.
    int fieldOf(const QString &name) const;
    QString fieldName(int field) const { return m_table.fieldName(field); }
    /// Its name, type and size as a conflict tells them; "" for a type without a name.
    QString headerOf(int field) const;
    QVariant value(int record, int field) { return valueOf(m_table.cell(record, field)); }
    /// The field gives a value back as it is.
    bool holds(const QVariant &value, int field) const;

    /// What a record is known by besides its number: all of it that no conflict is about.
    RecordDigest digest(int record, const DecidedFields &decided);
    /// A record with values in these fields can be here: some of them are there, and the others are decided on.
    bool hasPlaceFor(const QStringList &names, const DecidedFields &decided) const;

    /// Looks up the records of these keys, in their order. False where the fields are not there, or none is named.
    bool find(const QStringList &names, RecordsOfKeys &keys, const KeyedStep &step);

private:
    int sizeOf(int field) const;

    const QirDatabase &m_database;
    CurrentTable m_table;
    QStringList m_keys;           // of the fields' names
    QHash<QString, int> m_fields; // by these, the first of a name
};

} // namespace qir
