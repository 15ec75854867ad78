#include "cli/tables/JsonText.h"

#include "base/LeadingNumber.h"
#include "base/NumberText.h"
#include "cli/tables/CellText.h"
#include "db/tables/FieldHeader.h"

#include <algorithm>
#include <cstdio>

namespace qir {

namespace {

// By value, so that whatever text a component has for it, JSON readers get a number.
void appendNumber(QByteArray &out, QStringView text) {
    char digits[numberTextCapacity];
    out.append(digits, formatNumber(digits, leadingNumber(text)) - digits);
}

// Those above 127 too: terminals act on them.
void appendControl(QByteArray &out, unsigned char code) {
    switch (code) {
    case '\n':
        out += "\\n";
        break;
    case '\r':
        out += "\\r";
        break;
    case '\t':
        out += "\\t";
        break;
    default:
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(code));
        out += escape;
    }
}

/// As it is written between the quotes.
bool isPlain(QByteArrayView text) {
    return std::ranges::all_of(text,
                               [](char byte) { return byte >= 0x20 && byte < 0x7F && byte != '"' && byte != '\\'; });
}

} // namespace

void appendJsonString(QByteArray &out, QStringView text) {
    const QByteArray utf8 = text.toUtf8();
    out += '"';
    for (qsizetype i = 0; i < utf8.size(); ++i) {
        const char byte = utf8[i];
        const auto code = static_cast<unsigned char>(byte);
        constexpr unsigned char firstOfLatin1 = 0xC2; // before a byte that is the code itself
        if (byte == '"' || byte == '\\')
            (out += '\\') += byte;
        else if (code < 0x20 || code == 0x7F)
            appendControl(out, code);
        else if (code == firstOfLatin1 && static_cast<unsigned char>(utf8[i + 1]) < 0xA0)
            appendControl(out, static_cast<unsigned char>(utf8[++i]));
        else
            out += byte;
    }
    out += '"';
}

void appendJsonCell(QByteArray &out, FieldType type, QStringView text) {
    if (type == FieldType::Text)
        appendJsonString(out, text);
    else
        appendNumber(out, text);
}

void appendJsonTable(QByteArray &out, const TableInfo &table) {
    out += "{\"table\": ";
    appendJsonString(out, table.name);
    out += ", \"fields\": [";
    const char *separator = "";
    for (const FieldInfo &field : table.fields) {
        out += separator;
        out += "{\"name\": ";
        appendJsonString(out, field.name);
        out += ", \"type\": ";
        appendJsonString(out, typeName(field.type));
        out += ", \"size\": " + QByteArray::number(field.size) + '}';
        separator = ", ";
    }
    out += "], \"records\": " + QByteArray::number(table.records) + "}\n";
}

void appendJsonRecords(QByteArray &out, const Portion &portion, int from, int to) {
    TextAppender writer(out);
    QByteArray escaped;
    for (int record = from; record < to; ++record) {
        QByteArrayView separator = "[";
        for (const ColumnBlock &column : portion.columns) {
            writer.put(separator);
            separator = ", ";
            if (!column.isText()) {
                writer.number(column, record);
            } else if (const QByteArrayView text = column.textBytes(record); isPlain(text)) {
                writer.put('"');
                writer.put(text);
                writer.put('"');
            } else {
                escaped.resize(0);
                appendJsonString(escaped, column.text(record));
                writer.put(escaped);
            }
        }
        writer.put(portion.columns.empty() ? "[]\n" : "]\n");
    }
}

} // namespace qir
