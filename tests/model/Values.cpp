#include "tests/model/Values.h"

#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

/// The same number in characters that every regular expression takes: halves of pairs are none.
QString ofOneByte(const QString &text) {
    return QString::fromLatin1(text.toLatin1());
}

double valueOf(QString decimal) {
    decimal.replace(QChar(u'd'), QChar(u'e'), Qt::CaseInsensitive);
    if (decimal.endsWith(u'.'))
        decimal.chop(1);
    const double value = decimal.toDouble();
    return std::isinf(value) ? std::copysign(std::numeric_limits<double>::max(), value) : value;
}

const QString decimalPattern = u"[+-]?([0-9]+[.]?[0-9]*|[.][0-9]+)([eEdD][+-]?[0-9]+)?"_s;

} // namespace

QString nameKey(QString name) {
    for (QString before; name != before;) {
        before = name;
        name = withoutMarkers(name).trimmed();
    }
    return name.toUpper();
}

QString withoutMarkers(QString line) {
    return line.remove(u" ?"_s).remove(u" !"_s);
}

double numberAtStart(QString text) {
    static const QRegularExpression atStart(u"^"_s + decimalPattern);
    const QRegularExpressionMatch match = atStart.match(ofOneByte(text.remove(u' ').remove(u'\t').remove(u'\n')));
    return match.hasMatch() ? valueOf(match.captured()) : 0.0;
}

std::optional<double> numberThroughout(const QString &text) {
    static const QRegularExpression throughout(u"\\A *([+-]?([0-9]+[.]?[0-9]*|[.][0-9]+)([eE][+-]?[0-9]+)?) *\\z"_s);
    const QRegularExpressionMatch match = throughout.match(ofOneByte(text));
    return match.hasMatch() ? std::optional(valueOf(match.captured(1))) : std::nullopt;
}

bool isText(const QVariant &value) {
    return value.typeId() == QMetaType::QString;
}

QString textOf(const QVariant &value) {
    if (isText(value))
        return value.toString();
    const double number = value.toDouble();
    if (number == 0.0)
        return std::signbit(number) ? u"-0"_s : u"0"_s;
    const bool plain = std::abs(number) >= 1e-5 && std::abs(number) < 1e15;
    return QString::number(number, plain ? 'f' : 'e', QLocale::FloatingPointShortest);
}

bool identical(const QVariant &left, const QVariant &right) {
    if (left.typeId() != right.typeId())
        return false;
    if (left.typeId() != QMetaType::Double)
        return left == right;
    return std::bit_cast<std::uint64_t>(left.toDouble()) == std::bit_cast<std::uint64_t>(right.toDouble());
}

bool equalValues(const QVariant &left, const QVariant &right) {
    if (isText(left) || isText(right))
        return isText(left) == isText(right) && left.toString() == right.toString();
    return left.toDouble() == right.toDouble();
}

QString firstCharacters(const QString &text, int count) {
    QList<uint> points = text.toUcs4();
    points.resize(std::min<qsizetype>(points.size(), count));
    QString result;
    for (const uint point : points)
        result += QStringView(QChar::fromUcs4(point)).toString();
    return result;
}

bool sortsBefore(const QString &left, const QString &right) {
    const auto kind = [](const QString &text) { return text.isEmpty() ? 0 : numberThroughout(text) ? 1 : 2; };
    if (kind(left) != kind(right))
        return kind(left) < kind(right);
    if (kind(left) == 1)
        return *numberThroughout(left) < *numberThroughout(right);
    return left.toUpper() == right.toUpper() ? left < right : left.toUpper() < right.toUpper();
}

std::vector<QStringList> cellsOf(QString text) {
    if (text.contains(u'\r'))
        text.remove(u'\n');
    text.replace(u'\n', u'\r');
    if (text.endsWith(u'\r'))
        text.chop(1);
    std::vector<QStringList> cells;
    for (const QString &row : text.split(u'\r'))
        cells.push_back(row.split(u'\t'));
    return cells;
}

} // namespace qir::test
