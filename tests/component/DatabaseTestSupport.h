#pragma once

#include "qirtbase/model/Database.h"
#include "tests/component/calls/RandomValues.h"

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
            PlainField values{field.name.text(), field.type(), field.size, {}};
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

/// Decisions of the property that runs.
class PropertyChoices : public Choices {
public:
    int inRange(int from, int to) override;
    std::uint64_t bits() override;
};

/// randomText(Choices &) and so on, by the property that runs.
QString randomText();
double randomNumber();
QString randomName();

/// Makes one random change; one that the rules refuse changes nothing.
void changeAtRandom(Database &database);

/// A database made by random commands.
Database randomDatabase();

} // namespace qir::test
