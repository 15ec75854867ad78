#include "tests/window/model/PlainValues.h"

#include <QLocale>
#include <QRegularExpression>

#include <bit>
#include <cmath>
#include <limits>

namespace qir::test {

using namespace Qt::StringLiterals;

namespace {

QString withoutBlanks(const QString &text) {
    static const QRegularExpression blanks(u"[ \\t\\n]"_s);
    return QString(text).remove(blanks);
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
    const QRegularExpressionMatch match = atStart.match(withoutBlanks(text));
    return match.hasMatch() ? valueOf(match.captured()) : 0.0;
}

std::optional<double> numberThroughout(QString text) {
    static const QRegularExpression throughout(u"\\A *([+-]?([0-9]+[.]?[0-9]*|[.][0-9]+)([eE][+-]?[0-9]+)?) *\\z"_s);
    const QRegularExpressionMatch match = throughout.match(text);
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
    if (isText(left) || isText(right))
        return isText(left) == isText(right) && left.toString() == right.toString();
    return std::bit_cast<std::uint64_t>(left.toDouble()) == std::bit_cast<std::uint64_t>(right.toDouble());
}

bool equalValues(const QVariant &left, const QVariant &right) {
    if (isText(left) || isText(right))
        return isText(left) == isText(right) && left.toString() == right.toString();
    return left.toDouble() == right.toDouble();
}

} // namespace qir::test
