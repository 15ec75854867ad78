#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <functional>

namespace qir {

/// Takes what was written so far, once it is much: may print and empty it.
using OutputSink = std::function<void(QByteArray &out)>;

/// A number as the shortest decimal that reads back. A foreign component may hold what no decimal stands for.
QString numberWords(double number);
/// A value for people: a text in quotes on one line, a number as it is.
QString valueWords(const QVariant &value);

/// A number, a string, or null for an invalid one; what no decimal stands for is a string.
void appendJsonValue(QByteArray &out, const QVariant &value);
void appendJsonValues(QByteArray &out, const QVariantList &values);
void appendJsonNames(QByteArray &out, const QStringList &names);
/// , "KEY": [LEFT, RIGHT]
void appendJsonPair(QByteArray &out, const char *key, int left, int right);

} // namespace qir
