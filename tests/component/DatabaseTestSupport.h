#pragma once

#include "qirtbase/Database.h"

#include <QString>

#include <rapidcheck.h>

#include <bit>
#include <cstdint>
#include <vector>

/// What component tests share: plain copies of databases to compare, and random ones.
namespace qir::test {

struct PlainField {
    QString name;
    ColumnType type;
    int size;
    std::vector<CellValue> values;
};

struct PlainTable {
    QString name;
    std::size_t records;
    std::vector<PlainField> fields;
};

/// Everything in a database, one value after another.
inline std::vector<PlainTable> plain(const Database &database) {
    std::vector<PlainTable> tables;
    for (std::size_t t = 0; t < database.tableCount(); ++t) {
        const Table &table = database.table(t);
        PlainTable copy{table.name().text, table.recordCount(), {}};
        for (const Field &field : table.fields()) {
            PlainField values{field.name.text, field.type(), field.size, {}};
            for (std::size_t record = 0; record < field.column.size(); ++record)
                values.values.push_back(field.column.value(record));
            copy.fields.push_back(std::move(values));
        }
        tables.push_back(std::move(copy));
    }
    return tables;
}

inline bool sameValue(const CellValue &left, const CellValue &right) {
    const auto *number = std::get_if<double>(&left);
    const auto *other = std::get_if<double>(&right);
    if (number && other)
        return std::bit_cast<std::uint64_t>(*number) == std::bit_cast<std::uint64_t>(*other);
    return left == right;
}

inline bool operator==(const PlainField &left, const PlainField &right) {
    return left.name == right.name && left.type == right.type && left.size == right.size &&
           std::equal(left.values.begin(), left.values.end(), right.values.begin(), right.values.end(), sameValue);
}
inline bool operator==(const PlainTable &left, const PlainTable &right) {
    return left.name == right.name && left.records == right.records && left.fields == right.fields;
}

/// A text of plain, accented, wide and paired characters, now and then with a lone surrogate.
inline QString randomText() {
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
    const int count = *rc::gen::inRange(0, 6);
    for (int i = 0; i < count; ++i)
        text += *rc::gen::elementOf(pieces);
    return text;
}

inline double randomNumber() {
    return *rc::gen::oneOf(
        rc::gen::map(rc::gen::inRange(-70'000, 70'000), [](int i) { return i / 2.0; }),
        rc::gen::map(rc::gen::arbitrary<std::uint64_t>(),
                     [](std::uint64_t bits) { return std::bit_cast<double>(bits * 0x9E3779B97F4A7C15U); }),
        rc::gen::element(0.0, -0.0, 1e300, -1e300, 20240131.235959, 0.5, 1.5, -0.5));
}

/// A name that is new in most cases.
inline QString randomName() {
    return *rc::gen::elementOf(std::vector<QString>{QStringLiteral("n"), QStringLiteral("Pumps "),
                                                    QStringLiteral("\u00C4"), QStringLiteral("x ?")}) +
           QString::number(*rc::gen::inRange(0, 12));
}

/// Makes one random change; one that the rules refuse changes nothing.
void changeAtRandom(Database &database);

/// A database made by random commands.
Database randomDatabase();

} // namespace qir::test
