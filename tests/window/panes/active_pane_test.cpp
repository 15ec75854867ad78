#include "pane/ActivePane.h"
#include "tests/support/CountedMemory.h"
#include "tests/window/WindowTest.h"

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// What it costs to make a pane the active one, which each key in a cell does.
class ActivePaneTest : public WindowTest {
    Q_OBJECT

    /// Allocations of activatePane(): palettes and menus take some, even where they become what they were.
    static std::size_t costOf(EditorFixture &fixture, int pane) {
        const CountedMemory memory;
        activatePane(fixture.editor(), pane);
        return memory.allocations();
    }

private Q_SLOTS:
    void makingThePaneActiveThatIsItAlreadyCostsNothing() {
        if (!CountedMemory::counts())
            QSKIP("nothing is counted in this build");
        EditorFixture fixture;
        openBoth(fixture, {pumps()}, {pumps()});
        QVERIFY(costOf(fixture, 1) > 0);
        QCOMPARE(costOf(fixture, 1), std::size_t{0});
        QVERIFY(costOf(fixture, 0) > 0);
        QCOMPARE(costOf(fixture, 0), std::size_t{0});
    }
};

QTEST_MAIN(ActivePaneTest)
#include "active_pane_test.moc"
