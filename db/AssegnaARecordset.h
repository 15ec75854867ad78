#pragma once

#include "db/QirDatabase.h"

namespace qir {

/// Stores a text into a field of the component's current record, the single path by which a text gets there: a text
/// field takes it as it is, a field of any other type its leading number as a double. Throws what the component
/// throws. No range is checked here.
void AssegnaARecordset(const QirDatabase &Db, int FieldIndex, const QString &Text);

/// The same for many texts and fields whose type codes are known already: what travels to the component keeps its
/// memory from one text to the next. The database must outlive the writer.
class TextWriter {
public:
    explicit TextWriter(const QirDatabase &database)
        : m_database(database) {}

    /// The text to be stored next, to be filled in place.
    QString &text() { return *static_cast<QString *>(m_text.data()); }
    /// Stores text() into a field of the current record.
    void assign(int field, int typeCode);

private:
    const QirDatabase &m_database;
    QVariant m_text = QString();
    QVariant m_number = 0.0;
};

} // namespace qir
