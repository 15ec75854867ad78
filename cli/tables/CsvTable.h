#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <optional>
#include <vector>

namespace qir {

/// A CSV file in memory: a header line and records of as many values, kept in one block of UTF-8.
class CsvTable {
public:
    /// Reads UTF-8 with or without byte order mark, values separated by commas or by `delimiter` and quoted by double
    /// quotes; a quote inside a value that does not begin with one stands for itself. A line without a character is an
    /// empty value where there is one column, and no record where there are more. Fails with the number of the record
    /// (1 is the first after the header) where the text is no UTF-8 or a record has more or fewer values than the
    /// header, with line and column where a quote is out of place, and, unless a delimiter is given, where the header
    /// seems to have another one.
    static Result<CsvTable> read(QByteArrayView bytes, std::optional<char> delimiter = {});

    const QStringList &header() const { return m_header; }
    std::size_t records() const { return m_records; }
    /// A value, counted from 0; `text` keeps its memory.
    void readValue(std::size_t record, std::size_t column, QString &text) const;
    QString value(std::size_t record, std::size_t column) const;

private:
    friend class CsvReading;

    QStringList m_header;
    std::size_t m_records = 0;
    QByteArray m_block;
    std::vector<std::size_t> m_ends; // where each value ends in the block, record by record
};

} // namespace qir
