// The component over 1,000,000 records of 20 mixed fields: body codec, load and save, every way to read and write
// cells, called through its meta-object as other programs call it.

#include "bench/MixedTable.h"
#include "qirtbase/clsQirDatabase.h"
#include "qirtbase/model/BodyCodec.h"

#include <benchmark/benchmark.h>

#include <QMetaMethod>
#include <QMetaProperty>
#include <QTemporaryDir>

#include <malloc.h>

#include <memory>
#include <stdexcept>

using namespace qir;
using namespace qir::bench;
using namespace Qt::StringLiterals;

namespace {

constexpr int recordCount = 1'000'000;
constexpr double cellCount = double{recordCount} * mixedFieldCount;
constexpr int longField = 1;
constexpr int doubleField = 7;
constexpr int textField = 15;

constexpr int typeCodes[mixedFieldCount] = {4, 4, 4, 4, 4, 4, 7, 7, 7, 7, 1, 1, 8, 8, 10, 10, 10, 10, 10, 10};

/// The members that are measured, looked up once as a binding does.
class Members {
public:
    explicit Members(QObject &object)
        : m_object(object) {}

    QVariant readCell(int field) {
        QVariant value;
        void *arguments[] = {&value, &field};
        QMetaObject::metacall(&m_object, QMetaObject::InvokeMetaMethod, m_read, arguments);
        return value;
    }
    void writeCell(int field, const QVariant &value) {
        void *arguments[] = {nullptr, &field, const_cast<QVariant *>(&value)};
        QMetaObject::metacall(&m_object, QMetaObject::InvokeMetaMethod, m_write, arguments);
    }
    void readRecord(int record, QStringList &values) {
        void *arguments[] = {nullptr, &record, &values};
        QMetaObject::metacall(&m_object, QMetaObject::InvokeMetaMethod, m_readRecord, arguments);
    }
    void point(int record) {
        int status = -1;
        int flags = 0;
        void *arguments[] = {&record, nullptr, &status, &flags};
        QMetaObject::metacall(&m_object, QMetaObject::WriteProperty, m_pointer, arguments);
    }

private:
    int method(const char *signature) const { return m_object.metaObject()->indexOfMethod(signature); }

