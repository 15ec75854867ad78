#include "cli/tables/CsvText.h"

#include "cli/tables/FieldHeader.h"

#include <algorithm>

namespace qir {

namespace {

bool needsQuotes(QStringView value) {
    if (value.isEmpty() || value.front().isSpace() || value.back().isSpace())
        return true;
    if (value.front() == QChar::ByteOrderMark) // at the start of a file it would say nothing
        return true;
    // Semicolons and tabs too: a header line may seem to be separated by them.
    static constexpr QStringView separators = u",;\t\"\n\r";
    return std::ranges::any_of(value, [](QChar unit) { return separators.contains(unit); });
}

/// Whether a spreadsheet would compute the text, some of them without the blanks in front of it.
bool isFormula(QStringView text) {
    constexpr QStringView signs = u"=+-@\uFF1D\uFF0B\uFF0D\uFF20";
    const auto first = std::ranges::find_if_not(text, [](QChar unit) { return unit.isSpace(); });
    return first != text.end() && signs.contains(*first);
}

} // namespace

void appendCsvValue(QByteArray &out, QStringView value) {
    if (!needsQuotes(value)) {
        out += value.toUtf8();
        return;
    }
    out += '"';
    out += value.toUtf8().replace('"', "\"\"");
    out += '"';
}

void appendCsvText(QByteArray &out, const QString &text, Formulas formulas) {
    appendCsvValue(out, formulas == Formulas::Escaped && isFormula(text) ? u'\'' + text : text);
}

void appendCsvHeader(QByteArray &out, const TableInfo &table, Formulas formulas) {
    bool isFirst = true;
    for (const FieldInfo &field : table.fields) {
        if (!isFirst)
            out += ',';
        isFirst = false;
        appendCsvText(out, fieldHeaderText(field), formulas);
    }
    out += '\n';
}

void appendCsvRecord(QByteArray &out, const TableInfo &table, const QStringList &values, Formulas formulas) {
    qsizetype k = 0;
    for (const FieldInfo &field : table.fields) {
        if (k > 0)
            out += ',';
        ++k;
        if (field.type == FieldType::Text)
            appendCsvText(out, values.at(k), formulas);
        else
            appendCsvValue(out, values.at(k));
    }
    out += '\n';
}

} // namespace qir
