#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QVariant>

#include <functional>
#include <stdexcept>

namespace qir {

/// What is wrong with a line of JSON; readJsonLines() makes its failure of it.
class BadLine : public std::runtime_error {
public:
    explicit BadLine(const QString &text)
        : std::runtime_error(text.toStdString()) {}
};

// What a line has to have. Each throws BadLine where it has not.

QJsonValue jsonMember(const QJsonObject &object, const QString &name);
QString jsonText(const QJsonValue &value);
int jsonWholeNumber(const QJsonValue &value, int least);
QJsonArray jsonArray(const QJsonValue &value);
/// A number, a text, or nothing for null.
QVariant jsonCell(const QJsonValue &value);
/// Those of an array, none of them nothing.
QVariantList jsonCells(const QJsonValue &value);

/// Hands over each line that is not blank. Fails with the number of the first one that is no object, or for which
/// `take` throws BadLine.
Result<void> readJsonLines(const QByteArray &lines, const std::function<void(const QJsonObject &line)> &take);

} // namespace qir
