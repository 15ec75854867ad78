#include "cli/FileError.h"
#include "cli/exchange/ExchangeTarget.h"
#include "cli/exchange/Postgres.h"
#include "cli/exchange/PostgresCopy.h"
#include "cli/exchange/SqlNames.h"
#include "db/tables/FieldHeader.h"

#include <algorithm>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// Everything is one transaction.
class PostgresTables : public ExchangeTarget {
public:
    explicit PostgresTables(PostgresChoice choice)
        : m_choice(std::move(choice)) {
        namedPostgres([&] {
            m_database = std::make_unique<Postgres>(m_choice.connection, "BEGIN");
            // One after the other, so that two of them do not make the same thing.
            m_database->run("SELECT pg_advisory_xact_lock(hashtext(" + sqlText(m_choice.schema.toUtf8()) + "))");
            // Who may write into a schema may not always make one.
            if (m_database->rows("SELECT 1 FROM pg_namespace WHERE nspname = " + sqlText(m_choice.schema.toUtf8()))
                    .empty())
                m_database->run("CREATE SCHEMA " + sqlName(m_choice.schema));
        });
    }

    void check(const TableInfo &table) const override { requireSqlNames(table, Engine::Postgres); }
    void begin(const TableInfo &table) override {
        m_table = table;
        namedPostgres([&] { beginTable(); });
    }
    void append(const Portion &portion) override {
        namedPostgres([&] {
            requireNoNul(m_table, portion);
            m_texts.make(portion, appendRows(), [this](QByteArrayView text) { m_database->copyIn(text); });
        });
    }
    void end() override {
        namedPostgres([&] { m_database->endCopyIn(); });
    }
    void finish() override {
        namedPostgres([&] { m_database->commit(); });
    }

protected:
    virtual void beginTable() {
        const QByteArray name = tableName(m_table.name);
        if (m_choice.replace)
            m_database->run("DROP TABLE IF EXISTS " + name);
        else if (exists(m_table.name))
            throw std::runtime_error(
                u"the table \"%1\" stands there already; use --replace to replace it"_s.arg(m_table.name)
                    .toStdString());
        QByteArray columns;
        for (const FieldInfo &field : m_table.fields)
            columns += (columns.isEmpty() ? "" : ", ") + sqlName(field.name) + ' ' + sqlType(field);
        m_database->run("CREATE TABLE " + name + " (" + columns + ')');
        comment(m_table.fields);
        m_database->beginCopyIn("COPY " + name + " FROM STDIN");
    }
    virtual AppendRecords appendRows() const {
        return [](QByteArray &out, const Portion &records, int from, int to) {
            appendCopyRecords(out, records, from, to, CopyNumbers::None);
        };
    }

    QByteArray tableName(const QString &table) const { return sqlName(m_choice.schema) + '.' + sqlName(table); }
    bool exists(const QString &table) {
        return !m_database
                    ->rows("SELECT 1 FROM pg_class WHERE relnamespace = " + sqlText(sqlName(m_choice.schema)) +
                           "::regnamespace AND relname = " + sqlText(table.toUtf8()))
                    .empty();
    }
    void comment(const std::vector<FieldInfo> &fields) {
        for (const FieldInfo &field : fields) {
            const QString type = fieldHeaderText({{}, field.type, field.size}); // [text:20]
            m_database->run("COMMENT ON COLUMN " + tableName(m_table.name) + '.' + sqlName(field.name) + " IS " +
                            sqlText(type.sliced(1).chopped(1).toUtf8()));
        }
    }

    PostgresChoice m_choice;
    std::unique_ptr<Postgres> m_database;
    TableInfo m_table{{}, {}, 0};
    PortionTexts m_texts;
};

/// Tables that many files share: a row tells its file and the number of its record there.
class FleetTables : public PostgresTables {
public:
    using PostgresTables::PostgresTables;

