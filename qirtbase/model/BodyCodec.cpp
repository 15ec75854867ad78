#include "qirtbase/model/BodyCodec.h"

#include "base/ByteReader.h"
#include "base/ByteWriter.h"
#include "base/Collation.h"
#include "base/columns/UnicodeText.h"
#include "qirtbase/model/ColumnReader.h"
#include "qirtbase/model/ColumnWriter.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace qir {

namespace {

constexpr std::size_t tableHeadSize = sizeof(std::uint32_t) + sizeof(std::uint16_t);
constexpr std::size_t fieldHeadSize = sizeof(std::uint8_t) + sizeof(std::uint16_t);
constexpr std::size_t nameHeadSize = sizeof(std::uint16_t);

// ---------------------------------------------------------------------------------------------------------- encoding

std::size_t encodedSize(const QString &name) {
    return nameHeadSize + utf8Size(QStringView(name));
}

std::size_t encodedSize(const Table &table) {
    std::size_t size = tableHeadSize + encodedSize(table.name().text);
    for (const Field &field : table.fields())
        size += fieldHeadSize + nameHeadSize + field.name.utf8().size() + writtenSize(field.column);
    return size;
}

/// Writes into an array that has the room already: it grows by itself where a size was told wrong.
class BodyWriter {
public:
    BodyWriter(QByteArray &out, std::size_t size)
        : m_out(out) {
        out.reserve(static_cast<qsizetype>(size));
    }

    void bytes(QByteArrayView bytes) { m_out.bytes(bytes); }
    void sectionHead(std::uint8_t type, std::uint8_t flags, std::size_t length) {
        m_out.number(type);
        m_out.number(flags);
        m_out.number(std::uint16_t{0});
        m_out.number(std::uint64_t{length});
    }
    void table(const Table &table, BodyFor use) {
        const bool isCounted = table.fieldCount() != 0 || use == BodyFor::Journal;
        m_out.number(static_cast<std::uint32_t>(isCounted ? table.recordCount() : 0));
        m_out.number(static_cast<std::uint16_t>(table.fieldCount()));
        name(table.name().text);
        for (const Field &field : table.fields()) {
            m_out.number(static_cast<std::uint8_t>(field.type()));
            m_out.number(static_cast<std::uint16_t>(field.size));
            m_out.sizedBytes<std::uint16_t>(QByteArrayView(field.name.utf8()));
        }
        columns(table.fields());
    }

private:
    void name(const QString &text) {
        const std::size_t size = utf8Size(QStringView(text));
        m_out.number(static_cast<std::uint16_t>(size));
        writeUtf8(m_out.room(size).data(), QStringView(text));
    }

    void columns(const std::vector<Field> &fields) {
        std::vector<const Column *> columns;
        std::size_t size = 0;
        for (const Field &field : fields) {
            columns.push_back(&field.column);
            size += writtenSize(field.column);
        }
        writeColumns(columns, m_out.room(size));
    }

    ByteWriter m_out;
};

// ---------------------------------------------------------------------------------------------------------- decoding

/// Why a body is refused; ends the decoding, leaves this file by decodeBody() alone.
struct Refusal {
    LoadErrorKind kind;
    QString text;
};

[[noreturn]] void refuse(const QString &text) {
    throw Refusal{LoadErrorKind::Damaged, text};
}
[[noreturn]] void refuseLimit(const QString &text) {
    throw Refusal{LoadErrorKind::Limits, text};
}

/// What may still be allocated.
class Budget {
public:
    explicit Budget(std::uint64_t bytes)
        : m_left(bytes) {}

    void take(std::uint64_t bytes) {
        if (bytes > m_left)
            refuseLimit(u"its tables take more memory than is allowed"_s);
        m_left -= bytes;
    }

private:
    std::uint64_t m_left;
};

/// A reader that refuses the body where less is left than is asked for.
class Bytes {
public:
    explicit Bytes(QByteArrayView bytes)
        : m_reader(bytes) {}

    std::uint64_t left() const { return m_reader.left(); }
    QByteArrayView take(std::uint64_t count) { return complete(m_reader.bytes(count)); }
    template<class Number>
    Number number() {
        return complete(m_reader.number<Number>());
    }

private:
    template<class Taken>
    Taken complete(Taken taken) const {
        if (!m_reader.isComplete())
            refuse(u"a length in it reaches beyond its end"_s);
        return taken;
    }

