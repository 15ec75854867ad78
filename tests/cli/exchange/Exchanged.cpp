#include "tests/cli/exchange/Exchanged.h"

#include "base/NumberText.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace qir {

DrawnTables::DrawnTables(unsigned seed, Limits limits)
    : m_random(seed)
    , m_limits(limits) {}

int DrawnTables::drawn(int least, int most) {
    return std::uniform_int_distribution<int>(least, most)(m_random);
}

QByteArray DrawnTables::name(int number) {
    static const std::array<QByteArray, 9> names{"Plain",     "with blanks ", "a\\\"b\\\"",         "semi;colon, comma",
                                                 "it's",      "Öl ±5",        "\xF0\x9F\x98\x80 x", "select",
                                                 "tab\\there"};
    return names[static_cast<std::size_t>(drawn(0, names.size() - 1))] + QByteArray::number(number);
}

QByteArray DrawnTables::number(const QByteArray &type) {
    const auto one = [&](std::initializer_list<int> bounds, int least, int most) {
        const int chosen = drawn(0, 2 * static_cast<int>(bounds.size()));
        const bool isBound = chosen < static_cast<int>(bounds.size());
        return QByteArray::number(isBound ? bounds.begin()[chosen] : drawn(least, most));
    };
    if (type == "bool")
        return QByteArray::number(drawn(0, 1));
    if (type == "byte")
        return one({0, 255}, 0, 255);
    if (type == "int")
        return one({-32768, 32767}, -1000, 1000);
    constexpr int least = std::numeric_limits<int>::min();
    constexpr int most = std::numeric_limits<int>::max();
    if (type == "long")
        return one({least, most, 0}, least, most);
    double value = std::bit_cast<double>((static_cast<std::uint64_t>(m_random()) << 32) | m_random());
    switch (drawn(0, 5)) {
    case 0:
        value = m_limits.hasMinusZero ? -0.0 : 0.0;
        break;
    case 1:
        value = std::numeric_limits<double>::denorm_min();
        break;
    case 2:
        value = -std::numeric_limits<double>::max();
        break;
    case 3:
        value = 20240229.235959;
        break;
    default:
        break;
    }
    char digits[numberTextCapacity];
    return {digits, formatNumber(digits, std::isfinite(value) ? value : 0.1) - digits};
}

QByteArray DrawnTables::text(int size) {
    // As JSON writes them; each is one character.
    static const std::array<QByteArray, 19> pieces{"a",
                                                   "B",
                                                   " ",
                                                   "\\\"",
                                                   "'",
                                                   "\\\\",
                                                   "\\n",
                                                   "\\r",
                                                   "\\t",
                                                   ",",
                                                   ";",
                                                   "é",
                                                   "中",
                                                   "N",
                                                   "-",
                                                   "=",
                                                   "0",
                                                   "\\u0001",
                                                   "\xF0\x9F\x98\x80"};
    QByteArray text;
    for (int length = drawn(0, std::min(size, 12)); length > 0; --length) {
        const int piece = drawn(0, static_cast<int>(pieces.size()) + 1);
        if (piece < static_cast<int>(pieces.size()))
            text += pieces[static_cast<std::size_t>(piece)];
        else if (piece == static_cast<int>(pieces.size()))
            text += m_limits.hasNul ? "\\u0000" : "x";
        else
            text += m_limits.hasMark ? "\xEF\xBB\xBF" : "y";
    }
    return '"' + text + '"';
}

QByteArray DrawnTables::table(int number) {
    static const std::array<QByteArray, 7> types{"bool", "byte", "int", "long", "double", "date", "text"};
    const int fields = drawn(m_limits.hasEmptyTables ? 0 : 1, 6);
    const int records = drawn(0, 3) == 0 || fields == 0 ? 0 : drawn(1, 20);
    std::vector<std::pair<QByteArray, int>> chosen;
    QByteArray lines = "{\"table\": \"" + name(number) + "\", \"fields\": [";
    for (int field = 0; field < fields; ++field) {
        const QByteArray &type = types[static_cast<std::size_t>(drawn(0, types.size() - 1))];
        const int size = type == "text" ? drawn(0, 3) * drawn(0, 100) : 0;
        chosen.emplace_back(type, size);
        lines += field == 0 ? "" : ", ";
        lines += "{\"name\": \"" + name(field) + "\", \"type\": \"" + type +
                 "\", \"size\": " + QByteArray::number(size) + '}';
    }
    lines += "], \"records\": " + QByteArray::number(records) + "}\n";
    for (int record = 0; record < records; ++record) {
        const char *separator = "[";
        for (const auto &[type, size] : chosen) {
            lines += separator + (type == "text" ? text(size) : this->number(type));
            separator = ", ";
        }
        lines += "]\n";
    }
    return lines;
}

QByteArray DrawnTables::lines() {
    QByteArray lines;
    const int tables = drawn(0, 5);
    for (int number = 0; number < tables; ++number)
        lines += table(number);
    return lines;
}

} // namespace qir
