#include "cli/FileError.h"
#include "cli/exchange/ExchangeTarget.h"
#include "cli/exchange/SqlNames.h"
#include "cli/tables/CellText.h"
#include "cli/tables/JsonText.h"

#include <cmath>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

/// A file that is written from its begin to its end, or the standard output.
class TextTarget : public ExchangeTarget {
public:
    TextTarget(const QString &file, const ExportRules &rules) {
        if (file != u"-"_s)
            m_content.emplace(file, rules);
    }

protected:
    void write(QByteArrayView text) {
        if (m_content)
            m_content->write(text);
        else
            print(text);
    }
    void writeRecords(const Portion &portion, const AppendRecords &append) {
        m_texts.make(portion, append, [this](QByteArrayView text) { write(text); });
    }
    void close() {
        if (m_content)
            m_content->finish();
    }

private:
    std::optional<NewContent> m_content;
    PortionTexts m_texts;
};

class JsonLines : public TextTarget {
public:
    using TextTarget::TextTarget;

    void begin(const TableInfo &table) override {
        QByteArray line;
        appendJsonTable(line, table);
        write(line);
    }
    void append(const Portion &portion) override { writeRecords(portion, appendJsonRecords); }
    void finish() override { close(); }
};

/// What the records of a table become, a row of a statement each.
void appendSqlRow(TextAppender &writer, const Portion &portion, int record) {
    QByteArray storage;
    QByteArrayView separator = "(";
    for (const ColumnBlock &column : portion.columns) {
        writer.put(separator);
        separator = ", ";
        if (column.isText())
            writer.put(sqlText(rightText(column, record, storage)));
        else if (column.type() == ColumnType::Bool)
            writer.put(column.number(record) == 0 ? QByteArrayView("FALSE") : "TRUE");
        else if (const double number = column.number(record); number == 0 && std::signbit(number))
            writer.put("'-0'"); // a number without quotes has no such sign
        else
            writer.number(column, record);
    }
    writer.put(')');
}

class SqlText : public TextTarget {
public:
    using TextTarget::TextTarget;

    void check(const TableInfo &table) const override { requireSqlNames(table, Engine::Both); }
    void begin(const TableInfo &table) override {
        beginAll();
        QByteArray text = "\nCREATE TABLE " + sqlName(table.name) + " (";
        const char *separator = "\n  ";
        for (const FieldInfo &field : table.fields) {
            text += separator + sqlName(field.name) + ' ' + sqlType(field);
            separator = ",\n  ";
        }
        write(text + "\n);\n");
        m_table = table;
    }
    void append(const Portion &portion) override {
        requireNoNul(m_table, portion);
        writeRecords(portion, [this](QByteArray &out, const Portion &records, int from, int to) {
            constexpr int rows = 128; // of a statement
            for (int first = from; first < to; first += rows) {
                out += "INSERT INTO " + sqlName(m_table.name) + " VALUES\n";
                TextAppender writer(out);
                for (int record = first; record < std::min(first + rows, to); ++record) {
                    writer.put(record == first ? QByteArrayView("") : ",\n");
                    appendSqlRow(writer, records, record);
                }
                writer.put(";\n");
            }
        });
    }
    void finish() override {
        beginAll();
        write("\nCOMMIT;\n");
        close();
    }

private:
    void beginAll() {
        if (!std::exchange(m_hasBegun, true))
            write("BEGIN;\n");
    }

    TableInfo m_table;
    bool m_hasBegun = false;
};

} // namespace

std::unique_ptr<ExchangeTarget> jsonLines(const QString &file, const ExportRules &rules) {
    return std::make_unique<JsonLines>(file, rules);
}

std::unique_ptr<ExchangeTarget> sqlText(const QString &file, const ExportRules &rules) {
    return std::make_unique<SqlText>(file, rules);
}

} // namespace qir