    QObject &m_object;
    int m_read = method("QIRTableRecordSetByIndex(int)");
    int m_write = method("QIRTableRecordSetByIndex(int,QVariant)");
    int m_readRecord = method("GetQirRecord(int,QStringList&)");
    int m_pointer = m_object.metaObject()->indexOfProperty("QIRTableRecordsPointerOut");
};

void fill(clsQirDatabase &database) {
    database.AddTable(u"Mixed"_s);
    database.QIRTableRecordSource(u"Mixed"_s);
    database.RemoveRecord(1);
    database.RemoveField(1);
    for (int field = 0; field < mixedFieldCount; ++field)
        database.AddField(u"f%1"_s.arg(field + 1), typeCodes[field], 20);
    Members members(database);
    MixedRecords run;
    for (int record = 1; record <= recordCount; ++record) {
        database.AddRecord();
        members.point(record);
        const auto &values = run.next();
        for (int field = 1; field <= mixedFieldCount; ++field)
            members.writeCell(field, values[static_cast<std::size_t>(field) - 1]);
    }
}

/// The file that everything starts from, made once.
QString mixedFile() {
    static QTemporaryDir folder;
    static const QString path = [] {
        const QString file = folder.filePath(u"MIXED.DDB"_s);
        clsQirDatabase database;
        if (!database.SetDatabaseFileName(file))
            throw std::runtime_error("the benchmark's file cannot take its name");
        fill(database);
        database.SaveDtb();
        return file;
    }();
    return path;
}

std::unique_ptr<clsQirDatabase> loaded() {
    auto database = std::make_unique<clsQirDatabase>();
    if (!database->LoadDtb(mixedFile(), u""_s))
        throw std::runtime_error(database->LastError().toStdString());
    database->QIRTableRecordSource(u"Mixed"_s);
    return database;
}

/// Loaded once, for benchmarks that only read.
clsQirDatabase &shared() {
    static const std::unique_ptr<clsQirDatabase> database = loaded();
    return *database;
}

std::size_t bytesInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

QByteArray mixedBody() {
    DatabaseFile file(FileOps::system());
    return file.load(mixedFile(), u""_s).value();
}

void decode(benchmark::State &state) {
    const QByteArray body = mixedBody();
    for (auto _ : state) {
        const std::size_t before = bytesInUse();
        auto database = decodeBody(body);
        state.counters["bytes_per_cell"] = static_cast<double>(bytesInUse() - before) / cellCount;
        benchmark::DoNotOptimize(database);
        state.PauseTiming(); // freeing is no part of a load
        database = tl::unexpected(LoadError{});
        state.ResumeTiming();
    }
    state.counters["body_MiB"] = static_cast<double>(body.size()) / (1 << 20);
}
BENCHMARK(decode)->Unit(benchmark::kMillisecond)->UseRealTime();

void encode(benchmark::State &state) {
    const auto database = decodeBody(mixedBody());
    for (auto _ : state) {
        QByteArray body = encodeBody(*database);
        benchmark::DoNotOptimize(body.data());
    }
}
BENCHMARK(encode)->Unit(benchmark::kMillisecond)->UseRealTime();

void load(benchmark::State &state) {
    mixedFile();
    for (auto _ : state) {
        const std::size_t before = bytesInUse();
        auto database = loaded();
        state.counters["bytes_per_cell"] = static_cast<double>(bytesInUse() - before) / cellCount;
        state.PauseTiming();
        database.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(load)->Unit(benchmark::kMillisecond)->UseRealTime();

void save(benchmark::State &state) {
    const auto database = loaded();
    for (auto _ : state) {
        database->setDtbHasChanged(true);
        database->SaveDtb();
    }
}
BENCHMARK(save)->Unit(benchmark::kMillisecond)->UseRealTime();

void everyRecordAsTexts(benchmark::State &state) {
    Members members(shared());
    QStringList values;
    for (auto _ : state) {
        for (int record = 1; record <= recordCount; ++record)
            members.readRecord(record, values);
    }
    state.counters["ns_per_cell"] =
        benchmark::Counter(cellCount, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(everyRecordAsTexts)->Unit(benchmark::kMillisecond)->UseRealTime();

void readOneCell(benchmark::State &state, int field) {
    Members members(shared());
    members.point(recordCount / 2);
    for (auto _ : state)
        benchmark::DoNotOptimize(members.readCell(field));
}
BENCHMARK_CAPTURE(readOneCell, long, longField);
BENCHMARK_CAPTURE(readOneCell, double, doubleField);
BENCHMARK_CAPTURE(readOneCell, text, textField);

void pointAtARecord(benchmark::State &state) {
    Members members(shared());
    int record = 0;
    for (auto _ : state)
        members.point(record = record % recordCount + 1);
}
BENCHMARK(pointAtARecord);

void everyCellAsValue(benchmark::State &state) {
    Members members(shared());
    for (auto _ : state) {
        for (int record = 1; record <= recordCount; ++record) {
            members.point(record);
            for (int field = 1; field <= mixedFieldCount; ++field)
                benchmark::DoNotOptimize(members.readCell(field));
        }
    }
}
BENCHMARK(everyCellAsValue)->Unit(benchmark::kMillisecond)->UseRealTime();

/// Writes every cell within one group: what stands there already, or the record `shift` further down.
void rewriteEveryCell(benchmark::State &state, int shift) {
    const auto database = loaded();
    Members members(*database);
    const auto source = loaded();
    Members from(*source);
    for (auto _ : state) {
        const std::size_t before = bytesInUse();
        database->BeginChanges();
        for (int record = 1; record <= recordCount; ++record) {
            members.point(record);
            from.point((record - 1 + shift) % recordCount + 1);
            for (int field = 1; field <= mixedFieldCount; ++field)
                members.writeCell(field, from.readCell(field));
        }
        state.counters["extra_bytes_per_cell"] = static_cast<double>(bytesInUse() - before) / cellCount;
        database->CancelChanges();
    }
    database->setDtbHasChanged(false);
}
BENCHMARK_CAPTURE(rewriteEveryCell, equal, 0)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);
BENCHMARK_CAPTURE(rewriteEveryCell, changed, 1)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

void changeTwoCellsInAGroup(benchmark::State &state) {
    const auto database = loaded();
    Members members(*database);
    members.point(recordCount);
    int value = 0;
    for (auto _ : state) {
        database->BeginChanges();
        members.writeCell(longField, ++value);
        members.writeCell(longField + 1, value);
        database->EndChanges();
    }
    database->setDtbHasChanged(false);
}
BENCHMARK(changeTwoCellsInAGroup);

} // namespace

BENCHMARK_MAIN();
