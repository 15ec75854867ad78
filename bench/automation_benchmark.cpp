// What a call through the binding costs, beside the work that the member does.

#include "platform/automation/Member.h"

#include <QObject>
#include <QStringList>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

class Counter final : public QObject {
    Q_OBJECT
    Q_PROPERTY(int Count READ count)

public:
    int count() const { return m_count; }
    Q_INVOKABLE void Add(int number) { m_count += number; }
    Q_INVOKABLE QVariant Value(int number) { return number + m_count; }
    Q_INVOKABLE void Fill(int number, QStringList &values) { values[0].resize(number & 1); }
    Q_INVOKABLE double Half(double number) { return number / 2; }

private:
    int m_count = 0;
};

struct Fixture {
    qir::AutomationObject object{new Counter};
};

void callMethod(benchmark::State &state) {
    const Fixture fixture;
    const qir::Method<void(int)> add{"Add"};
    for (auto _ : state)
        add(fixture.object, 1);
}
BENCHMARK(callMethod);

void readProperty(benchmark::State &state) {
    const Fixture fixture;
    const qir::Property<int> count{"Count"};
    for (auto _ : state)
        benchmark::DoNotOptimize(count.read(fixture.object));
}
BENCHMARK(readProperty);

void readVariant(benchmark::State &state) {
    const Fixture fixture;
    const qir::Method<QVariant(int)> value{"Value"};
    QVariant kept;
    for (auto _ : state)
        value.read(fixture.object, kept, 1);
}
BENCHMARK(readVariant);

void fillArray(benchmark::State &state) {
    const Fixture fixture;
    const qir::Method<void(int, QStringList &)> fill{"Fill"};
    QStringList values{u"text"_s};
    for (auto _ : state)
        fill(fixture.object, 1, values);
}
BENCHMARK(fillArray);

void callConverted(benchmark::State &state) {
    const Fixture fixture;
    const qir::Method<int(int)> half{"Half"};
    for (auto _ : state)
        benchmark::DoNotOptimize(half(fixture.object, 4));
}
BENCHMARK(callConverted);

} // namespace

BENCHMARK_MAIN();

#include "automation_benchmark.moc"