    ByteReader m_reader;
};

struct SectionHead {
    std::uint8_t type = 0;
    std::uint8_t flags = 0;
    Bytes payload;
};

SectionHead readSection(Bytes &body) {
    const auto type = body.number<std::uint8_t>();
    const auto flags = body.number<std::uint8_t>();
    if (body.number<std::uint16_t>() != 0)
        refuse(u"bytes that must be zero are not"_s);
    const auto length = body.number<std::uint64_t>();
    return {type, flags, Bytes(body.take(length))};
}

class TableReader {
public:
    TableReader(Bytes payload, const BodyLimits &limits, Budget &budget, BodyMemory memory)
        : m_payload(payload)
        , m_limits(limits)
        , m_memory(memory)
        , m_budget(budget) {}

    std::unique_ptr<Table> read() {
        m_records = m_payload.number<std::uint32_t>();
        const std::size_t fieldCount = m_payload.number<std::uint16_t>();
        if (m_records > m_limits.records)
            refuseLimit(u"a table has more than %1 records"_s.arg(m_limits.records));
        if (fieldCount > m_limits.fields)
            refuseLimit(u"a table has more than %1 fields"_s.arg(m_limits.fields));
        if (fieldCount == 0 && m_records > m_limits.recordsWithoutFields)
            refuse(u"a table without fields has records"_s);
        m_budget.take(sizeof(Table));
        Name tableName = readName();

        struct FieldHead {
            ColumnType type;
            std::uint16_t size;
            Name name;
        };
        std::vector<FieldHead> heads;
        QSet<QString> keys;
        for (std::size_t i = 0; i < fieldCount; ++i) {
            m_budget.take(sizeof(FieldHead) + sizeof(Field));
            const auto type = columnType(m_payload.number<std::uint8_t>());
            if (!type)
                refuse(u"a field has an unknown type"_s);
            const auto size = m_payload.number<std::uint16_t>();
            if (*type != ColumnType::Text && size != 0)
                refuse(u"a field that is no text has a size"_s);
            heads.push_back({*type, size, readName()});
            if (keys.contains(heads.back().name.key))
                refuse(u"two fields of the table \"%1\" have the same name \"%2\""_s.arg(tableName.text,
                                                                                         heads.back().name.text));
            keys.insert(heads.back().name.key);
        }
        std::vector<Field> fields;
        fields.reserve(fieldCount);
        std::vector<ColumnBytes> places;
        places.reserve(fieldCount);
        for (const FieldHead &head : heads)
            places.push_back(locateColumn(head.type, head.size));
        std::vector<Column> columns = readColumns(places, m_memory);
        for (std::size_t i = 0; i < fieldCount; ++i)
            fields.push_back({FieldName(heads[i].name), heads[i].size, std::move(columns[i])});
        if (m_payload.left() != 0)
            refuse(u"a table has bytes left over"_s);
        return std::make_unique<Table>(std::move(tableName), std::move(fields), m_records);
    }

private:
    Name readName() {
        const QByteArrayView bytes = m_payload.take(m_payload.number<std::uint16_t>());
        m_budget.take(static_cast<std::uint64_t>(bytes.size()) * 2 * sizeof(QChar)); // text and key
        Name name;
        const auto length = readUtf8(bytes, name.text);
        if (!length)
            refuse(u"a name is not in UTF-8"_s);
        if (*length > m_limits.nameLength)
            refuseLimit(u"a name is longer than %1 characters"_s.arg(m_limits.nameLength));
        name.key = collationKey(name.text);
        if (name.key.isEmpty())
            refuse(u"a name is empty"_s);
        return name;
    }

    /// Texts are found by their lengths alone: no column is read before its neighbours' places are known.
    ColumnBytes locateColumn(ColumnType type, std::size_t size) {
        if (type != ColumnType::Text) {
            const QByteArrayView values = m_payload.take(std::uint64_t{m_records} * valueSize(type));
            m_budget.take(static_cast<std::uint64_t>(values.size()));
            return {type, size, values, {}};
        }
        const QByteArrayView lengths = m_payload.take(std::uint64_t{m_records} * textLengthSize);
        std::uint64_t total = 0;
        for (qsizetype i = 0; i < lengths.size(); i += textLengthSize)
            total += qFromLittleEndian<std::uint32_t>(lengths.data() + i);
        const QByteArrayView texts = m_payload.take(total);
        m_budget.take(std::uint64_t{m_records} * sizeof(TextPlace) + total);
        return {type, size, lengths, texts};
    }

