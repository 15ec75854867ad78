#include "cli/git/ConflictText.h"

#include "base/NumberText.h"
#include "cli/tables/JsonText.h"
#include "db/tables/FieldHeader.h"

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

void appendRecords(QByteArray &out, const char *name, const std::optional<ConflictRecords> &records) {
    if (!records)
        return;
    out += QByteArray(", \"") + name + "\": [";
    const char *separator = "";
    for (const QVariantList &record : *records) {
        out += separator;
        appendList(out, record);
        separator = ", ";
    }
    out += ']';
}

void appendNames(QByteArray &out, const char *name, const QStringList &names) {
    if (names.isEmpty())
        return;
    out += QByteArray(", \"") + name + "\": ";
    appendList(out, {names.begin(), names.end()});
}

} // namespace

void appendConflict(QByteArray &out, const Conflict &conflict) {
    out += QByteArray("{\"what\": \"") + nameOf(conflict.what) + "\", \"table\": ";
    appendJsonString(out, conflict.table);
    if (!conflict.key.isEmpty()) {
        out += ", \"key\": ";
        appendList(out, conflict.key);
    } else if (conflict.record > 0) {
        out += ", \"record\": " + QByteArray::number(conflict.record);
    }
    if (!conflict.field.isEmpty()) {
        out += ", \"field\": ";
        appendJsonString(out, conflict.field);
    }
    const bool isOne = conflict.what == Conflict::What::Cell || conflict.what == Conflict::What::Field;
    if (conflict.about != Conflict::About::Content)
        out += QByteArray(", \"about\": ") + (conflict.about == Conflict::About::Name ? "\"name\"" : "\"order\"");
    appendSide(out, "base", conflict.base, isOne);
    appendSide(out, "ours", conflict.ours, isOne);
    appendSide(out, "theirs", conflict.theirs, isOne);
    if (!conflict.reason.isEmpty()) {
        out += ", \"reason\": ";
        appendJsonString(out, conflict.reason);
    }
    if (!conflict.recordDigest.isEmpty()) {
        out += ", \"recordDigest\": ";
        appendJsonString(out, conflict.recordDigest);
    }
    appendNames(out, "keyFields", conflict.keyFields);
    appendNames(out, "oursFields", conflict.oursFields);
    appendNames(out, "theirsFields", conflict.theirsFields);
    if (conflict.occurrence > 0)
        out += ", \"occurrence\": " + QByteArray::number(conflict.occurrence);
    appendRecords(out, "oursRecords", conflict.oursRecords);
    appendRecords(out, "theirsRecords", conflict.theirsRecords);
    out += "}\n";
}

QString conflictText(const Conflict &conflict) {
    QString place = u"table \"%1\""_s.arg(conflict.table);
    if (!conflict.key.isEmpty()) {
        QByteArray values;
        appendList(values, conflict.key);
        place += u", key "_s + QString::fromUtf8(values);
    } else if (conflict.record > 0) {
        place += u", record %1"_s.arg(conflict.record);
    }
    if (!conflict.field.isEmpty())
        place += u", field \"%1\""_s.arg(conflict.field);
    return conflict.reason.isEmpty() ? place : place + u": "_s + conflict.reason;
}

QVariantList headersOf(const std::vector<FieldInfo> &fields) {
    QVariantList headers;
    for (const FieldInfo &field : fields)
        headers.append(fieldHeaderText(field));
    return headers;
}

} // namespace qir
