#include "cli/tables/ColumnValues.h"

#include "base/LeadingNumber.h"
#include "base/columns/Parallel.h"
#include "base/columns/UnicodeText.h"
#include "cli/tables/Portions.h"
#include "db/tables/FieldHeader.h"

#include <QDate>
#include <QTime>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr qsizetype smallestGuessedSize = usualTextSize;
constexpr qsizetype largestTextSize = 65535;
constexpr std::size_t cacheLine = 64;

/// Of well-formed UTF-8.
qsizetype characters(QByteArrayView text) {
    return std::ranges::count_if(text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; });
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

/// 2024-02-29 alone, as isoDate() takes it.
std::optional<double> plainDate(QByteArrayView text) {
    constexpr QByteArrayView form = "0000-00-00";
    if (text.size() != form.size())
        return std::nullopt;
    int number = 0;
    for (qsizetype i = 0; i < form.size(); ++i) {
        if (form[i] == '-' ? text[i] != '-' : text[i] < '0' || text[i] > '9')
            return std::nullopt;
        if (form[i] != '-')
            number = 10 * number + (text[i] - '0');
    }
    const int year = number / 10000;
    if (year < 1 || !QDate::isValid(year, number / 100 % 100, number % 100))
        return std::nullopt;
    return number;
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

/// How many bytes of the text are digits, from `at` on.
qsizetype digitsFrom(QByteArrayView text, qsizetype at) {
    const auto rest = text.sliced(at);
    return std::ranges::find_if_not(rest, [](char byte) { return byte >= '0' && byte <= '9'; }) - rest.begin();
}

/// The notation of what most numbers are: few enough digits to be kept by any reader. None says nothing.
Notation shortNotation(QByteArrayView text) {
    constexpr qsizetype few = 9; // within any type
    const qsizetype sign = text.startsWith('-') ? 1 : 0;
    const qsizetype whole = digitsFrom(text, sign);
    if (whole == 0 || whole > few || (text[sign] == '0' && (whole > 1 || sign == 1)))
        return Notation::None;
    if (sign + whole == text.size())
        return Notation::Whole;
    const qsizetype fraction = text[sign + whole] == '.' ? digitsFrom(text, sign + whole + 1) : 0;
    const bool isFraction = fraction != 0 && whole + fraction <= 15 && sign + whole + 1 + fraction == text.size();
    return isFraction ? Notation::Fraction : Notation::None;
}

// What all values of a column allow. Threads work on neighbours, so each has a line of the cache to itself.
struct alignas(cacheLine) Guess {
    bool isBool = true;
    bool isDate = true;
    bool isLong = true;
    bool isDouble = true;
    qsizetype longest = 0;

    void see(QByteArrayView utf8, QString &text) {
        if (isBool || isDate || isDouble)
            seeKind(utf8, text);
        if (utf8.size() > longest)
            longest = std::max(longest, characters(utf8));
    }

private:
    void seeKind(QByteArrayView utf8, QString &text) {
        if (const Notation notation = shortNotation(utf8); notation != Notation::None) {
            isBool = isDate = false;
            isLong = isLong && notation == Notation::Whole;
        } else if (plainDate(utf8)) {
            isBool = isDouble = isLong = false;
        } else {
            (void)readUtf8(utf8, text);
            isBool = isBool && (isWord(text, "true"_L1) || isWord(text, "false"_L1));
            isDate = isDate && isoDate(text).has_value();
            if (isDouble)
                seeNumber(text);
        }
    }

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

template<class Number>
std::optional<double> wholeText(QByteArrayView text) {
    Number number{};
    const auto [end, error] = std::from_chars(text.begin(), text.end(), number);
    if (error != std::errc() || end != text.end())
        return std::nullopt;
    return static_cast<double>(number);
}

/// What each column of a table without records, or a header that says it, becomes; nothing where its values say it.
std::optional<Result<FieldInfo>> headedField(const CsvTable &table, std::size_t column) {
    const QString &text = table.header().at(static_cast<qsizetype>(column));
    const Result<FieldHeader> header = parseFieldHeader(text);
    if (!header)
        return tl::unexpected(header.error());
    if (header->type)
        return newField(text);
    if (table.records() == 0)
        return FieldInfo{header->name, FieldType::Text, usualTextSize};
    return std::nullopt;
}

FieldInfo guessedField(const QString &header, const Guess &guess) {
    const FieldType type = guessedType(guess);
    const int size = static_cast<int>(std::clamp(guess.longest, smallestGuessedSize, largestTextSize));
    return {header, type, type == FieldType::Text ? size : 0};
}

/// Calls `take(record, column)` for the values of a portion, for every `step`th column from `first` on; some records at
/// a time, so that what is read of them stays near.
template<class Take>
void walk(const CsvPortion &portion, std::size_t first, std::size_t step, std::size_t columns, Take take) {
    constexpr std::size_t near = 1024;
    for (std::size_t begin = 0; begin < portion.records(); begin += near) {
        const std::size_t end = std::min(begin + near, portion.records());
        for (std::size_t column = first; column < columns; column += step)
            for (std::size_t record = begin; record < end; ++record)
                take(record, column);
    }
}

/// A column that is being read; as Guess.
struct alignas(cacheLine) ColumnReading {
    ColumnBuilder builder;
    std::optional<UnfitValue> unfit;
};

constexpr std::size_t shares = 4; // of the columns

} // namespace

Result<FieldInfo> columnField(const CsvTable &table, std::size_t column) {
    return columnFields(table)[column];
}

std::vector<Result<FieldInfo>> columnFields(const CsvTable &table) {
    const auto columns = static_cast<std::size_t>(table.header().size());
    std::vector<std::optional<Result<FieldInfo>>> headed;
    for (std::size_t column = 0; column < columns; ++column)
        headed.push_back(headedField(table, column));
    std::vector<Guess> guesses(columns);
    inParallel(shares, [&](std::size_t share) {
        QString text;
        for (const CsvPortion &portion : table.portions())
            walk(portion, share, shares, columns, [&](std::size_t record, std::size_t column) {
                if (!headed[column])
                    guesses[column].see(portion.value(record, column), text);
            });
    });
    std::vector<Result<FieldInfo>> fields;
    for (std::size_t column = 0; column < columns; ++column)
        fields.push_back(headed[column]
                             ? *headed[column]
                             : guessedField(table.header().at(static_cast<qsizetype>(column)), guesses[column]));
    return fields;
}

Result<QVariant> importedValue(const FieldInfo &field, const QString &text) {
    if (field.type == FieldType::Text) {
        if (codePoints(text) > static_cast<std::size_t>(field.size))
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

std::optional<double> plainImportedNumber(FieldType type, QByteArrayView text) {
    const qsizetype sign = text.startsWith('-') ? 1 : 0;
    if (text.size() == sign || text[sign] < '0' || text[sign] > '9')
        return std::nullopt;
    if (type == FieldType::Double || type == FieldType::Date) {
        const std::optional<double> date = type == FieldType::Date ? plainDate(text) : std::nullopt;
        return date ? date : wholeText<double>(text);
    }
    const std::optional<double> number = wholeText<int>(text);
    if (type == FieldType::Bool)
        return number && (*number == 0 || *number == 1) ? number : std::nullopt;
    const Range range = rangeOf(type);
    return number && *number >= range.least && *number <= range.most ? number : std::nullopt;
}

/// Why a value does not go into its field, or nothing once it is added.
std::optional<QString> addImported(ColumnBuilder &builder, const FieldInfo &field, QByteArrayView value,
                                   QString &text) {
    if (field.type == FieldType::Text) {
        if (value.size() <= field.size || characters(value) <= field.size) {
            builder.addUtf8(value);
            return std::nullopt;
        }
    } else if (const std::optional<double> number = plainImportedNumber(field.type, value)) {
        builder.add(*number);
        return std::nullopt;
    }
    (void)readUtf8(value, text);
    const Result<QVariant> imported = importedValue(field, text);
    if (!imported)
        return imported.error().text;
    builder.add(imported->toDouble());
    return std::nullopt;
}

tl::expected<std::vector<ColumnBlock>, UnfitValue> importedColumns(const std::vector<FieldInfo> &fields,
                                                                   const CsvPortion &portion) {
    std::vector<ColumnReading> readings;
    readings.reserve(fields.size());
    for (const FieldInfo &field : fields)
        readings.push_back(
            {ColumnBuilder(columnTypeOf(field.type), static_cast<qsizetype>(portion.records())), std::nullopt});
    inParallel(shares, [&](std::size_t share) {
        QString text;
        walk(portion, share, shares, fields.size(), [&](std::size_t record, std::size_t column) {
            ColumnReading &reading = readings[column];
            if (reading.unfit)
                return;
            const QByteArrayView value = portion.value(record, column);
            if (const auto reason = addImported(reading.builder, fields[column], value, text))
                reading.unfit = UnfitValue{record, column, QString::fromUtf8(value), *reason};
        });
    });
    const UnfitValue *first = nullptr;
    std::vector<ColumnBlock> columns;
    for (ColumnReading &reading : readings) {
        columns.push_back(reading.builder.take());
        if (reading.unfit && (first == nullptr || reading.unfit->record < first->record))
            first = &*reading.unfit;
    }
    if (first != nullptr)
        return tl::unexpected(*first);
    return columns;
}

} // namespace qir
