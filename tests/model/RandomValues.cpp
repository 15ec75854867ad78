#include "tests/model/RandomValues.h"

#include <bit>

namespace qir::test {

QString randomText(Choices &choices) {
    static const std::vector<QString> pieces = {
        QStringLiteral("a"),
        QStringLiteral("Z"),
        QStringLiteral("7"),
        QStringLiteral(" "),
        QStringLiteral("\u00E9"),
        QStringLiteral("\u00FF"),
        QString(QChar(0)),
        QStringLiteral("\u0100"),
        QStringLiteral("\u20AC"),
        QStringLiteral("\U0001F600"),
        QString(QChar(0xD83D)),
        QString(QChar(0xDE00)),
        QStringLiteral("\uFEFF"),
        QStringLiteral("-12.5e3"),
        QStringLiteral("plain words"),
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
    static const std::vector<QString> stems = {QStringLiteral("n"), QStringLiteral("Pumps "), QStringLiteral("\u00C4"),
                                               QStringLiteral("x ?")};
    return choices.elementOf(stems) + QString::number(choices.inRange(0, 12));
}

} // namespace qir::test
