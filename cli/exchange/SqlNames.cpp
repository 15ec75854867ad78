#include "cli/exchange/SqlNames.h"

#include "cli/FileError.h"
#include "db/tables/FieldHeader.h"

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

void requireName(const QString &name, Engine engine) {
    constexpr qsizetype longest = 63; // of PostgreSQL, which cuts what is longer
    if (name.contains(QChar::Null))
        refuse(u"the name \"%1\" has a NUL character, which SQL has not"_s.arg(name));
    if (engine == Engine::Both && name.contains(u"\r\n"_s))
        refuse(u"the name \"%1\" has a line end of two characters, which readers of SQL change"_s.arg(name));
    if (engine != Engine::Sqlite && name.toUtf8().size() > longest)
        refuse(u"the name \"%1\" is longer than the %2 bytes that PostgreSQL takes"_s.arg(name).arg(longest));
}

/// What a text does not hold. None of it begins within another one, nor within it and what stands beside it.
QByteArray unusedMark(QByteArrayView text) {
    for (int number = 0;; ++number)
        if (QByteArray mark = '<' + QByteArray::number(number) + '>'; !text.contains(mark))
            return mark;
}

} // namespace

QByteArray sqlName(QStringView name) {
    return '"' + name.toUtf8().replace('"', "\"\"") + '"';
}

QByteArray sqlText(QByteArrayView utf8) {
    QByteArray text = utf8.toByteArray();
    text.replace('\'', "''");
    QByteArray before;
    QByteArray behind;
    const auto putLater = [&](QByteArrayView piece, const char *sql) {
        if (!text.contains(piece))
            return;
        const QByteArray mark = unusedMark(text);
        text.replace(piece, mark);
        before += "replace(";
        behind += ", '" + mark + "', " + sql + ')';
    };
    putLater("\\", R"(substr('\\', 1, 1))"); // one, whether or not a backslash stands for itself
    putLater("\r\n", "'\r' || '\n'");
    return before + '\'' + text + '\'' + behind;
}

QByteArray sqlType(const FieldInfo &field) {
    switch (field.type) {
    case FieldType::Bool:
        return "boolean";
    case FieldType::Byte:
    case FieldType::Int:
        return "smallint";
    case FieldType::Long:
        return "integer";
    case FieldType::Double:
    case FieldType::Date:
        return "double precision";
    case FieldType::Text:
        break;
    }
    return field.size == 0 ? QByteArray("text") : "varchar(" + QByteArray::number(field.size) + ')';
}

std::optional<FieldInfo> toldField(const QString &name, const QString &comment) {
    const Result<FieldHeader> told = parseFieldHeader(u'[' + comment + u']');
    if (!told || !told->type || (told->type == FieldType::Text && !told->size))
        return std::nullopt;
    return FieldInfo{name, *told->type, told->size.value_or(0)};
}

void requireSqlNames(const TableInfo &table, Engine engine) {
    requireName(table.name, engine);
    if (engine == Engine::Both && table.name.startsWith(u"sqlite_"_s, Qt::CaseInsensitive))
        refuse(u"the name \"%1\" begins as those that SQLite keeps for itself"_s.arg(table.name));
    for (const FieldInfo &field : table.fields)
        requireName(field.name, engine);
    if (engine != Engine::Postgres && table.fields.empty())
        refuse(u"the table \"%1\" has no field, and SQLite no such table; choose others by --table"_s.arg(table.name));
}

void requireNoNul(const TableInfo &table, const Portion &portion) {
    for (std::size_t column = 0; column < portion.columns.size(); ++column) {
        const ColumnBlock &texts = portion.columns[column];
        if (!texts.isText() || !texts.bytes().contains('\0'))
            continue;
        for (int record = 0; record < portion.count; ++record)
            if (texts.textBytes(record).contains('\0'))
                refuse(u"table \"%1\", record %2, field \"%3\": the text has a NUL character, which SQL has not"_s.arg(
                    table.name, QString::number(portion.first + record), table.fields[column].name));
    }
}

} // namespace qir
