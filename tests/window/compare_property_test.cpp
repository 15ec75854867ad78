#include "tests/compare/PlainTables.h"
#include "tests/window/CompareSupport.h"

#include <rapidcheck.h>

#include <algorithm>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

void writeDatabase(const QString &path, const PlainDatabase &tables) {
    const QirDatabase database = makeDatabase(tables);
    if (!database.SetDatabaseFileName(path))
        throw std::runtime_error("the test database cannot take its name");
    database.setDtbHasChanged(true);
    database.SaveDtb();
    database.setDtbHasChanged(false);
}

/// What a file keeps of a table: one without fields has no records there.
PlainTable asSaved(PlainTable table) {
    if (table.textFields.empty())
        table.records.clear();
    return table;
}

const PlainTable *find(const PlainDatabase &tables, const std::string &name) {
    const auto found = std::ranges::find(tables, name, &PlainTable::name);
    return found == tables.end() ? nullptr : &*found;
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
        if (record <= static_cast<int>(table.records.size()) &&
            field <= std::max(1, static_cast<int>(table.textFields.size())))
            inside.emplace(record, field);
    }
    return inside;
}

void checkMarks(EditorFixture &fixture, int line, const std::string &name, const PlainTable *left,
                const PlainTable *right, bool differ) {
    const QString text = QString::fromStdString(name);
    RC_ASSERT(fixture.lines(0)[line].toStdString() == (text + markOf(left, right, differ)).toStdString());
    RC_ASSERT(fixture.lines(1)[line].toStdString() == (text + markOf(right, left, differ)).toStdString());
}

void checkLine(EditorFixture &fixture, int line, const std::string &name, const PlainTable *left,
               const PlainTable *right, bool comparedBefore) {
    const bool differ = left && right && naivelyDiffer(*left, *right);
    const bool bothShown = left && right && !left->records.empty() && !right->records.empty();
    const Cells cells = bothShown ? naiveDifferences(*left, *right) : Cells{};
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
    const std::vector<std::string> names{"A", "B", "C", "D"};
    for (const std::string &name : names) {
        const PlainTable table = *plainTables(name);
        const int where = *rc::gen::inRange(0, 6);
        if (where != 0)
            left.push_back(asSaved(table));
        if (where != 1)
            right.insert(right.begin(), asSaved(*rc::gen::oneOf(changedTables(table), plainTables(name))));
    }
    const QTemporaryDir folder;
    writeDatabase(folder.filePath(u"L.DDB"_s), left);
    writeDatabase(folder.filePath(u"R.DDB"_s), right);
    EditorFixture fixture;
    fixture.openBoth(folder.filePath(u"L.DDB"_s), folder.filePath(u"R.DDB"_s));
    // Opening has selected the first line and so compared it already.
    fixture.list(0).setListIndex(fixture.list(0).ListCount() - 1);
    fixture.choose(Command::CompareAgainMenu);
    const int selected = fixture.list(0).ListIndex();
    int line = 0;
    for (const std::string &name : names) {
        const PlainTable *leftTable = find(left, name);
        const PlainTable *rightTable = find(right, name);
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
class ComparePropertyTest : public QObject {
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
