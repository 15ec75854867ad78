#pragma once

#include "base/columns/ColumnBuilder.h"
#include "cli/Session.h"
#include "cli/tables/ColumnValues.h"
#include "cli/tables/Portions.h"
#include "db/tables/TableReader.h"

#include <QByteArrayView>
#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace qir {

/// What becomes of a table that has the name already.
enum class KnownTable {
    Refused,  ///< It stays, and the import fails.
    Replaced, ///< It gets the fields and records of the import, and keeps its place.
    Extended, ///< It gets its records; one must be there.
};

/// The fields of a standing table that columns of these names go to, by their numbers. A column that tells its type
/// must go to a field of that type. Throws FileError, which names `source`.
struct ColumnName {
    QString name;
    std::optional<FieldType> type;
};
std::vector<int> standingFields(const QString &source, const TableInfo &table, const std::vector<ColumnName> &columns);

/// The names that the tables of an import have come under so far.
class ComeNames {
public:
    /// Throws FileError, which names `source`, where one of the same key came before: it would be replaced by this one.
    void take(const QString &source, const QString &table);

private:
    QHash<QString, QString> m_names; // by their keys
};

/// Where the tables of an import go: into a database, in memory, until its session saves it.
class TableIntake {
public:
    TableIntake(const Session &session, KnownTable standing, QStringList chosen)
        : m_session(session)
        , m_standing(standing)
        , m_chosen(std::move(chosen)) {}

    /// Whether the import wants a table of that name: all, unless some were chosen.
    bool wants(const QString &table);
    /// Throws where a chosen table did not come.
    void requireChosen(const QString &source) const;

    /// Makes a table ready for records of these fields, and gives the fields that they are stored in; throws FileError,
    /// also for what the component throws.
    std::vector<FieldInfo> begin(const QString &source, const QString &table, const std::vector<FieldInfo> &fields);
    void append(const Portion &portion);

private:
    std::vector<FieldInfo> beginTable(const QString &source, const QString &table,
                                      const std::vector<FieldInfo> &fields);

    const Session &m_session;
    KnownTable m_standing;
    QStringList m_chosen;
    QStringList m_come;
    ComeNames m_replaced;
    std::optional<RecordAppender> m_appender;
};

/// Records of a table on their way in, value by value; hands them on by portions.
class RecordIntake {
public:
    RecordIntake(TableIntake &intake, QString source, std::vector<FieldInfo> fields);

    /// The values of a record in their order; throws FileError for one that does not fit, with record and field.
    void number(double number);
    void text(QByteArrayView utf8);
    /// As CSV files have it.
    void written(QByteArrayView utf8);
    void endRecord();
    /// Behind the last record.
    void flush();

private:
    const FieldInfo &field() const { return m_fields[m_column]; }
    [[noreturn]] void refuse(QByteArrayView value, const QString &reason) const;

    TableIntake &m_intake;
    QString m_source;
    std::vector<FieldInfo> m_fields;
    std::vector<ColumnBuilder> m_builders;
    QString m_text;
    std::size_t m_column = 0;
    int m_count = 0; // of records that were not handed on
    qint64 m_records = 0;
};

} // namespace qir
