#include "cli/CsvText.h"

#include "cli/FieldHeader.h"

#include <algorithm>

namespace qir {

namespace {

bool needsQuotes(QStringView value) {
    if (value.isEmpty() || value.front().isSpace() || value.back().isSpace())
        return true;
    if (value.front() == QChar::ByteOrderMark) // at the start of a file it would say nothing
        return true;
    return std::ranges::any_of(value, [](QChar c) { return c == u',' || c == u'"' || c == u'\n' || c == u'\r'; });
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

void appendCsvHeader(QByteArray &out, const TableInfo &table) {
    bool isFirst = true;
    for (const FieldInfo &field : table.fields) {
        if (!isFirst)
            out += ',';
        isFirst = false;
        appendCsvValue(out, fieldHeaderText(field));
    }
    out += '\n';
}

void appendCsvRecord(QByteArray &out, const TableInfo &table, const QStringList &values) {
    const auto fields = static_cast<qsizetype>(table.fields.size());
    for (qsizetype k = 1; k <= fields; ++k) {
        if (k > 1)
            out += ',';
        appendCsvValue(out, values.at(k));
    }
    out += '\n';
}

} // namespace qir
