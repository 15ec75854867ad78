#include "tests/model/Content.h"
#include "tests/model/TableGenerators.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

#include <rapidcheck.h>

#include <algorithm>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

/// What a file keeps of a table: one without fields has no records there.
PlainTable asSaved(PlainTable table) {
    if (table.fields.empty())
        table.records.clear();
    return table;
}

/// The mark behind a table's line on one side.
QString markOf(const PlainTable *here, const PlainTable *there, bool differ) {
    if (!here)
        return u" ?"_s;
    return there && differ ? u" !"_s : u""_s;
}

/// What a grid has of the cells that differ.
Cells within(const Cells &cells, const PlainTable &table) {
    Cells inside;
    for (const auto &[record, field] : cells) {
        // A table without fields still shows one empty column.
        if (record <= table.recordCount() && field <= std::max(1, table.fieldCount()))
            inside.emplace(record, field);
    }
    return inside;
}

void checkMarks(EditorFixture &fixture, int line, const QString &name, const PlainTable *left, const PlainTable *right,
                bool differ) {
    RC_ASSERT(fixture.lines(0)[line].toStdString() == (name + markOf(left, right, differ)).toStdString());
    RC_ASSERT(fixture.lines(1)[line].toStdString() == (name + markOf(right, left, differ)).toStdString());
}

void checkLine(EditorFixture &fixture, int line, const QString &name, const PlainTable *left, const PlainTable *right,
               bool comparedBefore) {
    const bool differ = left && right && test::differ(*left, *right);
    const bool bothShown = left && right && !left->records.empty() && !right->records.empty();
    const Cells cells = bothShown ? differences(*left, *right) : Cells{};
    // Once a line's cells were compared, what the two grids cannot show is not marked.
    const bool shownDiffer = !cells.empty();
    checkMarks(fixture, line, name, left, right, comparedBefore ? shownDiffer : differ);

    fixture.clickLine(line % 2, line);
    checkMarks(fixture, line, name, left, right, shownDiffer);
    if (left && !left->records.empty())
        RC_ASSERT(redCells(fixture, 0) == within(cells, *left));
    if (right && !right->records.empty())
        RC_ASSERT(redCells(fixture, 1) == within(cells, *right));
    RC_ASSERT(fixture.problems().toStdString() == std::string());
}

void checkAnyTwoDatabases() {
    PlainDatabase left;
    PlainDatabase right;
    const std::vector<const char *> names{"A", "B", "C", "D"};
    for (const char *name : names) {
        const PlainTable table = *plainTables(name);
        const int where = *rc::gen::inRange(0, 6);
        if (where != 0)
            left.tables.push_back(asSaved(table));
        if (where != 1)
            right.tables.insert(right.tables.begin(),
                                asSaved(*rc::gen::oneOf(changedTables(table), plainTables(name))));
    }
    const QTemporaryDir folder;
    writeFile(folder.filePath(u"L.DDB"_s), left);
    writeFile(folder.filePath(u"R.DDB"_s), right);
    EditorFixture fixture;
    fixture.openBoth(folder.filePath(u"L.DDB"_s), folder.filePath(u"R.DDB"_s));
    // Opening has selected the first line and so compared it already.
    fixture.list(0).setListIndex(fixture.list(0).ListCount() - 1);
    fixture.choose(Command::CompareAgainMenu);
    const int selected = fixture.list(0).ListIndex();
    int line = 0;
    for (const char *const utf8 : names) {
        const QString name = QString::fromUtf8(utf8);
        const PlainTable *leftTable = left.find(name);
        const PlainTable *rightTable = right.find(name);
        if (!leftTable && !rightTable)
            continue;
        checkLine(fixture, line, name, leftTable, rightTable, line == selected);
        ++line;
    }
    RC_ASSERT(fixture.list(0).ListCount() == line);
    RC_ASSERT(fixture.list(1).ListCount() == line);
}

} // namespace

/// Every mark and every coloured cell in the real window, against a naive reference.
class ComparePropertyTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void marksAndColoursAreThoseOfTheReferenceForAnyTwoDatabases() {
        if (!qEnvironmentVariableIsSet("RC_PARAMS"))
            qputenv("RC_PARAMS", "max_success=25"); // each starts the editor
        QVERIFY(rc::check("marks and colours", checkAnyTwoDatabases));
    }
};

QTEST_MAIN(ComparePropertyTest)
#include "compare_property_test.moc"
