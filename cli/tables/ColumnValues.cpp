#include "cli/tables/ColumnValues.h"

#include "base/LeadingNumber.h"
#include "cli/tables/FieldHeader.h"

#include <QDate>
#include <QTime>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr int smallestGuessedSize = usualTextSize;
constexpr int largestTextSize = 65535;

int codePoints(QStringView text) {
    return static_cast<int>(
        std::ranges::count_if(text, [](QChar unit) { return !unit.isLowSurrogate(); })); // well-formed as read
}

bool isWord(QStringView text, QLatin1StringView word) {
    return text.compare(word, Qt::CaseInsensitive) == 0;
}

// 2024-02-29, with "T" or a blank and 23:59 or 23:59:59 behind it, as the number 20240229.235959.
std::optional<double> isoDate(QStringView text) {
    constexpr qsizetype dateLength = 10;
    const QDate date = QDate::fromString(text.first(std::min(dateLength, text.size())), Qt::ISODate);
    if (!date.isValid() || date.year() < 1)
        return std::nullopt;
    QString number = date.toString(u"yyyyMMdd"_s);
    if (text.size() > dateLength) {
        const QStringView clock = text.sliced(dateLength + 1);
        const QTime time = QTime::fromString(clock, clock.size() > 5 ? u"HH:mm:ss"_s : u"HH:mm"_s);
        if ((text[dateLength] != u'T' && text[dateLength] != u' ') || !time.isValid())
            return std::nullopt;
        number += time.toString(u".HHmmss"_s);
    }
    return leadingNumber(number);
}

bool isDigit(QChar unit) {
    return unit >= u'0' && unit <= u'9';
}

// Decimal numbers written as a program writes them, so that nothing of the writing is lost.
enum class Notation { None, Whole, Fraction };
Notation notationOf(QStringView text) {
    qsizetype at = text.startsWith(u'-') ? 1 : 0;
    const qsizetype firstDigit = at;
    const auto skipDigits = [&] {
        const qsizetype begin = at;
        while (at < text.size() && isDigit(text[at]))
            ++at;
        return at - begin;
    };
    const qsizetype wholeDigits = skipDigits();
    if (wholeDigits == 0 || (wholeDigits > 1 && text[firstDigit] == u'0'))
        return Notation::None;
    if (at == text.size())
        return text == u"-0" ? Notation::None : Notation::Whole;
    qsizetype digits = wholeDigits;
    if (text[at] == u'.') {
        ++at;
        const qsizetype fraction = skipDigits();
        digits += fraction;
        if (fraction == 0)
            return Notation::None;
    }
    if (at < text.size() && (text[at] == u'e' || text[at] == u'E')) {
        ++at;
        if (at < text.size() && (text[at] == u'+' || text[at] == u'-'))
            ++at;
        if (skipDigits() == 0)
            return Notation::None;
    }
    return at == text.size() && digits <= std::numeric_limits<double>::max_digits10 ? Notation::Fraction
                                                                                    : Notation::None;
}

// Whether the number is large enough, or zero, for a double to keep all digits of it; else it keeps some or none.
bool keepsDigits(QStringView text, double number) {
    const auto exponent = std::ranges::find_if(text, [](QChar unit) { return unit.toLower() == u'e'; });
    const auto isZero = [](QChar unit) { return !isDigit(unit) || unit == u'0'; };
    return std::isnormal(number) || std::all_of(text.begin(), exponent, isZero);
}

// What all values of a column allow.
struct Guess {
    bool isBool = true;
    bool isDate = true;
    bool isLong = true;
    bool isDouble = true;
    int longest = 0;

    void see(QStringView text) {
        isBool = isBool && (isWord(text, "true"_L1) || isWord(text, "false"_L1));
        isDate = isDate && isoDate(text).has_value();
        if (isDouble)
            seeNumber(text);
        longest = std::max(longest, codePoints(text));
    }

private:
    void seeNumber(QStringView text) {
        const Notation notation = notationOf(text);
        const double number = notation == Notation::None ? 0 : leadingNumber(text);
        constexpr double largestExactWhole = 9007199254740992.0; // 2^53
        isDouble = notation == Notation::Fraction
                       ? std::abs(number) < std::numeric_limits<double>::max() && keepsDigits(text, number)
                       : notation == Notation::Whole && std::abs(number) < largestExactWhole;
        isLong = isLong && notation == Notation::Whole && number >= std::numeric_limits<int>::min() &&
                 number <= std::numeric_limits<int>::max();
    }
};

FieldType guessedType(const Guess &guess) {
    if (guess.isBool)
        return FieldType::Bool;
    if (guess.isDate)
        return FieldType::Date;
    if (guess.isDouble)
        return guess.isLong ? FieldType::Long : FieldType::Double;
    return FieldType::Text;
}

struct Range {
    double least;
    double most;
};
Range rangeOf(FieldType type) {
    switch (type) {
    case FieldType::Byte:
        return {0, 255};
    case FieldType::Int:
        return {-32768, 32767};
    default:
        return {-2147483648.0, 2147483647.0};
    }
}

Result<double> importedNumber(FieldType type, const QString &text) {
    const std::optional<double> number = wholeNumber(text);
    if (type == FieldType::Date && !number) {
        if (const std::optional<double> date = isoDate(text))
            return *date;
        return failure(u"is no date"_s);
    }
    if (!number)
        return failure(u"is no number"_s);
    if (type == FieldType::Double || type == FieldType::Date) {
        if (passesRange(text))
            return failure(u"is larger than a number can be"_s);
        return *number;
    }
    const Range range = rangeOf(type);
    if (std::nearbyint(*number) != *number)
        return failure(u"is no whole number"_s);
    if (*number < range.least || *number > range.most)
        return failure(u"is out of the range of %1"_s.arg(typeName(type)));
    return *number;
}

Result<double> importedBool(const QString &text) {
    const std::optional<double> number = wholeNumber(text);
    if (isWord(text, "true"_L1) || (number && std::abs(*number) == 1))
        return 1.0;
    if (isWord(text, "false"_L1) || (number && *number == 0))
        return 0.0;
    return failure(u"is neither true nor false"_s);
}

} // namespace

Result<FieldInfo> columnField(const CsvTable &table, std::size_t column) {
    const Result<FieldHeader> header = parseFieldHeader(table.header().at(static_cast<qsizetype>(column)));
    if (!header)
        return tl::unexpected(header.error());
    if (header->type)
        return newField(table.header().at(static_cast<qsizetype>(column)));
    Guess guess;
    QString text;
    for (std::size_t record = 0; record < table.records(); ++record) {
        table.readValue(record, column, text);
        guess.see(text);
    }
    if (table.records() == 0)
        return FieldInfo{header->name, FieldType::Text, smallestGuessedSize};
    const FieldType type = guessedType(guess);
    const int size = std::clamp(guess.longest, smallestGuessedSize, largestTextSize);
    return FieldInfo{header->name, type, type == FieldType::Text ? size : 0};
}

Result<QVariant> importedValue(const FieldInfo &field, const QString &text) {
    if (field.type == FieldType::Text) {
        if (codePoints(text) > field.size)
            return failure(u"is longer than the %1 characters of the field"_s.arg(field.size));
        return QVariant(text);
    }
    if (text.isEmpty())
        return QVariant(0.0);
    const Result<double> number = field.type == FieldType::Bool ? importedBool(text) : importedNumber(field.type, text);
    if (!number)
        return tl::unexpected(number.error());
    return QVariant(*number);
}

} // namespace qir
