#include "base/LeadingNumber.h"

#include <QVarLengthArray>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace qir {

namespace {

bool isSkipped(char16_t unit) {
    return unit == u' ' || unit == u'\t' || unit == u'\n';
}
bool isDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

// A whole number of so many digits and a power of ten up to this one are doubles, so that one multiplication or
// division of them rounds right.
constexpr int exactDigits = 15;
constexpr int exactPower = 22;

/// The number at the beginning of a text, in the notation of std::from_chars, and as digits times a power of ten.
struct Scanned {
    QVarLengthArray<char, 64> decimal; // sign, digits, point, exponent
    bool negative = false;
    bool hasDigits = false;
    int digits = 0;            // from the first that is not zero, counted as far as one past exactDigits
    std::int64_t mantissa = 0; // those digits, while they are no more than exactDigits
    std::int64_t power = 0;    // of ten, beside the mantissa; kept far from overflow
    qsizetype end = 0;         // where reading stopped
};

/// Walks over a text leaving out the skipped characters.
class Cursor {
public:
    explicit Cursor(QStringView text)
        : m_text(text) {
        skip();
    }

    char16_t unit() const { return m_at < m_text.size() ? m_text[m_at].unicode() : u'\0'; }
    qsizetype position() const { return m_at; }
    void advance() {
        ++m_at;
        skip();
    }

private:
    void skip() {
        while (m_at < m_text.size() && isSkipped(m_text[m_at].unicode()))
            ++m_at;
    }

    QStringView m_text;
    qsizetype m_at = 0;
};

void scanDigits(Cursor &cursor, Scanned &number, int powerStep) {
    for (; isDigit(cursor.unit()); cursor.advance()) {
        const int digit = cursor.unit() - u'0';
        number.decimal.append(static_cast<char>(cursor.unit()));
        number.hasDigits = true;
        number.power += powerStep;
        if ((number.digits == 0 && digit == 0) || number.digits > exactDigits)
            continue;
        if (++number.digits <= exactDigits)
            number.mantissa = number.mantissa * 10 + digit;
    }
}

/// The exponent, taken only when digits follow it.
void scanExponent(Cursor &cursor, Scanned &number) {
    constexpr std::int64_t farAway = std::int64_t{1} << 40;
    Cursor ahead = cursor;
    const char16_t letter = ahead.unit();
    if (letter != u'e' && letter != u'E' && letter != u'd' && letter != u'D')
        return;
    ahead.advance();
    char sign = '+';
    if (ahead.unit() == u'+' || ahead.unit() == u'-') {
        sign = static_cast<char>(ahead.unit());
        ahead.advance();
    }
    if (!isDigit(ahead.unit()))
        return;
    number.decimal.append('e');
    number.decimal.append(sign);
    std::int64_t exponent = 0;
    for (; isDigit(ahead.unit()); ahead.advance()) {
        number.decimal.append(static_cast<char>(ahead.unit()));
        exponent = std::min(farAway, exponent * 10 + (ahead.unit() - u'0'));
    }
    number.power += sign == '-' ? -exponent : exponent;
    cursor = ahead;
}

Scanned scan(QStringView text) {
    Scanned number;
    Cursor cursor(text);
    if (cursor.unit() == u'+' || cursor.unit() == u'-') {
        number.negative = cursor.unit() == u'-';
        if (number.negative)
            number.decimal.append('-');
        cursor.advance();
    }
    scanDigits(cursor, number, 0);
    if (cursor.unit() == u'.') {
        number.decimal.append('.');
        cursor.advance();
        scanDigits(cursor, number, -1);
    }
    if (number.hasDigits)
        scanExponent(cursor, number);
    number.end = cursor.position();
    return number;
}

/// Whether a decimal that no double holds is too large, rather than too small: by the place of its first digit that
/// counts. The place and the exponent are kept far from overflow, whatever the length of the text.
bool isTooLarge(const Scanned &number) {
    constexpr std::int64_t farAway = std::int64_t{1} << 40;
    std::int64_t place = 0; // of the first non-zero digit: 1 for units, 0 for tenths
    bool pointSeen = false;
    bool found = false;
    std::int64_t exponent = 0;
    bool negativeExponent = false;
    bool inExponent = false;
    for (const char c : number.decimal) {
        if (c == 'e') {
            inExponent = true;
        } else if (inExponent) {
            if (c == '-')
                negativeExponent = true;
            else if (c != '+')
                exponent = std::min(farAway, exponent * 10 + (c - '0'));
        } else if (c == '.') {
            pointSeen = true;
        } else if (c != '-') {
            found = found || c != '0';
            if (found && !pointSeen)
                ++place;
            else if (!found && pointSeen)
                --place;
        }
    }
    return place + (negativeExponent ? -exponent : exponent) > 0;
}

double powerOfTen(std::int64_t power) {
    static constexpr double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                        1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    return powers[power];
}

struct Magnitude {
    double value;
    bool passesRange = false; ///< The value is the largest instead.
};

Magnitude magnitudeOf(const Scanned &number) {
    if (number.digits <= exactDigits && std::abs(number.power) <= exactPower) {
        const auto digits = static_cast<double>(number.mantissa);
        return {number.power < 0 ? digits / powerOfTen(-number.power) : digits * powerOfTen(number.power)};
    }
    double value = 0.0;
    const char *first = number.decimal.data();
    const auto [end, error] = std::from_chars(first, first + number.decimal.size(), value);
    constexpr double largest = std::numeric_limits<double>::max();
    if (error == std::errc::result_out_of_range)
        return isTooLarge(number) ? Magnitude{largest, true} : Magnitude{0.0};
    return {std::min(std::abs(value), largest), std::abs(value) > largest};
}

double valueOf(const Scanned &number) {
    // Through the double's own sign, because -0 is a value of its own.
    return number.hasDigits ? std::copysign(magnitudeOf(number).value, number.negative ? -1.0 : 1.0) : 0.0;
}

} // namespace

double leadingNumber(QStringView text) {
    return valueOf(scan(text));
}

std::optional<double> plainNumber(QStringView text) {
    while (text.startsWith(u' '))
        text = text.sliced(1);
    while (text.endsWith(u' '))
        text.chop(1);
    qsizetype at = text.startsWith(u'+') || text.startsWith(u'-') ? 1 : 0;
    const auto digits = [&] {
        const qsizetype first = at;
        while (at < text.size() && isDigit(text[at].unicode()))
            ++at;
        return at - first;
    };
    qsizetype count = digits();
    if (at < text.size() && text[at] == u'.') {
        ++at;
        count += digits();
    }
    if (count == 0)
        return std::nullopt;
    if (at < text.size() && (text[at] == u'e' || text[at] == u'E')) {
        ++at;
        if (at < text.size() && (text[at] == u'+' || text[at] == u'-'))
            ++at;
        if (digits() == 0)
            return std::nullopt;
    }
    return at == text.size() ? std::optional(leadingNumber(text)) : std::nullopt;
}

std::optional<double> wholeNumber(QStringView text) {
    const Scanned number = scan(text);
    if (!number.hasDigits || number.end != text.size())
        return std::nullopt;
    return valueOf(number);
}

bool passesRange(QStringView text) {
    const Scanned number = scan(text);
    return number.hasDigits && magnitudeOf(number).passesRange;
}

} // namespace qir
