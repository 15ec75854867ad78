#pragma once

#include "base/ByteReader.h"
#include "qirtbase/model/Database.h"

#include <QByteArray>
#include <QByteArrayView>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <tuple>
#include <vector>

/// Tables as kept steps have them, which share most of their values with what was saved:
///
///     tables = u32 count | table*
///     table  = u32 records | u16 fields | name | field*
///     field  = u8 type code | u16 size | name | piece*         as many as hold a value for each record
///     piece  = u8 0 | u32 table | u32 field | u32 first record | u32 count      of the database as it was saved
///            | u8 1 | u32 length | a table of this field alone, as in a body
///            | u8 2 | u32 number                               of a piece of kind 1 that stood before, from 0
///     name   = u16 length | UTF-8
namespace qir {

enum class KeptPiece : std::uint8_t { Saved = 0, Own = 1, Earlier = 2 };

/// Writes them, values that stand in the same memory once. The tables must live, and not change, meanwhile.
class KeptTablesWriter {
public:
    explicit KeptTablesWriter(const Database &saved)
        : m_saved(saved) {}

    /// Nothing where they take more than `limit` bytes; all since the last keep() must be given up then.
    std::optional<QByteArray> encode(const std::vector<const Table *> &tables, std::size_t limit);
    /// A field as a table of its own.
    std::optional<QByteArray> encode(const Field &field, std::size_t limit);
    /// What was written stays.
    void keep() { m_kept = m_own; }
    /// What was written since the last keep() does not.
    void giveUp();

private:
    struct Numbers {
        std::size_t tableOrPiece;
        std::size_t field;
        std::size_t first;
    };
    struct Place {
        KeptPiece kind;
        ColumnType type;
        qsizetype size;    // of the values, in bytes
        const char *bytes; // of texts
        Numbers numbers;
    };

    void findSaved();
    void addPlace(KeptPiece kind, const ColumnChunk &chunk, ColumnType type, const Numbers &numbers);
    const Place *find(ColumnType type, const ColumnChunk &chunk) const;
    bool writeTable(QByteArray &out, const Table &table, std::size_t limit);
    bool writeField(QByteArray &out, const Field &field, std::size_t limit);
    bool writePiece(QByteArray &out, const Field &field, const ColumnChunk &chunk, std::size_t limit);

    const Database &m_saved;
    bool m_savedFound = false;
    std::multimap<const char *, Place> m_places; // by where the values stand
    std::size_t m_own = 0;                       // pieces so far, and those of them that stay
    std::size_t m_kept = 0;
};

/// Reads them again.
class KeptTablesReader {
public:
    /// `saved` is the database as it was saved; it outlives the reader.
    explicit KeptTablesReader(const Database &saved)
        : m_saved(saved) {}

    /// Nothing where the bytes, which nobody vouches for, are no tables that obey all rules. Throws std::bad_alloc.
    std::optional<undo::Tables> decode(QByteArrayView bytes);

private:
    std::unique_ptr<Table> takeTable(ByteReader &reader);
    std::optional<Field> takeField(ByteReader &reader, std::size_t records);
    std::tuple<const Field *, std::size_t, std::size_t> takePiece(ByteReader &reader);

    const Database &m_saved;
    std::vector<std::unique_ptr<Table>> m_own; // of one field each
};

} // namespace qir
