#pragma once

#include "db/QirDatabase.h"

#include <QVariant>

#include <array>
#include <cstdint>

namespace qir::bench {

inline constexpr int mixedFieldCount = 20;

/// A deterministic run of records of 20 mixed fields: six longs of four widths, four doubles with two to five decimals,
/// two bools, two dates, six texts of 5 to 20 characters. The same seed gives the same records on every machine.
class MixedRecords {
public:
    explicit MixedRecords(std::uint64_t seed = 20240501);

    /// The next record's values.
    const std::array<QVariant, mixedFieldCount> &next();
    /// A value for one field (0..19), drawn from the same run.
    QVariant value(int field);

private:
    std::uint64_t draw();
    QString text();

    std::uint64_t m_state;
    std::array<QVariant, mixedFieldCount> m_values;
};

/// Adds a table of `records` such records to a database and makes it current.
void addMixedTable(const QirDatabase &database, const QString &name, int records);

/// Changes a tenth of a percent of the cells of the current table, at least one, spread over all of it.
void changeSomeCells(const QirDatabase &database);

/// Writes a database file whose only table "Mixed" has `records` records; `changed`: after changeSomeCells().
void makeMixedFile(const QString &path, int records, bool changed = false);

} // namespace qir::bench
