#pragma once

#include <QByteArray>

#include <random>

namespace qir {

/// JSON lines of some tables drawn by a seed: all types, their bounds, empty and odd texts and names, no field, no
/// record.
class DrawnTables {
public:
    struct Limits {
        bool hasNul = true;         ///< Texts and names may have one.
        bool hasMark = true;        ///< Texts may begin with a byte order mark.
        bool hasMinusZero = true;   ///< Numbers may be -0.
        bool hasEmptyTables = true; ///< Tables may have no field.
    };
    DrawnTables(unsigned seed, Limits limits);

    QByteArray lines();

private:
    int drawn(int least, int most);
    QByteArray name(int number);
    QByteArray number(const QByteArray &type);
    QByteArray text(int size);
    QByteArray table(int number);

    std::mt19937 m_random;
    Limits m_limits;
};

} // namespace qir
