#pragma once

#include "base/LoadError.h"
#include "qirtbase/model/Database.h"
#include "qirtbase/model/ModelLimits.h"

#include <QByteArray>
#include <QByteArrayView>

#include <cstddef>
#include <cstdint>
#include <memory>

/// The body of a file: what the container carries. Little-endian, without padding.
///
///     body    = section* end
///     section = u8 type | u8 flags | u16 0 | u64 length | payload
///
/// The tables come first, in their order, one section each; then sections that this version does not know; then the
/// end section, with an empty payload, and nothing after it. Flag bit 0 means that a reader must know the section:
/// tables and the end have it and no other flag. A section of an unknown type that has it is refused; one that has not
/// is kept as it stands, flags included, and written back in its place after the tables.
///
///     table   = u32 records | u16 fields | name | field* | column*           columns in the order of the fields;
///                                                                         no records without a field
///     field   = u8 type code | u16 size | name                                size 0 for all types but text
///     name    = u16 length | UTF-8                                            unique by key, 1 to 255 code points
///     column  = one value for each record
///               bool, byte: u8 (bool 0 or 1)   int: i16   long: i32   double, date: f64, finite
///               text: u32 length of each, then the bytes of all, UTF-8, within the field's size in code points
///
/// There is one body for a database: what decodes also encodes to the same bytes.
namespace qir {

/// On disk for ever: never change one.
enum class SectionType : std::uint8_t { End = 0, Table = 1 };

namespace section {
inline constexpr std::uint8_t mustBeKnown = 1; // flag bit 0
inline constexpr std::size_t headSize = 12;
} // namespace section

/// What a body may hold and take; tests use less.
struct BodyLimits {
    std::size_t tables = limits::tables;
    std::size_t fields = limits::fields;
    std::size_t records = limits::records;
    std::size_t recordsWithoutFields = 0; ///< They take no bytes, so that a file has none; a journal counts them.
    std::size_t nameLength = limits::nameLength;
    /// Bytes of memory of all tables together. Every count is checked against the bytes that remain before anything is
    /// allocated for it, so memory stays within a small multiple of the body anyway.
    std::uint64_t memory = std::uint64_t{1} << 37;
};

/// Where a body goes, and so what becomes of records of a table without fields, which have no values to write.
enum class BodyFor {
    File,    ///< They are left out.
    Journal, ///< They are counted: later changes may give them fields again.
};

/// The body of a database. Throws std::bad_alloc.
QByteArray encodeBody(const Database &database, BodyFor use = BodyFor::File);

/// The database of a body, or why it is none: Damaged, NewerVersion or Limits, the reason without a file name. Bytes
/// are not trusted. Throws std::bad_alloc.
LoadResult<Database> decodeBody(QByteArrayView body, const BodyLimits &limits = {});
/// The same, but gives the memory of the body back as it goes, where nobody else shares it: body and tables are never
/// there as a whole at once.
LoadResult<Database> decodeBody(QByteArray &&body, const BodyLimits &limits = {});

/// A single table as the payload of its section.
QByteArray encodeTable(const Table &table, BodyFor use = BodyFor::File);
/// The table of such a payload. Same errors as decodeBody().
LoadResult<std::unique_ptr<Table>> decodeTable(QByteArrayView payload, const BodyLimits &limits = {});

} // namespace qir
