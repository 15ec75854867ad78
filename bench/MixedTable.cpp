#include "bench/MixedTable.h"

#include "db/FieldTypes.h"

#include <cmath>
#include <stdexcept>

namespace qir::bench {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array<FieldType, mixedFieldCount> fieldTypes{
    FieldType::Long, FieldType::Long,   FieldType::Long,   FieldType::Long,   FieldType::Long,
    FieldType::Long, FieldType::Double, FieldType::Double, FieldType::Double, FieldType::Double,
    FieldType::Bool, FieldType::Bool,   FieldType::Date,   FieldType::Date,   FieldType::Text,
    FieldType::Text, FieldType::Text,   FieldType::Text,   FieldType::Text,   FieldType::Text};

constexpr char alphabet[] = "abcdefghijklmnopqrstuvwxyzeationrsl     "; // 40 symbols, the usual ones more often
constexpr std::uint64_t alphabetSize = 40;

double negatedNowAndThen(double value, std::uint64_t bits) {
    return ((bits >> 3) & 7) == 0 ? -value : value;
}

} // namespace

MixedRecords::MixedRecords(std::uint64_t seed)
    : m_state(seed * 0x9E3779B97F4A7C15U + 0xD1B54A32D192ED03U) {}

std::uint64_t MixedRecords::draw() {
    m_state ^= m_state << 13;
    m_state ^= m_state >> 7;
    m_state ^= m_state << 17;
    return m_state;
}

QString MixedRecords::text() {
    const auto length = static_cast<qsizetype>(5 + (draw() >> 8) % 16);
    QString result(length, Qt::Uninitialized);
    for (QChar &c : result)
        c = QLatin1Char(alphabet[(draw() >> 20) % alphabetSize]);
    return result;
}

QVariant MixedRecords::value(int field) {
    const std::uint64_t bits = draw();
    switch (fieldTypes[static_cast<std::size_t>(field)]) {
    case FieldType::Long: {
        constexpr std::uint64_t widths[] = {100, 10'000, 1'000'000, 2'000'000'000};
        return negatedNowAndThen(static_cast<double>((bits >> 8) % widths[bits & 3]), bits);
    }
    case FieldType::Double: {
        const int decimals = 2 + static_cast<int>(bits & 3);
        const double scale = std::pow(10.0, decimals);
        const auto digits = (bits >> 8) % static_cast<std::uint64_t>(std::pow(10.0, 5 + decimals));
        return negatedNowAndThen(static_cast<double>(digits) / scale, bits);
    }
    case FieldType::Bool:
        return static_cast<double>((bits >> 6) & 1);
    case FieldType::Date:
        return static_cast<double>((1970 + (bits >> 8) % 60) * 10'000 + (1 + (bits >> 20) % 12) * 100 + 1 +
                                   (bits >> 32) % 28);
    default:
        return text();
    }
}

const std::array<QVariant, mixedFieldCount> &MixedRecords::next() {
    for (int field = 0; field < mixedFieldCount; ++field)
        m_values[static_cast<std::size_t>(field)] = value(field);
    return m_values;
}

void addMixedTable(const QirDatabase &database, const QString &name, int records) {
    database.AddTable(name);
    database.QIRTableRecordSource(name);
    database.RemoveRecord(1);
    database.RemoveField(1);
    for (int field = 0; field < mixedFieldCount; ++field)
        database.AddField(u"f%1"_s.arg(field + 1), static_cast<int>(fieldTypes[static_cast<std::size_t>(field)]), 20);
    MixedRecords run;
    for (int record = 1; record <= records; ++record) {
        database.AddRecord();
        database.setQIRTableRecordsPointerOut(record);
        const auto &values = run.next();
        for (int field = 0; field < mixedFieldCount; ++field)
            database.setQIRTableRecordSetByIndex(field + 1, values[static_cast<std::size_t>(field)]);
    }
}

void changeSomeCells(const QirDatabase &database) {
    const auto records = static_cast<std::uint64_t>(database.QirTableRecordsCount());
    const std::uint64_t cells = records * mixedFieldCount;
    const std::uint64_t changes = std::max<std::uint64_t>(1, cells / 1000);
    MixedRecords other(77);
    for (std::uint64_t i = 0; i < changes; ++i) {
        const std::uint64_t cell = i * cells / changes + i % mixedFieldCount;
        const int field = static_cast<int>(cell % mixedFieldCount);
        database.setQIRTableRecordsPointerOut(static_cast<int>(cell / mixedFieldCount % records + 1));
        const QVariant before = database.QIRTableRecordSetByIndex(field + 1);
        // A bool has but two values: draw until the cell really changes.
        do
            database.setQIRTableRecordSetByIndex(field + 1, other.value(field));
        while (database.QIRTableRecordSetByIndex(field + 1) == before);
    }
}

void makeMixedFile(const QString &path, int records, bool changed) {
    const QirDatabase database = QirDatabase::create();
    if (!database.SetDatabaseFileName(path))
        throw std::runtime_error("the benchmark's file cannot take its name");
    addMixedTable(database, u"Mixed"_s, records);
    if (changed)
        changeSomeCells(database);
    database.setDtbHasChanged(true);
    database.SaveDtb();
    database.setDtbHasChanged(false);
}

} // namespace qir::bench
