#include "base/NumberText.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace qir {

namespace {

constexpr double smallestPlain = 1e-5;
constexpr double largestPlain = 1e15; // exclusive

/// Values of at most 15 digits and few decimals, the usual ones, need no search for the shortest text: where n / 10^k
/// with n below 10^15 gives the value, n / 10^k is exact decimal notation for it, and no two decimals of up to 15
/// digits share a double, so the one without trailing zeros is the shortest. Nothing is written otherwise.
char *formatFewDecimals(char *out, double magnitude) {
    constexpr int decimals = 6;
    constexpr double scale = 1e6;
    constexpr double largestExact = 1e15;
    const double scaled = std::nearbyint(magnitude * scale);
    if (scaled >= largestExact || scaled / scale != magnitude)
        return nullptr;
    constexpr std::uint64_t integerScale = 1'000'000;
    const auto digits = static_cast<std::uint64_t>(scaled);
    std::uint64_t fraction = digits % integerScale;
    out = std::to_chars(out, out + numberTextCapacity - 1, digits / integerScale).ptr;
    if (fraction == 0)
        return out;
    int width = decimals;
    for (; fraction % 10 == 0; fraction /= 10)
        --width;
    *out = '.';
    for (int i = width; i > 0; --i, fraction /= 10)
        out[i] = static_cast<char>('0' + fraction % 10);
    return out + width + 1;
}

} // namespace

char *formatNumber(char *out, double value) {
    char *const end = out + numberTextCapacity;
    if (std::signbit(value))
        *out++ = '-';
    const double magnitude = std::abs(value);
    if (magnitude == 0.0) {
        *out++ = '0';
        return out;
    }
    const bool plain = magnitude >= smallestPlain && magnitude < largestPlain;
    if (plain) {
        if (char *last = formatFewDecimals(out, magnitude))
            return last;
        return std::to_chars(out, end, magnitude, std::chars_format::fixed).ptr;
    }
    return std::to_chars(out, end, magnitude, std::chars_format::scientific).ptr;
}

char *formatNumber(char *out, int value) {
    return std::to_chars(out, out + numberTextCapacity, value).ptr;
}

QString numberText(double value) {
    char text[numberTextCapacity];
    return QString::fromLatin1(text, formatNumber(text, value) - text);
}

} // namespace qir