    void end() override {
        PostgresTables::end();
        namedPostgres([&] { merge(); });
    }
    void finish() override {
        if (m_choice.isWhole)
            namedPostgres([&] { removeOthers(); });
        PostgresTables::finish();
    }

protected:
    void beginTable() override {
        const QByteArray name = tableName(m_table.name);
        if (!exists(m_table.name))
            m_database->run("CREATE TABLE " + name +
                            " (_file text NOT NULL, _record integer NOT NULL, PRIMARY KEY (_file, _record))");
        std::vector<FieldInfo> added;
        for (const FieldInfo &field : m_table.fields)
            if (isNew(field)) {
                m_database->run("ALTER TABLE " + name + " ADD COLUMN " + sqlName(field.name) + ' ' + columnType(field));
                added.push_back(field);
            }
        comment(added);
        m_database->run("DROP TABLE IF EXISTS pg_temp._qirdb");
        m_database->run("CREATE TEMPORARY TABLE _qirdb ON COMMIT DROP AS SELECT _record" + columns("") + " FROM " +
                        name + " WHERE FALSE");
        m_database->beginCopyIn("COPY pg_temp._qirdb FROM STDIN");
    }
    AppendRecords appendRows() const override {
        return [](QByteArray &out, const Portion &records, int from, int to) {
            appendCopyRecords(out, records, from, to, CopyNumbers::InFront);
        };
    }

private:
    static QByteArray columnType(const FieldInfo &field) {
        return field.type == FieldType::Text ? QByteArray("text") : sqlType(field); // each file has its own size
    }
    /// False where the column is there; throws where it is another one.
    bool isNew(const FieldInfo &field) {
        if (field.name == u"_file"_s || field.name == u"_record"_s)
            throw std::runtime_error(
                u"the field \"%1\" has the name of a fleet's own column"_s.arg(field.name).toStdString());
        const auto found =
            m_database->rows("SELECT format_type(atttypid, atttypmod) FROM pg_attribute WHERE attrelid = " +
                             sqlText(tableName(m_table.name)) +
                             "::regclass AND attname = " + sqlText(field.name.toUtf8()) + " AND NOT attisdropped");
        if (found.empty())
            return true;
        if (found[0][0].toUtf8() != columnType(field))
            throw std::runtime_error(u"the column \"%1\" of \"%2\" is %3, not %4"_s
                                         .arg(field.name, m_table.name, found[0][0], typeName(field.type))
                                         .toStdString());
        return false;
    }
    QByteArray columns(const QByteArray &before) const {
        QByteArray names;
        for (const FieldInfo &field : m_table.fields)
            names += ", " + before + sqlName(field.name);
        return names;
    }
    /// Those of fields that the file's table does not have. Columns that nobody exported have no type of ours.
    QStringList otherColumns() {
        QStringList names;
        for (const QStringList &row : m_database->rows(
                 "SELECT attname, col_description(attrelid, attnum) FROM pg_attribute WHERE attrelid = " +
                 sqlText(tableName(m_table.name)) + "::regclass AND attnum > 0 AND NOT attisdropped ORDER BY attnum"))
            if (toldField(row[0], row[1]) &&
                std::ranges::find(m_table.fields, row[0], &FieldInfo::name) == m_table.fields.end())
                names += row[0];
        return names;
    }
    QByteArray file() const { return sqlText(m_choice.fleetFile.toUtf8()); }

    /// The copied records become those of the file.
    void merge() {
        const QByteArray name = tableName(m_table.name);
        QByteArray changes;
        for (const FieldInfo &field : m_table.fields)
            changes += (changes.isEmpty() ? "" : ", ") + sqlName(field.name) + " = EXCLUDED." + sqlName(field.name);
        for (const QString &column : otherColumns())
            changes += (changes.isEmpty() ? "" : ", ") + sqlName(column) + " = NULL";
        m_database->run("INSERT INTO " + name + " (_file, _record" + columns("") + ") SELECT " + file() + ", _record" +
                        columns("") + " FROM pg_temp._qirdb ON CONFLICT (_file, _record) DO " +
                        (changes.isEmpty() ? QByteArray("NOTHING") : "UPDATE SET " + changes));
        m_database->run("DELETE FROM " + name + " WHERE _file = " + file() + " AND _record > " +
                        QByteArray::number(m_table.records));
        m_come += m_table.name;
    }
    /// Records of the file in tables that it has no more.
    void removeOthers() {
        const auto tables = m_database->rows(
            "SELECT relname FROM pg_class c WHERE relkind = 'r' AND relnamespace = " +
            sqlText(sqlName(m_choice.schema)) +
            "::regnamespace AND 2 = (SELECT count(*) FROM pg_attribute WHERE attrelid = c.oid AND attname IN ('_file', "
            "'_record'))");
        for (const QStringList &table : tables)
            if (!m_come.contains(table[0]))
                m_database->run("DELETE FROM " + tableName(table[0]) + " WHERE _file = " + file());
    }

    QStringList m_come;
};

} // namespace

std::unique_ptr<ExchangeTarget> postgresTables(const PostgresChoice &choice) {
    if (choice.fleetFile.isEmpty())
        return std::make_unique<PostgresTables>(choice);
    return std::make_unique<FleetTables>(choice);
}

} // namespace qir
