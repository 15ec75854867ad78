#include "tests/qirtbase/model/GeneratedBodies.h"

#include <QtEndian>

#include <algorithm>
#include <cstdint>
#include <random>

namespace qir {

namespace {

constexpr std::uint8_t boolType = 1;
constexpr std::uint8_t doubleType = 7;
constexpr std::uint8_t textType = 10;

struct GeneratedField {
    QByteArray name;
    std::uint8_t type = boolType;
    std::vector<QByteArray> texts; // of a text field; shorter than the records: the others are empty
};

class BodyMaker {
public:
    explicit BodyMaker(std::string name) { m_made.name = std::move(name); }

    void addTable(const QByteArray &name, std::uint32_t records, const std::vector<GeneratedField> &fields) {
        QByteArray payload;
        put<std::uint32_t>(payload, records);
        put<std::uint16_t>(payload, fields.size());
        putName(payload, name);
        for (const GeneratedField &field : fields) {
            put<std::uint8_t>(payload, field.type);
            put<std::uint16_t>(payload, field.type == textType ? 65535 : 0);
            putName(payload, field.name);
        }
        for (const GeneratedField &field : fields)
            putColumn(payload, records, field);
        putSection(1, payload);
        ++m_made.tables;
        m_made.fields += fields.size();
        m_made.cells += fields.size() * records;
    }

    GeneratedBody end() {
        putSection(0, {});
        return std::move(m_made);
    }

private:
    template<class Number>
    static void put(QByteArray &out, std::uint64_t number) {
        const Number little = qToLittleEndian(static_cast<Number>(number));
        out.append(reinterpret_cast<const char *>(&little), sizeof little);
    }
    static void putName(QByteArray &out, const QByteArray &name) {
        put<std::uint16_t>(out, static_cast<std::uint64_t>(name.size()));
        out += name;
    }
    static void putColumn(QByteArray &out, std::uint32_t records, const GeneratedField &field) {
        if (field.type != textType) {
            out += QByteArray(qsizetype{records} * (field.type == doubleType ? 8 : 1), '\0');
            return;
        }
        for (std::size_t record = 0; record < records; ++record)
            put<std::uint32_t>(out, record < field.texts.size() ? static_cast<std::uint64_t>(field.texts[record].size())
                                                                : 0);
        for (const QByteArray &text : field.texts)
            out += text;
    }
    void putSection(std::uint8_t type, const QByteArray &payload) {
        put<std::uint8_t>(m_made.bytes, type);
        put<std::uint8_t>(m_made.bytes, 1);
        put<std::uint16_t>(m_made.bytes, 0);
        put<std::uint64_t>(m_made.bytes, static_cast<std::uint64_t>(payload.size()));
        m_made.bytes += payload;
    }

    GeneratedBody m_made;
};

std::vector<GeneratedField> manyFields(int count, const QByteArray &stem, std::uint8_t type = boolType) {
    std::vector<GeneratedField> fields;
    for (int i = 0; i < count; ++i)
        fields.push_back({stem + QByteArray::number(i), type, {}});
    return fields;
}

GeneratedBody oneTable(std::string name, std::uint32_t records, const std::vector<GeneratedField> &fields) {
    BodyMaker maker(std::move(name));
    maker.addTable("T", records, fields);
    return maker.end();
}

GeneratedBody manyTables(std::string name, int tables, const QByteArray &stem,
                         const std::vector<GeneratedField> &fields) {
    BodyMaker maker(std::move(name));
    for (int i = 0; i < tables; ++i)
        maker.addTable(stem + QByteArray::number(i), 0, fields);
    return maker.end();
}

} // namespace

std::vector<GeneratedBody> extremeBodies(int part) {
    const QByteArray wide = "\xF0\x9F\x98\x80";
    const auto some = [part](int count) { return std::max(2, count / part); };
    const auto records = [part](int count) { return static_cast<std::uint32_t>(count / part); };
    return {
        manyTables("tables", some(4096), "T", {}),
        manyTables("long names of tables", some(4000), QByteArray(240, 'x'), {}),
        manyTables("fields", some(100), "T", manyFields(1024, "f")),
        manyTables("fields of texts", some(100), "T", manyFields(1024, "f", textType)),
        manyTables("long names of fields", some(4), "T", manyFields(some(1024), QByteArray(240, 'x'))),
        manyTables("names of wide characters", 2, "T", manyFields(some(1024), wide.repeated(120))),
        oneTable("records", records(1'000'000), manyFields(1, "f")),
        oneTable("records of empty texts", records(200'000), manyFields(1, "f", textType)),
        oneTable("fields and records", records(1000), manyFields(1024, "f")),
        oneTable("numbers", records(100), manyFields(1024, "f", doubleType)),
        oneTable("one long text", records(50'000),
                 {{"a", textType, {QByteArray(65535, 'x')}}, {"b", boolType, {}}, {"c", textType, {}}}),
        oneTable("a wide character in a long text", 2, {{"a", textType, {wide + QByteArray(65534, 'x'), "x"}}}),
        oneTable("a long name over many records", records(50'000),
                 {{QByteArray(255, 'x'), boolType, {}}, {"b", boolType, {}}}),
    };
}

GeneratedBody randomBody(unsigned seed) {
    std::mt19937 random(seed);
    const auto upTo = [&](int most) { return std::uniform_int_distribution<int>(0, most)(random); };
    BodyMaker maker("random " + std::to_string(seed));
    for (int table = upTo(20); table >= 0; --table) {
        std::vector<GeneratedField> fields = manyFields(upTo(upTo(3) == 0 ? 300 : 5), QByteArray(upTo(200), 'n'));
        const int records = fields.empty() ? 0 : upTo(upTo(3) == 0 ? 2000 : 10);
        for (GeneratedField &field : fields) {
            constexpr std::uint8_t types[] = {boolType, doubleType, textType};
            field.type = types[upTo(2)];
            for (int text = field.type == textType ? records : 0; text > 0; --text)
                field.texts.push_back(upTo(500) == 0 ? QByteArray(upTo(65535), 'x') : QByteArray(upTo(5), 'y'));
        }
        maker.addTable("T" + QByteArray::number(table), static_cast<std::uint32_t>(records), fields);
    }
    return maker.end();
}

} // namespace qir
