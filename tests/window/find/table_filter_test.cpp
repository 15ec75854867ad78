#include "tests/window/WindowTest.h"
#include "tests/window/find/FindHands.h"

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

std::vector<TableOfTexts> tables(int count) {
    std::vector<TableOfTexts> all;
    for (int i = 1; i <= count; ++i)
        all.push_back(numbers(u"%1%2"_s.arg(i % 2 == 0 ? u"Even"_s : u"Odd"_s).arg(i, 2, 10, QChar(u'0')), {u"1"_s}));
    return all;
}

QStringList seen(EditorFixture &fixture, int pane) {
    QStringList names;
    for (int line = 0; line < fixture.list(pane).ListCount(); ++line) {
        if (!fixture.list(pane).isRowHidden(line))
            names.append(fixture.list(pane).List(line));
    }
    return names;
}

} // namespace

/// The filter line of long table lists.
class TableFilterTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void fifteenTablesHaveAFilterLineAndFourteenNone() {
        {
            EditorFixture fixture(makeFile(u"A.DDB"_s, tables(14)));
            QVERIFY(inBar<QLineEdit>(fixture, u"tableFilter_0"_s).isHidden());
        }
        EditorFixture fixture(makeFile(u"B.DDB"_s, tables(15)));
        auto &filter = inBar<QLineEdit>(fixture, u"tableFilter_0"_s);
        QVERIFY(filter.isVisible());
        QCOMPARE(filter.geometry().bottom() + 1, fixture.list(0).geometry().top() + fixture.list(0).viewport()->y());
        QVERIFY(inBar<QLineEdit>(fixture, u"tableFilter_1"_s).isHidden());
    }

    void bothListsAreFilteredAlikeAndKeepTheirIndices() {
        EditorFixture fixture;
        std::vector<TableOfTexts> right = tables(16);
        right.push_back(numbers(u"Evening"_s, {u"1"_s}));
        openBoth(fixture, tables(16), right);
        const QStringList all = fixture.lines(0);
        auto &filter = inBar<QLineEdit>(fixture, u"tableFilter_0"_s);
        hands::click(&filter, Qt::LeftButton);
        hands::type(&filter, u"even"_s);
        QCOMPARE(seen(fixture, 0).size(), 9);
        QCOMPARE(seen(fixture, 1).size(), 9);
        for (int line = 0; line < fixture.list(0).ListCount(); ++line)
            QCOMPARE(fixture.list(0).isRowHidden(line), fixture.list(1).isRowHidden(line));
        QCOMPARE(fixture.lines(0), all);
        QCOMPARE(inBar<QLineEdit>(fixture, u"tableFilter_1"_s).text(), u"even"_s);
        fixture.clickLine(0, 3);
        QCOMPARE(fixture.list(0).ListIndex(), 3);
        QCOMPARE(fixture.list(1).ListIndex(), 3);
        QCOMPARE(fixture.shownTable(1), fixture.lines(1)[3]);
    }

    void escapeShowsAllLinesAgain() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, tables(15)));
        auto &filter = inBar<QLineEdit>(fixture, u"tableFilter_0"_s);
        hands::click(&filter, Qt::LeftButton);
        hands::type(&filter, u"odd"_s);
        QCOMPARE(seen(fixture, 0).size(), 8);
        hands::key(&filter, Qt::Key_Escape);
        QCOMPARE(seen(fixture, 0).size(), 15);
        QVERIFY(fixture.list(0).hasFocus());
    }

    void typingInTheListSelectsALineThatIsSeen() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, tables(15)));
        fixture.clickLine(0, 0);
        hands::type(&fixture.list(0), u"o"_s);
        QCOMPARE(fixture.shownTable(0), u"Odd01"_s);
    }

    void aNewTableOfAnotherNameStaysUnseenUntilTheFilterGoes() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, tables(16)));
        auto &filter = inBar<QLineEdit>(fixture, u"tableFilter_0"_s);
        hands::click(&filter, Qt::LeftButton);
        hands::type(&filter, u"odd"_s);
        fixture.dialogs().expect([](QDialog &dialog) {
            dialog.reject();
            return QString();
        });
        fixture.choose(Command::AddTableMenu);
        QCOMPARE(seen(fixture, 0).size(), 8);
    }
};

QTEST_MAIN(TableFilterTest)
#include "table_filter_test.moc"
