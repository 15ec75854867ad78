#include "tests/tools/fake/FakeControl.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

#include <cstdlib>
#include <new>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

constexpr int records = 777;
constexpr std::size_t bytesOfColumn = records * sizeof(std::uint64_t); // what a column's places take

int columnsLeft = -1; // so many allocations of that size before one fails; negative: none fails

} // namespace

// Replaced for this whole program: the allocation that is due fails, once.
void *operator new(std::size_t size) {
    if (size == bytesOfColumn && columnsLeft >= 0 && columnsLeft-- == 0)
        throw std::bad_alloc();
    if (void *memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}
void *operator new(std::size_t size, const std::nothrow_t & /*tag*/) noexcept {
    return std::malloc(size == 0 ? 1 : size);
}
void operator delete(void *memory) noexcept {
    std::free(memory);
}
void operator delete(void *memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

/// Sorting when memory runs out half-way.
class SortMemoryTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void recordsAreNeverTornApart_data() {
        QTest::addColumn<int>("columnsDone");
        QTest::newRow("before the first column") << 0;
        QTest::newRow("between the columns") << 1;
    }

    void recordsAreNeverTornApart() {
        QFETCH(const int, columnsDone);
        const UseFake fake; // has no columns: the grid has texts of its own, which are put in order one by one
        TableOfTexts table{u"T"_s, {{u"Key"_s, FieldType::Long, {}}, {u"Same"_s, FieldType::Text, {}}}};
        for (int r = 1; r <= records; ++r) {
            table.fields[0].texts.append(QString::number(r * 31 % records));
            table.fields[1].texts.append(table.fields[0].texts.last());
        }
        EditorFixture fixture(makeFile(u"A.DDB"_s, {table}));
        const QList<QStringList> before = fixture.texts(0);
        rightPressHeader(fixture, 0, 1);
        fixture.dialogs().expectMessage(u"There is not enough memory."_s, u"QIR Database Editor"_s, u"OK"_s);
        columnsLeft = columnsDone;
        fixture.choose(Command::SortFPOP);
        QCOMPARE(columnsLeft, -1);
        QCOMPARE(fixture.texts(0), before);
        for (int r = 1; r <= records; ++r)
            QCOMPARE(fixture.grid(0).RowData(r), r);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(QApplication::overrideCursor(), nullptr);
    }
};

QTEST_MAIN(SortMemoryTest)
#include "sort_memory_test.moc"
