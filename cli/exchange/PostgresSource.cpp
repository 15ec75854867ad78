#include "cli/Progress.h"
#include "cli/exchange/ExchangeSource.h"
#include "cli/exchange/Postgres.h"
#include "cli/exchange/PostgresCopy.h"
#include "cli/exchange/SqlNames.h"
#include "db/tables/FieldHeader.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// A column, what its field becomes, and how it is asked for.
struct Column {
    FieldInfo field;
    QByteArray asked;
    bool isFlag;           ///< Comes as t or f.
    QByteArray holds = {}; ///< Whether the field holds a value, in SQL; "" where it holds all.
};

/// The records of a table that are taken.
struct Rows {
    QString schema;
    QString table;
    QString fleetFile; ///< Those of this file alone, where it is not "".

    QByteArray from() const { return " FROM " + sqlName(schema) + '.' + sqlName(table); }
    QByteArray fromWhere(const QByteArray &condition = "TRUE") const {
        return from() + " WHERE " +
               (fleetFile.isEmpty() ? QByteArray() : "_file = " + sqlText(fleetFile.toUtf8()) + " AND ") + condition;
    }
    QByteArray inOrder() const { return fleetFile.isEmpty() ? from() : fromWhere() + " ORDER BY _record"; }
};

QByteArray schemaIs(const QString &schema) {
    return "relnamespace = (SELECT oid FROM pg_namespace WHERE nspname = " + sqlText(schema.toUtf8()) + ')';
}

/// Whether a date of ours is the same point in time, for a type of PostgreSQL that has more of them.
QByteArray holdsTime(const QByteArray &name, bool hasClock) {
    const QByteArray years = name + " >= '0001-01-01' AND " + name + " < '10000-01-01'";
    return hasClock ? years + " AND date_trunc('second', " + name + ") = " + name : years;
}

/// What PostgreSQL's own types become; the size of a text is seen later where it is asked for as one.
Column columnOf(const QString &name, const QString &type, const QString &comment) {
    const QByteArray asked = sqlName(name);
    const bool isFlag = type == u"boolean"_s;
    const bool isNumber =
        isFlag ||
        QStringList{u"smallint"_s, u"integer"_s, u"bigint"_s, u"real"_s, u"double precision"_s}.contains(type);
    const bool isText = type == u"text"_s || type.startsWith(u"character"_s);
    const QByteArray holdsWhole =
        type == u"bigint"_s ? "abs(" + asked + "::numeric) <= 9007199254740992" : QByteArray();
    const std::optional<FieldInfo> told = toldField(name, comment);
    if (told && (told->type == FieldType::Text ? isText : isNumber))
        return {*told, asked, isFlag, holdsWhole};
    if (isFlag)
        return {{name, FieldType::Bool, 0}, asked, true};
    if (type == u"smallint"_s)
        return {{name, FieldType::Int, 0}, asked, false};
    if (type == u"integer"_s)
        return {{name, FieldType::Long, 0}, asked, false};
    if (isNumber)
        return {{name, FieldType::Double, 0}, asked, false, holdsWhole};
    const bool isArray = type.endsWith(u"[]"_s);
    if (type.startsWith(u"numeric"_s) && !isArray) // what a double cannot be near would be an error
        return {{name, FieldType::Double, 0},
                asked,
                false,
                "CASE WHEN " + asked + " = 0 OR abs(" + asked + ") BETWEEN 1e-307 AND 1e308 THEN " + asked +
                    "::double precision::text::numeric = " + asked + " ELSE FALSE END"};
    if (type == u"date"_s)
        return {{name, FieldType::Date, 0}, "to_char(" + asked + ", 'YYYY-MM-DD')", false, holdsTime(asked, false)};
    if (type.startsWith(u"timestamp"_s) && !isArray)
        return {{name, FieldType::Date, 0},
                "to_char(" + asked + ", 'YYYY-MM-DD\"T\"HH24:MI:SS')",
                false,
                holdsTime(asked, true)};
    return {{name, FieldType::Text, 0}, asked + "::text", false};
}

/// A field of which a file has nothing in tables that many files share is one of the others.
bool isOfFile(Postgres &database, const Rows &rows, const QString &name) {
    if (rows.fleetFile.isEmpty())
        return true;
    if (name == u"_file"_s || name == u"_record"_s)
        return false;
    return !database.rows("SELECT 1" + rows.fromWhere(sqlName(name) + " IS NOT NULL") + " LIMIT 1").empty();
}