    Bytes m_payload;
    const BodyLimits &m_limits;
    BodyMemory m_memory;
    Budget &m_budget;
    std::size_t m_records = 0;
};

Database readDatabase(Bytes body, const BodyLimits &limits, BodyMemory memory) {
    Budget budget(limits.memory);
    Database database;
    QSet<QString> keys;
    while (true) {
        SectionHead section = readSection(body);
        const bool mustBeKnown = (section.flags & section::mustBeKnown) != 0;
        const bool isTable = section.type == static_cast<std::uint8_t>(SectionType::Table);
        const bool isEnd = section.type == static_cast<std::uint8_t>(SectionType::End);
        if ((isTable || isEnd) && section.flags != section::mustBeKnown)
            refuse(u"a section has flags that its type does not have"_s);
        if (isEnd) {
            if (section.payload.left() != 0 || body.left() != 0)
                refuse(u"there are bytes after its end"_s);
            return database;
        }
        if (isTable) {
            if (!database.foreignSections().empty())
                refuse(u"a table stands after other sections"_s);
            if (database.tableCount() >= limits.tables)
                refuseLimit(u"it has more than %1 tables"_s.arg(limits.tables));
            auto table = TableReader(section.payload, limits, budget, memory).read();
            if (keys.contains(table->name().key))
                refuse(u"two tables have the same name \"%1\""_s.arg(table->name().text));
            keys.insert(table->name().key);
            database.append(std::move(table));
        } else if (mustBeKnown) {
            throw Refusal{LoadErrorKind::NewerVersion, u"it was made by a newer version of this program"_s};
        } else {
            const QByteArrayView payload = section.payload.take(section.payload.left());
            budget.take(sizeof(ForeignSection) + static_cast<std::uint64_t>(payload.size()));
            database.foreignSections().push_back({section.type, section.flags, payload.toByteArray()});
        }
    }
}

LoadResult<Database> decodeBytes(QByteArrayView body, const BodyLimits &limits, BodyMemory memory) {
    try {
        return readDatabase(Bytes(body), limits, memory);
    } catch (const Refusal &refusal) {
        return refused(refusal.kind, refusal.text);
    } catch (const ColumnRefusal &refusal) {
        return refused(LoadErrorKind::Damaged, refusal.text);
    }
}

} // namespace

QByteArray encodeBody(const Database &database, BodyFor use) {
    std::vector<std::size_t> tableSizes;
    std::size_t size = section::headSize; // of the end
    for (std::size_t i = 0; i < database.tableCount(); ++i) {
        tableSizes.push_back(encodedSize(database.table(i)));
        size += section::headSize + tableSizes.back();
    }
    for (const ForeignSection &foreign : database.foreignSections())
        size += section::headSize + static_cast<std::size_t>(foreign.payload.size());

    QByteArray body;
    BodyWriter writer(body, size);
    for (std::size_t i = 0; i < database.tableCount(); ++i) {
        writer.sectionHead(static_cast<std::uint8_t>(SectionType::Table), section::mustBeKnown, tableSizes[i]);
        writer.table(database.table(i), use);
    }
    for (const ForeignSection &foreign : database.foreignSections()) {
        writer.sectionHead(foreign.type, foreign.flags, static_cast<std::size_t>(foreign.payload.size()));
        writer.bytes(foreign.payload);
    }
    writer.sectionHead(static_cast<std::uint8_t>(SectionType::End), section::mustBeKnown, 0);
    return body;
}

LoadResult<Database> decodeBody(QByteArrayView body, const BodyLimits &limits) {
    return decodeBytes(body, limits, BodyMemory::Kept);
}

LoadResult<Database> decodeBody(QByteArray &&body, const BodyLimits &limits) {
    const QByteArray taken = std::move(body);
    return decodeBytes(taken, limits, taken.isDetached() ? BodyMemory::GivenBack : BodyMemory::Kept);
}

QByteArray encodeTable(const Table &table, BodyFor use) {
    QByteArray payload;
    BodyWriter(payload, encodedSize(table)).table(table, use);
    return payload;
}

LoadResult<std::unique_ptr<Table>> decodeTable(QByteArrayView payload, const BodyLimits &limits) {
    try {
        Budget budget(limits.memory);
        return TableReader(Bytes(payload), limits, budget, BodyMemory::Kept).read();
    } catch (const Refusal &refusal) {
        return refused(refusal.kind, refusal.text);
    } catch (const ColumnRefusal &refusal) {
        return refused(LoadErrorKind::Damaged, refusal.text);
    }
}

} // namespace qir
