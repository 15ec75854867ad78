#include "cli/git/Conflict.h"

#include "base/NumberText.h"
#include "cli/tables/FieldHeader.h"
#include "cli/tables/JsonText.h"

using namespace Qt::StringLiterals;

namespace qir {

namespace {

const char *nameOf(Conflict::What what) {
    switch (what) {
    case Conflict::What::Cell:
        return "cell";
    case Conflict::What::Record:
        return "record";
    case Conflict::What::Field:
        return "field";
    case Conflict::What::Table:
        break;
    }
    return "table";
}

void appendValue(QByteArray &out, const QVariant &value) {
    if (!value.isValid())
        out += "null";
    else if (value.typeId() == QMetaType::QString)
        appendJsonString(out, value.toString());
    else
        out += numberText(value.toDouble()).toLatin1();
}

void appendList(QByteArray &out, const QVariantList &values) {
    out += '[';
    const char *separator = "";
    for (const QVariant &value : values) {
        out += separator;
        appendValue(out, value);
        separator = ", ";
    }
    out += ']';
}

void appendSide(QByteArray &out, const char *name, const QVariantList &values, bool isOne) {
    out += QByteArray(", \"") + name + "\": ";
    if (values.isEmpty())
        out += "null";
    else if (isOne)
        appendValue(out, values.front());
    else
        appendList(out, values);
}

} // namespace

void Conflict::appendJson(QByteArray &out) const {
    out += QByteArray("{\"what\": \"") + nameOf(what) + "\", \"table\": ";
    appendJsonString(out, table);
    if (!key.isEmpty()) {
        out += ", \"key\": ";
        appendList(out, key);
    } else if (record > 0) {
        out += ", \"record\": " + QByteArray::number(record);
    }
    if (!field.isEmpty()) {
        out += ", \"field\": ";
        appendJsonString(out, field);
    }
    const bool isOne = what == What::Cell || what == What::Field;
    appendSide(out, "base", base, isOne);
    appendSide(out, "ours", ours, isOne);
    appendSide(out, "theirs", theirs, isOne);
    if (!reason.isEmpty()) {
        out += ", \"reason\": ";
        appendJsonString(out, reason);
    }
    out += "}\n";
}

QString Conflict::text() const {
    QString place = u"table \"%1\""_s.arg(table);
    if (!key.isEmpty()) {
        QByteArray values;
        appendList(values, key);
        place += u", key "_s + QString::fromUtf8(values);
    } else if (record > 0) {
        place += u", record %1"_s.arg(record);
    }
    if (!field.isEmpty())
        place += u", field \"%1\""_s.arg(field);
    return reason.isEmpty() ? place : place + u": "_s + reason;
}

QVariantList headersOf(const std::vector<FieldInfo> &fields) {
    QVariantList headers;
    for (const FieldInfo &field : fields)
        headers.append(fieldHeaderText(field));
    return headers;
}

} // namespace qir
