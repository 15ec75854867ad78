#include "compare/report/JsonLines.h"

#include <QJsonDocument>

#include <limits>

using namespace Qt::StringLiterals;

namespace qir {

QJsonValue jsonMember(const QJsonObject &object, const QString &name) {
    const QJsonValue value = object.value(name);
    if (value.isUndefined())
        throw BadLine(u"it has no \"%1\""_s.arg(name));
    return value;
}

QString jsonText(const QJsonValue &value) {
    if (!value.isString())
        throw BadLine(u"a text is missing"_s);
    return value.toString();
}

int jsonWholeNumber(const QJsonValue &value, int least) {
    const double number = value.toDouble(-1);
    if (number < least || number > std::numeric_limits<int>::max() || number != static_cast<int>(number))
        throw BadLine(u"a whole number is missing"_s);
    return static_cast<int>(number);
}

QJsonArray jsonArray(const QJsonValue &value) {
    if (!value.isArray())
        throw BadLine(u"an array is missing"_s);
    return value.toArray();
}

QVariant jsonCell(const QJsonValue &value) {
    if (value.isNull())
        return {};
    if (value.isDouble())
        return value.toDouble();
    return jsonText(value);
}

QVariantList jsonCells(const QJsonValue &value) {
    QVariantList values;
    for (const QJsonValue &element : jsonArray(value)) {
        values.append(jsonCell(element));
        if (!values.last().isValid())
            throw BadLine(u"a value is missing"_s);
    }
    return values;
}

Result<void> readJsonLines(const QByteArray &lines, const std::function<void(const QJsonObject &line)> &take) {
    qsizetype begin = 0;
    for (int number = 1; begin < lines.size(); ++number) {
        qsizetype end = lines.indexOf('\n', begin);
        if (end < 0)
            end = lines.size();
        const QByteArray line = QByteArray::fromRawData(lines.constData() + begin, end - begin);
        begin = end + 1;
        if (line.trimmed().isEmpty())
            continue;
        const QJsonDocument document = QJsonDocument::fromJson(line);
        const auto fail = [&](const QString &reason) { return failure(u"line %1: %2"_s.arg(number).arg(reason)); };
        if (!document.isObject())
            return fail(u"it is no JSON object"_s);
        try {
            take(document.object());
        } catch (const BadLine &bad) {
            return fail(QString::fromUtf8(bad.what()));
        }
    }
    return {};
}

} // namespace qir
