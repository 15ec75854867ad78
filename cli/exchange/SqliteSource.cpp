#include "cli/FileError.h"
#include "cli/Progress.h"
#include "cli/exchange/ExchangeSource.h"
#include "cli/exchange/SqlNames.h"
#include "cli/exchange/Sqlite.h"
#include "db/tables/FieldHeader.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// What stands in a column.
struct ColumnFigures {
    bool hasNumbers = false;
    bool hasFractions = false; ///< Numbers that are no whole ones to SQLite.
    bool hasTexts = false;
    bool hasBytes = false;
    qint64 least = 0; ///< Of the whole numbers and 0.
    qint64 most = 0;
    qsizetype longest = 0; ///< In bytes, of the texts.

    void see(const SqliteStatement &row, int column) {
        switch (row.kind(column)) {
        case SqliteStatement::Kind::Null:
            return;
        case SqliteStatement::Kind::Whole:
            hasNumbers = true;
            least = std::min(least, row.whole(column));
            most = std::max(most, row.whole(column));
            return;
        case SqliteStatement::Kind::Real:
            hasNumbers = hasFractions = true;
            return;
        case SqliteStatement::Kind::Text:
            hasTexts = true;
            longest = std::max(longest, row.text(column).size());
            return;
        case SqliteStatement::Kind::Bytes:
            hasBytes = true;
            return;
        }
    }
};

/// The field that a declared type names as an export declares it, nothing for any other.
std::optional<FieldInfo> declaredField(const QString &name, const QString &type) {
    QString header = u"["_s + type.toLower() + u']'; // SQLite tells some in capitals
    header.replace(u'(', u':').remove(u')');
    const auto found = std::ranges::find_if(fieldTypeNames, [&](const FieldTypeName &known) {
        return header == u"[%1]"_s.arg(QLatin1StringView(known.name)) ||
               (known.code == FieldType::Text && header.startsWith(u"[text:"_s));
    });
    const Result<FieldHeader> parsed = found == fieldTypeNames.end() ? failure({}) : parseFieldHeader(header);
    if (!parsed || !parsed->type || (parsed->type == FieldType::Text && !parsed->size))
        return std::nullopt;
    return FieldInfo{name, *parsed->type, parsed->size.value_or(0)};
}

bool fits(const FieldInfo &field, const ColumnFigures &figures) {
    if (field.type == FieldType::Text)
        return !figures.hasBytes; // texts that are too long are told
    if (figures.hasTexts || figures.hasBytes)
        return false;
    const auto within = [&](qint64 least, qint64 most) {
        return !figures.hasFractions && figures.least >= least && figures.most <= most;
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
        return figures.least >= -exact && figures.most <= exact;
    }
}

FieldInfo fieldOf(const QString &name, const QString &declared, const ColumnFigures &figures) {
    const std::optional<FieldInfo> said = declaredField(name, declared);
    if (said && fits(*said, figures))
        return *said;
    for (const FieldType type : {FieldType::Long, FieldType::Double})
        if (figures.hasNumbers && fits({name, type, 0}, figures))
            return {name, type, 0};
    constexpr qsizetype largest = 65535;
    return {name, FieldType::Text, static_cast<int>(std::clamp<qsizetype>(figures.longest, usualTextSize, largest))};
}

QString textOf(QByteArrayView utf8) {
    return QString::fromUtf8(utf8);
}

/// The fields that a table becomes, and how its records are asked for, in their order.
struct SqliteTable {
    std::vector<FieldInfo> fields;
    QByteArray records;
};

SqliteTable tableOf(const Sqlite &database, const QString &table) {
    std::vector<FieldInfo> fields;
    std::vector<QString> types;
    QByteArray names; // * brings other columns than a table tells of
    // Generated columns are among them, but not those that a virtual table keeps for itself, which are 1.
    SqliteStatement columns(database, "SELECT name, type, '\"' || replace(name, '\"', '\"\"') || '\"' FROM "
                                      "pragma_table_xinfo(" +
                                          sqlText(table.toUtf8()) + ") WHERE hidden <> 1 ORDER BY cid");
    while (columns.step()) {
        fields.push_back({textOf(columns.text(0)), FieldType::Text, 0});
        types.push_back(textOf(columns.text(1)));
        names += (names.isEmpty() ? "" : ", ") + columns.text(2).toByteArray(); // its bytes, be they UTF-8 or not
    }
    const QByteArray records = "SELECT " + names + " FROM " + sqlName(table) + " NOT INDEXED";
    std::vector<ColumnFigures> figures(fields.size());
    SqliteStatement row(database, records);
    while (row.step())
        for (std::size_t column = 0; column < fields.size(); ++column)
            figures[column].see(row, static_cast<int>(column));
    for (std::size_t column = 0; column < fields.size(); ++column)
        fields[column] = fieldOf(fields[column].name, types[column], figures[column]);
    return {fields, records};
}

void takeValue(RecordIntake &records, const SqliteStatement &row, int column, FieldType type) {
    if (type == FieldType::Text && row.kind(column) != SqliteStatement::Kind::Real) // SQLite would round it
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
    const SqliteTable table = tableOf(database, name);
    const std::vector<FieldInfo> fields = intake.begin(file, name, table.fields);
    RecordIntake records(intake, file + u": "_s + name, fields);
    Progress progress(file);
    SqliteStatement row(database, table.records);
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
