#include "compare/conflicts/ConflictReader.h"

#include "compare/report/JsonLines.h"

#include <QHash>
#include <QSet>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

using What = Conflict::What;

QStringList textsOf(const QJsonValue &value) {
    QStringList texts;
    for (const QJsonValue &element : jsonArray(value))
        texts.append(jsonText(element));
    return texts;
}

/// What a side has: one value, or the values of a record or a table.
QVariantList sideOf(const QJsonObject &line, const QString &name, What what) {
    const QJsonValue value = jsonMember(line, name);
    if (value.isNull())
        return {};
    if (what == What::Cell)
        return {jsonCell(value)};
    if (what == What::Field)
        return {jsonText(value)};
    if (what == What::Record) {
        QVariantList values = jsonCells(value);
        if (values.isEmpty())
            throw BadLine(u"\"%1\" has no value"_s.arg(name));
        return values;
    }
    const QStringList texts = textsOf(value);
    return {texts.begin(), texts.end()};
}

QStringList fieldsOf(const QJsonObject &line, const QString &name, const QVariantList &values) {
    if (!line.contains(name))
        return {};
    QStringList fields = textsOf(line.value(name));
    if (fields.size() != values.size())
        throw BadLine(u"\"%1\" has not a name for each value"_s.arg(name));
    return fields;
}

/// What a side has in a field or a table: records of so many values, or, of a field by position, none.
std::optional<ConflictRecords> recordsIn(const QJsonObject &line, const QString &name, qsizetype size, bool orNone) {
    if (!line.contains(name))
        return std::nullopt;
    ConflictRecords records;
    for (const QJsonValue &record : jsonArray(line.value(name))) {
        records.push_back(jsonCells(record));
        if (records.back().size() != size && !(orNone && records.back().isEmpty()))
            throw BadLine(u"\"%1\" has a record of another length"_s.arg(name));
    }
    return records;
}

void readContents(const QJsonObject &line, Conflict &conflict) {
    const bool isField = conflict.what == What::Field;
    if (!isField && conflict.what != What::Table)
        return;
    const auto sizeOf = [&](const QVariantList &headers) {
        if (isField)
            return conflict.keyFields.size() + 1;
        return headers == QVariantList{QString()} ? 0 : headers.size();
    };
    const bool orNone = isField && conflict.keyFields.isEmpty();
    conflict.oursRecords = recordsIn(line, u"oursRecords"_s, sizeOf(conflict.ours), orNone);
    conflict.theirsRecords = recordsIn(line, u"theirsRecords"_s, sizeOf(conflict.theirs), orNone);
}

Conflict::About aboutOf(const QJsonObject &line) {
    if (!line.contains(u"about"_s))
        return Conflict::About::Content;
    const QString about = jsonText(line.value(u"about"_s));
    if (about == u"name"_s)
        return Conflict::About::Name;
    if (about != u"order"_s)
        throw BadLine(u"there are no conflicts about a \"%1\""_s.arg(about));
    return Conflict::About::Order;
}

void readPlace(const QJsonObject &line, Conflict &conflict) {
    if (line.contains(u"key"_s)) {
        conflict.key = jsonCells(line.value(u"key"_s));
        if (conflict.key.isEmpty())
            throw BadLine(u"its key has no value"_s);
        conflict.keyFields = fieldsOf(line, u"keyFields"_s, conflict.key);
    } else if (line.contains(u"record"_s)) {
        conflict.record = jsonWholeNumber(line.value(u"record"_s), 1);
    } else if (conflict.what == What::Cell || conflict.what == What::Record) {
        throw BadLine(u"it has neither \"record\" nor \"key\""_s);
    } else if (conflict.what == What::Field && line.contains(u"keyFields"_s)) {
        conflict.keyFields = textsOf(line.value(u"keyFields"_s));
    }
    if (line.contains(u"recordDigest"_s))
        conflict.recordDigest = jsonText(line.value(u"recordDigest"_s));
    if (line.contains(u"occurrence"_s))
        conflict.occurrence = jsonWholeNumber(line.value(u"occurrence"_s), 1);
    if (conflict.what == What::Cell || conflict.what == What::Field)
        conflict.field = jsonText(jsonMember(line, u"field"_s));
}

Conflict conflictOf(const QJsonObject &line) {
    static const QHash<QString, What> kinds{
        {u"cell"_s, What::Cell}, {u"record"_s, What::Record}, {u"field"_s, What::Field}, {u"table"_s, What::Table}};
    const QString what = jsonText(jsonMember(line, u"what"_s));
    if (!kinds.contains(what))
        throw BadLine(u"there are no conflicts of a \"%1\""_s.arg(what));
    Conflict conflict;
    conflict.what = kinds.value(what);
    conflict.table = jsonText(jsonMember(line, u"table"_s));
    conflict.about = aboutOf(line);
    readPlace(line, conflict);
    conflict.base = sideOf(line, u"base"_s, conflict.what);
    conflict.ours = sideOf(line, u"ours"_s, conflict.what);
    conflict.theirs = sideOf(line, u"theirs"_s, conflict.what);
    conflict.oursFields = fieldsOf(line, u"oursFields"_s, conflict.ours);
    conflict.theirsFields = fieldsOf(line, u"theirsFields"_s, conflict.theirs);
    readContents(line, conflict);
    if (line.contains(u"reason"_s))
        conflict.reason = jsonText(line.value(u"reason"_s));
    return conflict;
}

} // namespace

Result<std::vector<Conflict>> readConflicts(const QByteArray &lines) {
    std::vector<Conflict> conflicts;
    QSet<QJsonObject> byNumber; // those of a key may be alike: several records have it
    const Result<void> read = readJsonLines(lines, [&](const QJsonObject &line) {
        conflicts.push_back(conflictOf(line));
        if (conflicts.back().record == 0)
            return;
        if (byNumber.contains(line))
            throw BadLine(u"it is the same as a line before it"_s);
        byNumber.insert(line);
    });
    if (!read)
        return tl::unexpected(read.error());
    if (conflicts.empty())
        return failure(u"it is empty"_s);
    return conflicts;
}

} // namespace qir