std::vector<Column> columnsOf(Postgres &database, const Rows &rows) {
    std::vector<Column> columns;
    for (const QStringList &row :
         database.rows("SELECT attname, format_type(atttypid, atttypmod), col_description(attrelid, attnum) FROM "
                       "pg_attribute WHERE attrelid = " +
                       sqlText(sqlName(rows.schema) + '.' + sqlName(rows.table)) +
                       "::regclass AND attnum > 0 AND NOT attisdropped ORDER BY attnum"))
        if (isOfFile(database, rows, row[0]))
            columns.push_back(columnOf(row[0], row[1], row[2]));
    constexpr int largestSize = 65535;
    const auto longest = [&](const QByteArray &text) {
        return database.rows("SELECT max(char_length(" + text + "))" + rows.fromWhere())[0][0].toInt();
    };
    for (Column &column : columns) {
        const QByteArray name = sqlName(column.field.name);
        if (!column.holds.isEmpty() &&
            database.rows("SELECT 1" + rows.fromWhere(name + " IS NOT NULL AND NOT (" + column.holds + ") LIMIT 1"))
                    .size() == 1)
            column = {{column.field.name, FieldType::Text, 0}, name + "::text", false};
        if (column.field.type != FieldType::Text)
            continue;
        if (column.asked.endsWith("::text"))
            column.field.size = std::clamp(longest(column.asked), usualTextSize, largestSize);
        else if (!rows.fleetFile.isEmpty()) // what the comment tells is the size of the file that came first
            column.field.size = std::clamp(longest(column.asked), column.field.size, largestSize);
    }
    return columns;
}

void takeLine(QByteArrayView line, const std::vector<Column> &columns, const std::vector<FieldInfo> &fields,
              RecordIntake &records) {
    QByteArray storage;
    qsizetype at = 0;
    for (std::size_t index = 0; index < columns.size(); ++index) {
        const std::optional<QByteArrayView> value = copyValue(line, at, storage);
        if (!value)
            records.written({}); // nothing, or 0
        else if (columns[index].isFlag && fields[index].type != FieldType::Text)
            records.number(*value == "t" ? 1 : 0);
        else
            records.written(*value);
    }
    records.endRecord();
}

void takeTable(Postgres &database, const Rows &rows, TableIntake &intake) {
    const std::vector<Column> columns = columnsOf(database, rows);
    std::vector<FieldInfo> fields;
    QByteArray asked;
    for (const Column &column : columns) {
        fields.push_back(column.field);
        asked += (asked.isEmpty() ? "" : ", ") + column.asked;
    }
    const QString source = u"PostgreSQL: "_s + rows.table;
    fields = intake.begin(source, rows.table, fields);
    RecordIntake records(intake, source, fields);
    Progress progress(source);
    database.beginCopyOut("COPY (SELECT " + asked + rows.inOrder() + ") TO STDOUT");
    QByteArray line;
    while (database.copyOut(line)) {
        takeLine(line, columns, fields, records);
        progress.step();
    }
    records.flush();
}

/// Of tables that many files share those in which the file has records.
bool hasRecords(Postgres &database, const Rows &rows) {
    return rows.fleetFile.isEmpty() || !database.rows("SELECT 1" + rows.fromWhere() + " LIMIT 1").empty();
}

/// The tables of a schema, in the order in which they were made; those of a fleet have the columns that tell the file.
std::vector<QString> tablesOf(Postgres &database, const QString &schema, bool ofFleet) {
    const QByteArray isFleets = " AND 2 = (SELECT count(*) FROM pg_attribute WHERE attrelid = pg_class.oid AND attname "
                                "IN ('_file', '_record') AND NOT attisdropped)";
    std::vector<QString> tables;
    // The records of a partition come in the table that it is one of.
    for (const QStringList &row :
         database.rows("SELECT relname FROM pg_class WHERE relkind IN ('r', 'p', 'v', 'm', 'f') AND NOT "
                       "relispartition AND " +
                       schemaIs(schema) + (ofFleet ? isFleets : QByteArray()) + " ORDER BY oid"))
        tables.push_back(row[0]);
    return tables;
}

} // namespace

void takePostgres(const QString &connection, const QString &schema, const QString &fleetFile, TableIntake &intake) {
    namedPostgres([&] {
        // Every table as it was at the same time, and its records in the order in which they were written.
        Postgres database(connection, "BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY; SET LOCAL "
                                      "synchronize_seqscans = off; SET LOCAL extra_float_digits = 3");
        const std::vector<QString> tables = tablesOf(database, schema, !fleetFile.isEmpty());
        if (tables.empty())
            throw std::runtime_error(u"the schema \"%1\" has no table"_s.arg(schema).toStdString());
        int taken = 0;
        for (const QString &table : tables)
            if (const Rows rows{schema, table, fleetFile}; intake.wants(table) && hasRecords(database, rows)) {
                takeTable(database, rows, intake);
                ++taken;
            }
        if (!fleetFile.isEmpty() && taken == 0)
            throw std::runtime_error(
                u"the schema \"%1\" has no record of \"%2\""_s.arg(schema, fleetFile).toStdString());
        intake.requireChosen(u"PostgreSQL"_s);
    });
}

} // namespace qir
