#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace qir {

/// Some of the records of a CSV file, each of as many values as the header; values are where they stand in the file's
/// bytes.
class CsvPortion {
public:
    std::size_t records() const { return m_columns == 0 ? 0 : m_values.size() / m_columns; }
    /// The UTF-8 of a value, counted from 0.
    QByteArrayView value(std::size_t record, std::size_t column) const {
        const Place place = m_values[record * m_columns + column];
        return {(place.isOwn != 0 ? m_own.constData() : m_bytes) + place.start, static_cast<qsizetype>(place.length)};
    }

private:
    friend class CsvReading;

    struct Place {
        std::uint32_t start;
        std::uint32_t length : 31;
        std::uint32_t isOwn : 1; ///< It had quotes in it, and stands in the portion's own bytes.
    };

    const char *m_bytes = nullptr;
    std::size_t m_columns = 0;
    QByteArray m_own;
    std::vector<Place> m_values; // record by record
};

/// A CSV file in memory: a header line and records of as many values.
class CsvTable {
public:
    /// Reads UTF-8 with or without byte order mark, values separated by commas or by `delimiter` and quoted by double
    /// quotes; a quote inside a value that does not begin with one stands for itself. A line without a character is an
    /// empty value where there is one column, and no record where there are more. Fails with the number of the record
    /// (1 is the first after the header) where the text is no UTF-8 or a record has more or fewer values than the
    /// header, with line and column where a quote is out of place, and, unless a delimiter is given, where the header
    /// seems to have another one. The table keeps the bytes.
    static Result<CsvTable> read(QByteArray bytes, std::optional<char> delimiter = {});

    const QStringList &header() const { return m_header; }
    std::size_t records() const { return m_records; }
    /// A value, counted from 0; `text` keeps its memory.
    void readValue(std::size_t record, std::size_t column, QString &text) const;
    QString value(std::size_t record, std::size_t column) const;

    /// All records in turn; each portion but the last has so many.
    static constexpr std::size_t portionRecords = 65536;
    const std::vector<CsvPortion> &portions() const { return m_portions; }

private:
    friend class CsvReading;

    QByteArray m_bytes;
    QStringList m_header;
    std::size_t m_records = 0;
    std::vector<CsvPortion> m_portions;
};

} // namespace qir
