#include "cli/JsonText.h"

#include "base/LeadingNumber.h"
#include "base/NumberText.h"
#include "cli/FieldHeader.h"

#include <cstdio>

namespace qir {

namespace {

// By value, so that whatever text a component has for it, JSON readers get a number.
void appendNumber(QByteArray &out, QStringView text) {
    char digits[numberTextCapacity];
    out.append(digits, formatNumber(digits, leadingNumber(text)) - digits);
}

} // namespace

void appendJsonString(QByteArray &out, QStringView text) {
    out += '"';
    for (const char byte : text.toUtf8()) {
        switch (byte) {
        case '"':
        case '\\':
            out += '\\';
            out += byte;
            break;
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
            if (static_cast<unsigned char>(byte) < 0x20) {
                char escape[8];
                std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(byte));
                out += escape;
            } else {
                out += byte;
            }
        }
    }
    out += '"';
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

void appendJsonRecord(QByteArray &out, const TableInfo &table, const QStringList &values) {
    out += '[';
    qsizetype k = 0;
    for (const FieldInfo &field : table.fields) {
        if (k > 0)
            out += ", ";
        ++k;
        if (field.type == FieldType::Text)
            appendJsonString(out, values.at(k));
        else
            appendNumber(out, values.at(k));
    }
    out += "]\n";
}

} // namespace qir
