#include "cli/tables/ColumnValues.h"
#include "cli/tables/CsvText.h"
#include "fuzz/Require.h"

using namespace qir;

namespace {

/// As an import takes it: no value of a field that was guessed may be refused, and texts come through unchanged.
void importColumn(const CsvTable &table, std::size_t column, bool typed) {
    const Result<FieldInfo> field = columnField(table, column);
    if (!field) {
        fuzz::require(!field.error().text.isEmpty(), "a refusal has a reason");
        return;
    }
    QString text;
    for (std::size_t record = 0; record < table.records(); ++record) {
        table.readValue(record, column, text);
        const Result<QVariant> value = importedValue(*field, text);
        fuzz::require(typed || value.has_value(), "a guessed field takes all its values");
        if (!value)
            fuzz::require(!value.error().text.isEmpty(), "a refusal has a reason");
        else if (field->type == FieldType::Text)
            fuzz::require(value->toString() == text, "a text comes through unchanged");
        else
            fuzz::require(value->typeId() == QMetaType::Double, "any other value is a number");
    }
}

QByteArray writtenAgain(const CsvTable &table) {
    QByteArray out;
    const auto columns = static_cast<std::size_t>(table.header().size());
    for (std::size_t column = 0; column < columns; ++column) {
        out += column == 0 ? "" : ",";
        appendCsvValue(out, table.header().at(static_cast<qsizetype>(column)));
    }
    out += '\n';
    for (std::size_t record = 0; record < table.records(); ++record) {
        for (std::size_t column = 0; column < columns; ++column) {
            out += column == 0 ? "" : ",";
            appendCsvValue(out, table.value(record, column));
        }
        out += '\n';
    }
    return out;
}

} // namespace

/// CSV files on their way into a table.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const Result<CsvTable> table =
        CsvTable::read(QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    if (!table) {
        fuzz::require(!table.error().text.isEmpty(), "a refusal has a reason");
        return 0;
    }
    const auto columns = static_cast<std::size_t>(table->header().size());
    for (std::size_t column = 0; column < columns; ++column)
        importColumn(*table, column, table->header().at(static_cast<qsizetype>(column)).endsWith(u']'));

    const Result<CsvTable> again = CsvTable::read(writtenAgain(*table));
    fuzz::require(again.has_value(), "what is written again can be read");
    fuzz::require(again->header() == table->header() && again->records() == table->records(), "the same shape");
    for (std::size_t record = 0; record < table->records(); ++record)
        for (std::size_t column = 0; column < columns; ++column)
            fuzz::require(again->value(record, column) == table->value(record, column), "the same values");
    return 0;
}
