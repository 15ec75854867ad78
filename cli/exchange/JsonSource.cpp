#include "cli/FileError.h"
#include "cli/Progress.h"
#include "cli/exchange/ExchangeSource.h"
#include "cli/exchange/JsonRecord.h"
#include "db/tables/FieldHeader.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <limits>
#include <optional>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

struct JsonTable {
    QString name;
    std::vector<FieldInfo> fields;
    int records;
};

int wholeNumber(const QJsonValue &value, int most) {
    const double number = value.toDouble(-1);
    if (number < 0 || number > most || number != static_cast<int>(number))
        refuse(u"a whole number of 0 to %1 is missing"_s.arg(most));
    return static_cast<int>(number);
}

FieldInfo fieldOf(const QJsonObject &field) {
    constexpr int largestSize = 65535;
    const QString type = field.value("type"_L1).toString();
    const auto found = std::ranges::find_if(
        fieldTypeNames, [&](const FieldTypeName &known) { return type == QLatin1StringView(known.name); });
    if (found == fieldTypeNames.end())
        refuse(u"\"%1\" is no type"_s.arg(type));
    if (!field.value("name"_L1).isString())
        refuse(u"a field has no name"_s);
    const int size = found->code == FieldType::Text ? wholeNumber(field.value("size"_L1), largestSize) : 0;
    return {field.value("name"_L1).toString(), found->code, size};
}

JsonTable tableOf(const QByteArray &line) {
    QJsonParseError error{};
    const QJsonObject table = QJsonDocument::fromJson(line, &error).object();
    if (error.error != QJsonParseError::NoError)
        refuse(u"it is no JSON: %1"_s.arg(error.errorString()));
    if (!table.value("table"_L1).isString() || !table.value("fields"_L1).isArray())
        refuse(u"a line {\"table\": .., \"fields\": [..], \"records\": N} is missing"_s);
    JsonTable found{table.value("table"_L1).toString(), {}, 0};
    for (const QJsonValue field : table.value("fields"_L1).toArray())
        found.fields.push_back(fieldOf(field.toObject()));
    found.records = wholeNumber(table.value("records"_L1), std::numeric_limits<int>::max());
    return found;
}

/// The lines of a file, or of the standard input, one at a time.
class Lines {
public:
    explicit Lines(const QString &name)
        : m_name(name)
        , m_file(name) {
        const bool isOpen = name == u"-"_s ? m_file.open(stdin, QIODevice::ReadOnly) : m_file.open(QIODevice::ReadOnly);
        if (!isOpen)
            throw FileError(m_name, m_file.errorString());
    }

    /// False behind the last one; lines of blanks are none.
    bool next() {
        do {
            m_line = m_file.readLine();
            if (m_line.isEmpty()) {
                if (m_file.error() != QFileDevice::NoError)
                    throw FileError(m_name, m_file.errorString());
                return false;
            }
            ++m_number;
            m_line.chop(m_line.endsWith('\n') ? 1 : 0);
        } while (m_line.trimmed().isEmpty());
        return true;
    }
    const QByteArray &line() const { return m_line; }
    qint64 number() const { return m_number; }

private:
    QString m_name;
    QFile m_file;
    QByteArray m_line;
    qint64 m_number = 0;
};

void takeRecords(Lines &lines, const JsonTable &table, const QString &file, TableIntake *intake) {
    std::optional<RecordIntake> records;
    if (intake != nullptr)
        records.emplace(*intake, file + u": "_s + table.name, intake->begin(file, table.name, table.fields));
    Progress progress(file, table.records);
    JsonRecord record;
    for (int taken = 0; taken < table.records; ++taken) {
        if (!lines.next())
            refuse(u"the file ends before record %1 of the table \"%2\""_s.arg(taken + 1).arg(table.name));
        record.read(lines.line());
        if (record.size() != table.fields.size())
            refuse(u"a record of %1 values is missing"_s.arg(table.fields.size()));
        for (std::size_t column = 0; records && column < record.size(); ++column)
            record.give(column, table.fields[column].type, *records);
        if (records)
            records->endRecord();
        progress.step();
    }
    if (records)
        records->flush();
}

} // namespace

void takeJsonLines(const QString &file, TableIntake &intake) {
    Lines lines(file);
    try {
        while (lines.next()) {
            const JsonTable table = tableOf(lines.line());
            takeRecords(lines, table, file, intake.wants(table.name) ? &intake : nullptr);
        }
        intake.requireChosen(file);
    } catch (const FileError &) {
        throw;
    } catch (const std::exception &error) {
        throw FileError(file, u"line %1: %2"_s.arg(QString::number(lines.number()), QString::fromUtf8(error.what())));
    }
}

} // namespace qir
