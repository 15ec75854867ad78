#include "tests/model/RandomValues.h"

#include <bit>

namespace qir::test {

using namespace Qt::StringLiterals;

QString randomText(Choices &choices) {
    static const std::vector<QString> pieces = {
        u"a"_s,
        u"Z"_s,
        u"7"_s,
        u" "_s,
        u"\u00E9"_s,
        u"\u00FF"_s,
        QString(QChar(0)),
        u"\u0100"_s,
        u"\u20AC"_s,
        u"\U0001F600"_s,
        QString(QChar(0xD83D)),
        QString(QChar(0xDE00)),
        u"\uFEFF"_s,
        u"-12.5e3"_s,
        u"plain words"_s,
    };
    QString text;
    const int count = choices.inRange(0, 6);
    for (int i = 0; i < count; ++i)
        text += choices.elementOf(pieces);
    return text;
}

double randomNumber(Choices &choices) {
    static const std::vector<double> special = {0.0, -0.0, 1e300, -1e300, 20240131.235959, 0.5, 1.5, -0.5};
    switch (choices.inRange(0, 3)) {
    case 0:
        return choices.inRange(-70'000, 70'000) / 2.0;
    case 1: // spread over all exponents, however small the bits are
        return std::bit_cast<double>(choices.bits() * 0x9E3779B97F4A7C15U);
    default:
        return choices.elementOf(special);
    }
}

QString randomName(Choices &choices) {
    static const std::vector<QString> stems = {u"n"_s, u"Pumps "_s, u"\u00C4"_s, u"x ?"_s};
    return choices.elementOf(stems) + QString::number(choices.inRange(0, 12));
}

} // namespace qir::test
