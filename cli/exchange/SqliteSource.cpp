#include "cli/FileError.h"
#include "cli/Progress.h"
#include "cli/exchange/ExchangeSource.h"
#include "cli/exchange/SqlNames.h"
#include "cli/exchange/Sqlite.h"
#include "cli/tables/FieldHeader.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr int figuresOfColumn = 7; // of a column, as columnFigures() asks for them

/// What stands in a column.
struct ColumnFigures {
    qint64 whole;
    qint64 real;
    qint64 text;
    qint64 bytes;
    qint64 least; ///< Of the whole numbers.
    qint64 most;
    qint64 longest; ///< In characters, as texts.

    static ColumnFigures of(const SqliteStatement &row, int first) {
        const auto figure = [&](int index) { return row.whole(first + index); };
        return {figure(0), figure(1), figure(2), figure(3), figure(4), figure(5), figure(6)};
    }
};

QByteArray columnFigures(const QByteArray &column) {
    const auto count = [&](const char *kind) { return "sum(typeof(" + column + ") = '" + QByteArray(kind) + "'), "; };
    const auto extreme = [&](const char *which) {
        return QByteArray(which) + "(CASE WHEN typeof(" + column + ") = 'integer' THEN " + column + " END), ";
    };
    return count("integer") + count("real") + count("text") + count("blob") + extreme("min") + extreme("max") +
           "max(length(" + column + "))";
}

/// The field that a declared type names as an export declares it, nothing for any other.
std::optional<FieldInfo> declaredField(const QString &name, const QString &type) {
    QString header = u"["_s + type + u']';
    header.replace(u'(', u':').remove(u')');
    const auto found = std::ranges::find_if(fieldTypeNames, [&](const FieldTypeName &known) {
        return header == u"[%1]"_s.arg(QLatin1StringView(known.name)) ||
               (known.code == FieldType::Text && header.startsWith(u"[text:"_s));
    });
    const Result<FieldHeader> parsed = found == fieldTypeNames.end() ? failure({}) : parseFieldHeader(header);
    if (!parsed || !parsed->type)
        return std::nullopt;
    return FieldInfo{name, *parsed->type, parsed->size.value_or(0)};
}

bool fits(const FieldInfo &field, const ColumnFigures &figures) {
    if (field.type == FieldType::Text)
        return field.size >= figures.longest && figures.bytes == 0;
    const auto within = [&](qint64 least, qint64 most) {
        return figures.text == 0 && figures.bytes == 0 && figures.real == 0 &&
               (figures.whole == 0 || (figures.least >= least && figures.most <= most));
    };
    constexpr qint64 exact = qint64{1} << 53;
    switch (field.type) {
    case FieldType::Bool:
        return within(0, 1);
    case FieldType::Byte:
        return within(0, std::numeric_limits<quint8>::max());
    case FieldType::Int:
        return within(std::numeric_limits<qint16>::min(), std::numeric_limits<qint16>::max());
    case FieldType::Long:
        return within(std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max());
    default:
        return figures.text == 0 && figures.bytes == 0 &&
               (figures.whole == 0 || (figures.least >= -exact && figures.most <= exact));
    }
}

FieldInfo fieldOf(const QString &name, const QString &declared, const ColumnFigures &figures) {
    const std::optional<FieldInfo> said = declaredField(name, declared);
    if (said && fits(*said, figures))
        return *said;
    const bool isEmpty = figures.whole + figures.real + figures.text == 0;
    for (const FieldType type : {FieldType::Long, FieldType::Double})
        if (!isEmpty && fits({name, type, 0}, figures))
            return {name, type, 0};
    constexpr qint64 largest = 65535;
    return {name, FieldType::Text, static_cast<int>(std::clamp<qint64>(figures.longest, usualTextSize, largest))};
}

QString textOf(QByteArrayView utf8) {
    return QString::fromUtf8(utf8);
}

std::vector<FieldInfo> fieldsOf(const Sqlite &database, const QString &table) {
    std::vector<FieldInfo> fields;
    std::vector<QString> types;
    QByteArray asked;
    SqliteStatement columns(database, "SELECT name, type FROM pragma_table_info(" + sqlText(table.toUtf8()) + ')');
    while (columns.step()) {
        fields.push_back({textOf(columns.text(0)), FieldType::Text, 0});
        types.push_back(textOf(columns.text(1)));
        asked += (asked.isEmpty() ? "" : ", ") + columnFigures(sqlName(fields.back().name));
    }
    SqliteStatement row(database, "SELECT " + asked + " FROM " + sqlName(table));
    row.step();
    for (std::size_t column = 0; column < fields.size(); ++column)
        fields[column] = fieldOf(fields[column].name, types[column],
                                 ColumnFigures::of(row, figuresOfColumn * static_cast<int>(column)));
    return fields;
}

void takeValue(RecordIntake &records, const SqliteStatement &row, int column, FieldType type) {
    if (type == FieldType::Text)
        return records.text(row.text(column));
    switch (row.kind(column)) {
    case SqliteStatement::Kind::Whole:
    case SqliteStatement::Kind::Real:
        return records.number(row.real(column));
    case SqliteStatement::Kind::Null:
        return records.number(0);
    case SqliteStatement::Kind::Text:
    case SqliteStatement::Kind::Bytes:
        return records.text(row.text(column));
    }
}

void takeTable(const Sqlite &database, const QString &file, const QString &name, TableIntake &intake) {
    const std::vector<FieldInfo> fields = intake.begin(file, name, fieldsOf(database, name));
    RecordIntake records(intake, file + u": "_s + name, fields);
    Progress progress(file);
    SqliteStatement row(database, "SELECT * FROM " + sqlName(name) + " NOT INDEXED"); // in their order
    while (row.step()) {
        for (std::size_t column = 0; column < fields.size(); ++column)
            takeValue(records, row, static_cast<int>(column), fields[column].type);
        records.endRecord();
        progress.step();
    }
    records.flush();
}

} // namespace

void takeSqlite(const QString &file, TableIntake &intake) {
    try {
        Sqlite database(file, Sqlite::Mode::Read);
        database.run("BEGIN");
        std::vector<QString> names;
        {
            SqliteStatement tables(database, "SELECT name FROM sqlite_master WHERE type = 'table' AND "
                                             "name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY rowid");
            while (tables.step())
                names.push_back(textOf(tables.text(0)));
        }
        for (const QString &name : names)
            if (intake.wants(name))
                takeTable(database, file, name, intake);
        intake.requireChosen(file);
    } catch (const FileError &) {
        throw;
    } catch (const std::exception &error) {
        throw FileError(file, QString::fromUtf8(error.what()));
    }
}

} // namespace qir
