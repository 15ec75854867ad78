#include "cli/tables/CsvText.h"

#include "cli/tables/CellText.h"
#include "db/tables/FieldHeader.h"

#include <algorithm>
#include <array>

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

/// Characters that are written as they are wherever they stand; others need a closer look.
constexpr std::array<bool, 256> plainBytes = [] {
    std::array<bool, 256> plain{};
    for (unsigned code = 0x21; code < 0x7F; ++code)
        plain[code] = code != ',' && code != ';' && code != '"';
    return plain;
}();

bool isPlain(QByteArrayView text) {
    const auto plain = [](char byte) { return plainBytes[static_cast<unsigned char>(byte)]; };
    const auto plainInside = [&plain](char byte) { return plain(byte) || byte == ' '; };
    return !text.isEmpty() && plain(text.front()) && plain(text.back()) &&
           std::all_of(text.begin(), text.end(), plainInside);
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

void appendCsvRecords(QByteArray &out, const Portion &portion, int from, int to, Formulas formulas) {
    TextAppender writer(out);
    QByteArray quoted;
    for (int record = from; record < to; ++record) {
        bool isFirst = true;
        for (const ColumnBlock &column : portion.columns) {
            if (!isFirst)
                writer.put(',');
            isFirst = false;
            if (!column.isText()) {
                writer.number(column, record);
            } else if (const QByteArrayView text = column.textBytes(record);
                       formulas == Formulas::Plain && isPlain(text)) {
                writer.put(text);
            } else {
                quoted.resize(0);
                appendCsvText(quoted, column.text(record), formulas);
                writer.put(quoted);
            }
        }
        writer.put('\n');
    }
}

} // namespace qir
