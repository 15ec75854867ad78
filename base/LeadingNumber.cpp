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

/// The number at the beginning of a text, in the notation of std::from_chars.
struct Scanned {
    QVarLengthArray<char, 64> decimal; // sign, digits, point, exponent
    bool negative = false;
    bool hasDigits = false;
    bool isInteger = true; // neither point nor exponent
    qsizetype end = 0;     // where reading stopped
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

void scanDigits(Cursor &cursor, Scanned &number) {
    for (; isDigit(cursor.unit()); cursor.advance()) {
        number.decimal.append(static_cast<char>(cursor.unit()));
        number.hasDigits = true;
    }
}

/// The exponent, taken only when digits follow it.
void scanExponent(Cursor &cursor, Scanned &number) {
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
    scanDigits(ahead, number);
    number.isInteger = false;
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
    scanDigits(cursor, number);
    if (cursor.unit() == u'.') {
        number.decimal.append('.');
        number.isInteger = false;
        cursor.advance();
        scanDigits(cursor, number);
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

double valueOf(const Scanned &number) {
    if (!number.hasDigits)
        return 0.0;
    const char *first = number.decimal.data();
    const char *last = first + number.decimal.size();
    constexpr qsizetype exactIntegerLength = 15;
    if (number.isInteger && number.decimal.size() <= exactIntegerLength) {
        std::int64_t integer = 0;
        std::from_chars(first, last, integer);
        // Through the double's own sign, because -0 is a value of its own.
        return std::copysign(static_cast<double>(integer), number.negative ? -1.0 : 1.0);
    }
    double value = 0.0;
    const auto [end, error] = std::from_chars(first, last, value);
    const double sign = number.negative ? -1.0 : 1.0;
    if (error == std::errc::result_out_of_range)
        value = isTooLarge(number) ? std::numeric_limits<double>::max() : 0.0;
    return std::copysign(std::min(std::abs(value), std::numeric_limits<double>::max()), sign);
}

} // namespace

double leadingNumber(QStringView text) {
    return valueOf(scan(text));
}

std::optional<double> wholeNumber(QStringView text) {
    const Scanned number = scan(text);
    if (!number.hasDigits || number.end != text.size())
        return std::nullopt;
    return valueOf(number);
}

} // namespace qir
