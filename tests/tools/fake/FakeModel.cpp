#include "tests/tools/fake/FakeModel.h"

#include "base/Collation.h"
#include "base/LeadingNumber.h"
#include "base/NumberText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

using namespace Qt::StringLiterals;

namespace qir::fake {

namespace {

constexpr int textType = 10;

double clampedWhole(double number, double least, double most) {
    return std::nearbyint(std::clamp(number, least, most)) + 0.0;
}

double fittedNumber(int type, double number) {
    if (std::isnan(number))
        return 0;
    switch (type) {
    case 1:
        return number == 0 ? 0 : 1;
    case 2:
        return clampedWhole(number, 0, 255);
    case 3:
        return clampedWhole(number, -32768, 32767);
    case 4:
        return clampedWhole(number, -2147483648.0, 2147483647.0);
    default:
        return std::clamp(number, -std::numeric_limits<double>::max(), std::numeric_limits<double>::max());
    }
}

QString fittedText(const QString &text, int size) {
    QList<uint> points;
    for (const char32_t point : text.toUcs4())
        points += QChar::isSurrogate(point) ? 0xFFFD : point;
    points.resize(std::min<qsizetype>(points.size(), size));
    return QString::fromUcs4(reinterpret_cast<const char32_t *>(points.constData()), points.size());
}

} // namespace

Table namedTable(const QString &name) {
    return {name, collationKey(name), {}, {}};
}

bool isType(int code) {
    return (code >= 1 && code <= 4) || code == 7 || code == 8 || code == textType;
}

int fittedSize(int type, double size) {
    return type == textType && !std::isnan(size) ? static_cast<int>(clampedWhole(size, 0, 65535)) : 0;
}

QVariant fitted(const Field &field, const QVariant &value) {
    const bool isText = value.typeId() == QMetaType::QString;
    if (field.type == textType)
        return fittedText(isText ? value.toString() : numberText(fittedNumber(7, value.toDouble())), field.size);
    return fittedNumber(field.type, isText ? leadingNumber(value.toString()) : value.toDouble());
}

bool same(const QVariant &left, const QVariant &right) {
    if (left.typeId() != right.typeId())
        return false;
    if (left.typeId() == QMetaType::QString)
        return left.toString() == right.toString();
    return std::bit_cast<std::uint64_t>(left.toDouble()) == std::bit_cast<std::uint64_t>(right.toDouble());
}

QString textOf(const QVariant &value) {
    return value.typeId() == QMetaType::QString ? value.toString() : numberText(value.toDouble());
}

QString wellFormed(const QString &text) {
    return fittedText(text, std::numeric_limits<int>::max());
}

QString nameProblem(const QString &name) {
    constexpr int longest = 255;
    if (collationKey(name).isEmpty())
        return u"A name must not be empty."_s;
    if (name.toUcs4().size() > longest)
        return u"A name has %1 characters at most."_s.arg(longest);
    return {};
}

QByteArray encode(const Database &database) {
    QJsonArray tables;
    for (const Table &table : database.tables) {
        QJsonArray fields;
        for (const Field &field : table.fields)
            fields += QJsonObject{{u"name"_s, field.name}, {u"type"_s, field.type}, {u"size"_s, field.size}};
        QJsonArray records;
        for (const QVariantList &record : table.records) {
            QJsonArray values;
            for (const QVariant &value : record)
                values += textOf(value); // texts bring every number back bit for bit
            records += values;
        }
        tables += QJsonObject{{u"name"_s, table.name}, {u"fields"_s, fields}, {u"records"_s, records}};
    }
    const QJsonObject whole{{u"password"_s, database.password}, {u"tables"_s, tables}};
    return (database.password.isEmpty() ? "0000000004QIR0" : "0000000004QIR1") +
           QJsonDocument(whole).toJson(QJsonDocument::Indented).trimmed();
}

std::optional<Database> decode(const QByteArray &bytes, const QString &password, QString &why) {
    const QByteArray json = bytes.startsWith("0000000004QIR") ? bytes.mid(14) : bytes;
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject()) {
        why = u"the file is no database"_s;
        return std::nullopt;
    }
    Database database;
    database.password = document[u"password"_s].toString();
    if (database.password != password) {
        why = u"the password is wrong"_s;
        return std::nullopt;
    }
    for (const QJsonValue &tableValue : document[u"tables"_s].toArray()) {
        Table table = namedTable(tableValue[u"name"_s].toString());
        for (const QJsonValue &field : tableValue[u"fields"_s].toArray())
            table.fields += {field[u"name"_s].toString(), field[u"type"_s].toInt(), field[u"size"_s].toInt()};
        for (const QJsonValue &recordValue : tableValue[u"records"_s].toArray()) {
            const QJsonArray values = recordValue.toArray();
            QVariantList record;
            for (qsizetype k = 0; k < table.fields.size(); ++k)
                record += fitted(table.fields.at(k), values.at(k).toString());
            table.records += record;
        }
        database.tables += table;
    }
    return database;
}

} // namespace qir::fake
