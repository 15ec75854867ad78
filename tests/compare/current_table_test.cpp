#include "platform/loop/MessageLoop.h"
#include "tests/compare/ComparePanes.h"
#include "tests/tools/fake/FakeControl.h"

#include <gtest/gtest.h>

#include <QTimer>

#include <functional>

using namespace Qt::StringLiterals;
using namespace qir;
using test::ComparePanes;
using test::PlainTable;

namespace {

/// A command that yields, and something that comes meanwhile.
class CurrentTableTest : public testing::Test {
protected:
    CurrentTableTest() {
        const PlainTable first("T", {false}, {});
        const PlainTable second("U", {false}, {});
        panes.openBoth({first, second}, {first});
        panes.editor().pane(0).makeTableCurrent(u"T"_s);
    }
    void meanwhile(const std::function<void()> &work) {
        QTimer::singleShot(0, &loop, [this, work] { came = true, work(); });
        while (!came)
            runCommand([] { yieldToMessages(); });
    }

    UseFake fake;
    ComparePanes panes;
    MessageLoop loop;
    bool came = false;
};

#ifndef QT_NO_DEBUG
TEST_F(CurrentTableTest, IsNotMovedFromBeneathACommandThatYields) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(meanwhile([this] { panes.editor().pane(0).makeTableCurrent(u"U"_s); }), "amidCommand");
}
#endif

TEST_F(CurrentTableTest, MayBeMovedByACommandWithinTheYield) {
    meanwhile([this] { runCommand([this] { panes.editor().pane(0).makeTableCurrent(u"U"_s); }); });
    EXPECT_EQ(panes.editor().pane(0).TabellaCorrente(), u"U"_s);
}

TEST_F(CurrentTableTest, MayBeMovedWhereNoCommandRuns) {
    QTimer::singleShot(0, &loop, [this] { came = true, panes.editor().pane(0).makeTableCurrent(u"U"_s); });
    while (!came)
        QCoreApplication::processEvents();
    EXPECT_EQ(panes.editor().pane(0).TabellaCorrente(), u"U"_s);
}

} // namespace
