#include "qirtbase/journal/KeptTables.h"

#include "base/ByteReader.h"
#include "base/ByteWriter.h"
#include "base/columns/UnicodeText.h"
#include "qirtbase/model/BodyCodec.h"
#include "qirtbase/model/DatabaseError.h"
#include "qirtbase/model/ModelLimits.h"

#include <algorithm>
#include <set>
#include <utility>

namespace qir {

using namespace Qt::StringLiterals;

namespace {

/// Whether so many values of a column of texts fit a field of this size.
bool textsFit(const ColumnBlock &block, std::size_t size) {
    for (qsizetype i = 0; i < block.count(); ++i) {
        const QByteArrayView text = block.textBytes(i);
        if (fittingUtf8Size(text, size) != static_cast<std::size_t>(text.size()))
            return false;
    }
    return true;
}

/// A name that is one, as it is kept; nothing otherwise.
std::optional<Name> takeName(ByteReader &reader) {
    QString text;
    if (!readUtf8(reader.sizedBytes<std::uint16_t>(), text) || !reader.isComplete())
        return std::nullopt;
    try {
        Name name = Name::checked(text);
        return name.text == text ? std::optional(std::move(name)) : std::nullopt;
    } catch (const DatabaseError &) {
        return std::nullopt;
    }
}

} // namespace

// ------------------------------------------------------------------------------------------------------------ writing

std::optional<QByteArray> KeptTablesWriter::encode(const std::vector<const Table *> &tables, std::size_t limit) {
    findSaved();
    QByteArray out;
    ByteWriter(out).number(static_cast<std::uint32_t>(tables.size()));
    for (const Table *table : tables)
        if (!writeTable(out, *table, limit))
            return std::nullopt;
    return out;
}

std::optional<QByteArray> KeptTablesWriter::encode(const Field &field, std::size_t limit) {
    const Table alone(Name::checked(u"Field"_s), {field}, field.column.size());
    return encode({&alone}, limit);
}

void KeptTablesWriter::giveUp() {
    std::erase_if(m_places, [&](const auto &at) {
        return at.second.kind == KeptPiece::Earlier && at.second.numbers.tableOrPiece >= m_kept;
    });
    m_own = m_kept;
}

void KeptTablesWriter::findSaved() {
    if (std::exchange(m_savedFound, true))
        return;
    for (std::size_t t = 0; t < m_saved.tableCount(); ++t) {
        const Table &table = m_saved.table(t);
        for (std::size_t f = 0; f < table.fieldCount(); ++f) {
            const Column &column = table.field(f).column;
            std::size_t first = 0;
            for (std::size_t i = 0; i < column.chunkCount(); ++i) {
                const ColumnChunk &chunk = column.chunk(i);
                addPlace(KeptPiece::Saved, chunk, column.type(), {t, f, first});
                first += chunk.size(column.type());
            }
        }
    }
}

void KeptTablesWriter::addPlace(KeptPiece kind, const ColumnChunk &chunk, ColumnType type, const Numbers &numbers) {
    if (!chunk.values().isEmpty())
        m_places.emplace(chunk.values().constData(),
                         Place{kind, type, chunk.values().size(), chunk.bytes().constData(), numbers});
}

bool KeptTablesWriter::writeTable(QByteArray &out, const Table &table, std::size_t limit) {
    ByteWriter writer(out);
    writer.number(static_cast<std::uint32_t>(table.recordCount()));
    writer.number(static_cast<std::uint16_t>(table.fieldCount()));
    writer.sizedBytes<std::uint16_t>(table.name().text.toUtf8());
    return std::ranges::all_of(table.fields(), [&](const Field &field) { return writeField(out, field, limit); });
}

bool KeptTablesWriter::writeField(QByteArray &out, const Field &field, std::size_t limit) {
    ByteWriter writer(out);
    writer.number(static_cast<std::uint8_t>(field.type()));
    writer.number(static_cast<std::uint16_t>(field.size));
    writer.sizedBytes<std::uint16_t>(QByteArrayView(field.name.utf8()));
    for (std::size_t i = 0; i < field.column.chunkCount(); ++i) {
        const ColumnChunk &chunk = field.column.chunk(i);
        if (!chunk.values().isEmpty() && !writePiece(out, field, chunk, limit))
            return false;
    }
    return static_cast<std::size_t>(out.size()) <= limit;
}

bool KeptTablesWriter::writePiece(QByteArray &out, const Field &field, const ColumnChunk &chunk, std::size_t limit) {
    const std::size_t count = chunk.size(field.type());
    ByteWriter writer(out);
    if (const Place *place = find(field.type(), chunk)) {
        writer.number(static_cast<std::uint8_t>(place->kind));
        writer.number(static_cast<std::uint32_t>(place->numbers.tableOrPiece));
        if (place->kind == KeptPiece::Saved) {
            writer.number(static_cast<std::uint32_t>(place->numbers.field));
            writer.number(static_cast<std::uint32_t>(place->numbers.first));
            writer.number(static_cast<std::uint32_t>(count));
        }
        return true;
    }
    const std::size_t each = field.column.isText() ? sizeof(std::uint32_t) : valueSize(field.type());
    if (static_cast<std::size_t>(out.size()) + count * each + chunk.textBytes() > limit)
        return false;
    const Table alone(Name::checked(u"Field"_s), {{field.name, field.size, Column(field.type(), {chunk})}}, count);
    writer.number(static_cast<std::uint8_t>(KeptPiece::Own));
    writer.sizedBytes<std::uint32_t>(encodeTable(alone));
    addPlace(KeptPiece::Earlier, chunk, field.type(), {m_own++, 0, 0});
    return true;
}

const KeptTablesWriter::Place *KeptTablesWriter::find(ColumnType type, const ColumnChunk &chunk) const {
    const auto [from, to] = m_places.equal_range(chunk.values().constData());
    const char *bytes = chunk.bytes().constData();
    const auto found = std::find_if(from, to, [&](const auto &at) {
        const Place &place = at.second;
        return place.type == type && place.size == chunk.values().size() && place.bytes == bytes;
    });
    return found == to ? nullptr : &found->second;
}

// ------------------------------------------------------------------------------------------------------------ reading

namespace {

/// Values of a column that stands somewhere.
struct Piece {
    const Field *field;
    std::size_t first;
    std::size_t count;
};

std::optional<Column> columnOf(const std::vector<Piece> &pieces, ColumnType type, int size, std::size_t records) {
    Column column(type, records);
    std::size_t at = 0;
    for (const Piece &piece : pieces) {
        for (std::size_t done = 0; done < piece.count;) {
            const ColumnBlock block = piece.field->column.block(piece.first + done, piece.count - done);
            if (piece.field->size > size && !textsFit(block, static_cast<std::size_t>(size)))
                return std::nullopt;
            column.setBlock(at, block);
            done += static_cast<std::size_t>(block.count());
            at += static_cast<std::size_t>(block.count());
        }
    }
    return column;
}

} // namespace

std::optional<undo::Tables> KeptTablesReader::decode(QByteArrayView bytes) {
    ByteReader reader(bytes);
    const auto count = reader.number<std::uint32_t>();
    if (count > limits::tables)
        return std::nullopt;
    undo::Tables tables;
    std::set<QString> keys;
    for (std::uint32_t i = 0; i < count; ++i) {
        auto table = takeTable(reader);
        if (!table || !keys.insert(table->name().key).second)
            return std::nullopt;
        tables.push_back(std::move(table));
    }
    if (!reader.isComplete() || reader.left() != 0)
        return std::nullopt;
    return tables;
}

std::unique_ptr<Table> KeptTablesReader::takeTable(ByteReader &reader) {
    const std::size_t records = reader.number<std::uint32_t>();
    const std::size_t fieldCount = reader.number<std::uint16_t>();
    std::optional<Name> name = takeName(reader);
    if (!name || records > limits::records || fieldCount > limits::fields)
        return nullptr;
    std::vector<Field> fields;
    std::set<QString> keys;
    for (std::size_t i = 0; i < fieldCount; ++i) {
        std::optional<Field> field = takeField(reader, records);
        if (!field || !keys.insert(field->name.key()).second)
            return nullptr;
        fields.push_back(std::move(*field));
    }
    return std::make_unique<Table>(std::move(*name), std::move(fields), records);
}

std::optional<Field> KeptTablesReader::takeField(ByteReader &reader, std::size_t records) {
    const auto type = columnType(reader.number<std::uint8_t>());
    const int size = reader.number<std::uint16_t>();
    const std::optional<Name> name = takeName(reader);
    if (!type || !name || (*type != ColumnType::Text && size != 0))
        return std::nullopt;
    std::vector<Piece> pieces;
    std::size_t held = 0;
    while (held < records) {
        const auto [field, first, count] = takePiece(reader);
        if (!field || field->type() != *type || count == 0 || count > records - held)
            return std::nullopt;
        pieces.push_back({field, first, count});
        held += count;
    }
    std::optional<Column> column = columnOf(pieces, *type, size, records);
    if (!column)
        return std::nullopt;
    return Field{FieldName(*name), size, std::move(*column)};
}

/// The field that has the values of a piece, null where there is none, with the first of them and their number.
std::tuple<const Field *, std::size_t, std::size_t> KeptTablesReader::takePiece(ByteReader &reader) {
    const std::tuple<const Field *, std::size_t, std::size_t> none = {nullptr, 0, 0};
    const auto kind = static_cast<KeptPiece>(reader.number<std::uint8_t>());
    if (kind == KeptPiece::Saved) {
        const std::size_t table = reader.number<std::uint32_t>();
        const std::size_t field = reader.number<std::uint32_t>();
        const std::size_t first = reader.number<std::uint32_t>();
        const std::size_t count = reader.number<std::uint32_t>();
        if (!reader.isComplete() || table >= m_saved.tableCount() || field >= m_saved.table(table).fieldCount() ||
            first > m_saved.table(table).recordCount() || count > m_saved.table(table).recordCount() - first)
            return none;
        return {&m_saved.table(table).field(field), first, count};
    }
    std::size_t number = m_own.size();
    if (kind == KeptPiece::Own) {
        auto table = decodeTable(reader.sizedBytes<std::uint32_t>());
        if (!table || (*table)->fieldCount() != 1)
            return none;
        m_own.push_back(std::move(*table));
    } else {
        number = reader.number<std::uint32_t>();
    }
    if (kind > KeptPiece::Earlier || !reader.isComplete() || number >= m_own.size())
        return none;
    return {&m_own[number]->field(0), 0, m_own[number]->recordCount()};
}

} // namespace qir
