#include "tests/support/CountedMemory.h"
#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

constexpr int shortTable = 300;
constexpr int longTable = 30'000;

struct Costs {
    std::size_t key = 0; // allocations
    std::size_t undo = 0;
    std::size_t undoBytes = 0; // at most at once
};

void takeBack(EditorFixture &fixture) {
    hands::key(&fixture.grid(0), Qt::Key_Z, Qt::ControlModifier);
}

} // namespace

/// What an edit and taking it back cost in a short table and in a long one.
class EditCostsTest : public WindowTest {
    Q_OBJECT

    Costs costsIn(int records, bool beside) const {
        const std::vector<TableOfTexts> tables{counted(u"T"_s, records, 3)};
        EditorFixture fixture(makeFile(u"A.DDB"_s, tables));
        if (beside)
            openBoth(fixture, tables, tables);
        Costs costs;
        for (int time = 0; time < 2; ++time) { // the first one makes what is made once
            beginEdit(fixture, 0, 2, 1);
            hands::type(&fixture.cellEditor(0), u"1"_s);
            const CountedMemory ofKey;
            hands::type(&fixture.cellEditor(0), u"2"_s);
            costs.key = ofKey.allocations();
            hands::key(&fixture.cellEditor(0), Qt::Key_Return);
            const CountedMemory ofUndo;
            takeBack(fixture);
            costs.undo = ofUndo.allocations();
            costs.undoBytes = ofUndo.peak();
        }
        return costs;
    }

private Q_SLOTS:
    void aKeystrokeAndItsUndoAllocateAsMuchInALongTable_data() {
        QTest::addColumn<bool>("beside");
        QTest::newRow("alone") << false;
        QTest::newRow("beside the same table") << true;
    }

    void aKeystrokeAndItsUndoAllocateAsMuchInALongTable() {
        QFETCH(const bool, beside);
        if (!CountedMemory::counts())
            QSKIP("this build does not count");
        if (!EditorFixture(makeFile(u"A.DDB"_s, {counted(u"T"_s, 1, 1)})).database(0).hasColumns())
            QSKIP("a component without columns is asked value by value");
        const Costs inShort = costsIn(shortTable, beside);
        const Costs inLong = costsIn(longTable, beside);
        qInfo("a key: %zu and %zu allocations; undo: %zu and %zu, %zu and %zu bytes", inShort.key, inLong.key,
              inShort.undo, inLong.undo, inShort.undoBytes, inLong.undoBytes);
        QVERIFY(inShort.key > 0);
        QVERIFY(inLong.key <= inShort.key + 20);
        QVERIFY(inLong.undo <= inShort.undo + 100);
        QVERIFY(inLong.undoBytes <= inShort.undoBytes + 4 * longTable);
    }
};

QTEST_MAIN(EditCostsTest)
#include "edit_costs_test.moc"
