#include "tests/support/Hands.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"
#include "tests/window/find/FindHands.h"

#include <QDialog>
#include <QTableView>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

QDialog *summary(EditorFixture &fixture) {
    return fixture.window().findChild<QDialog *>(u"differencesSummary"_s);
}

QTableView *view(EditorFixture &fixture) {
    return summary(fixture)->findChild<QTableView *>(u"summaryTable"_s);
}

/// The rows that the window shows, cells joined by "|".
QStringList rows(EditorFixture &fixture) {
    const QAbstractItemModel *model = view(fixture)->model();
    QStringList all;
    for (int row = 0; row < model->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model->columnCount(); ++column)
            cells.append(model->index(row, column).data().toString());
        all.append(cells.join(u'|'));
    }
    return all;
}

TableOfTexts changedTable(const QString &name) {
    TableOfTexts table = counted(name, 4, 2);
    table.fields[0].texts[1] = table.fields[1].texts[1] = table.fields[0].texts[3] = u"7"_s;
    return table;
}

void openSummary(EditorFixture &fixture) {
    fixture.dialogs().allow(u"differencesSummary"_s);
    fixture.choose(Command::DifferencesSummaryMenu);
}

void openMany(EditorFixture &fixture,
              const std::function<void(const std::vector<TableOfTexts> &, const std::vector<TableOfTexts> &)> &open) {
    TableOfTexts renamed = counted(u"G"_s, 2, 2);
    renamed.fields[1].name = u"Other"_s;
    TableOfTexts retyped = counted(u"H"_s, 2, 2);
    retyped.fields[1].type = FieldType::Int;
    open({counted(u"A"_s, 2, 2), counted(u"B"_s, 4, 2), counted(u"C"_s, 1, 1), counted(u"E"_s, 0, 2),
          counted(u"G"_s, 2, 2), counted(u"H"_s, 2, 2)},
         {counted(u"A"_s, 2, 2), changedTable(u"B"_s), counted(u"D"_s, 3, 1), counted(u"E"_s, 2, 2), renamed, retyped});
    openSummary(fixture);
}

} // namespace

/// The window that tells of each table how it differs.
class SummaryTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void eachTableIsToldOf() {
        EditorFixture fixture;
        openMany(fixture, [&](const auto &left, const auto &right) { openBoth(fixture, left, right); });
        QVERIFY(summary(fixture)->isVisible());
        QVERIFY(!summary(fixture)->isModal());
        QCOMPARE(rows(fixture), QStringList({u"A|equal|2|2|"_s, u"B|3 cells in 2 records|4|4|"_s, u"C|only left|1||"_s,
                                             u"D|only right||3|"_s, u"E|0 and 2 records|0|2|"_s,
                                             u"G|equal|2|2|other fields"_s, u"H|equal|2|2|other types"_s}));
    }

    void editsAreFollowed() {
        EditorFixture fixture;
        openMany(fixture, [&](const auto &left, const auto &right) { openBoth(fixture, left, right); });
        fixture.window().activateWindow();
        fixture.clickLine(0, 1);
        beginEdit(fixture, 0, 1, 1);
        hands::type(&fixture.cellEditor(0), u"5"_s);
        QCOMPARE(rows(fixture)[1], u"B|4 cells in 3 records|4|4|"_s);
        hands::key(&fixture.cellEditor(0), Qt::Key_Return);
        fixture.choose(Command::RemoveRecordMenu);
        QCOMPARE(rows(fixture)[1], u"B|8 cells in 4 records|3|4|"_s);
        fixture.database(0).setDtbHasChanged(false);
    }

    void tablesThatComeAndGoAreFollowed() {
        EditorFixture fixture;
        openMany(fixture, [&](const auto &left, const auto &right) { openBoth(fixture, left, right); });
        fixture.window().activateWindow();
        fixture.clickLine(0, 2);
        fixture.dialogs().expectMessage(u"Copy table 'C' to the other side, which has none of this name? Records: 1."_s,
                                        u"?"_s, u"Yes"_s);
        fixture.choose(Command::CarryTableMenu);
        QCOMPARE(rows(fixture)[2], u"C|equal|1|1|"_s);
        fixture.database(1).setDtbHasChanged(false);
        fixture.activate(1);
        fixture.choose(Command::CloseDatabaseMenu);
        QCOMPARE(rows(fixture), QStringList());
        QVERIFY(!summary(fixture)->isVisible());
        fixture.open(path(u"RIGHT.DDB"_s));
        fixture.choose(Command::DifferencesSummaryMenu);
        QVERIFY(summary(fixture)->isVisible());
        QCOMPARE(rows(fixture)[2], u"C|only left|1||"_s);
    }

    void whereTheTablesCannotBeReadItSaysSo() {
        const UseFake fake;
        EditorFixture fixture;
        openBoth(fixture, {counted(u"A"_s, 2, 2)}, {counted(u"A"_s, 3, 2)});
        fake->failOn(u"QIRTableRecordSource"_s, u"the disk is gone"_s);
        fixture.dialogs().expect(messageNaming({u"the disk is gone"_s}));
        openSummary(fixture);
        fake->stopFailing();
        const auto *note = summary(fixture)->findChild<QLabel *>(u"summaryNote"_s);
        QVERIFY(note != nullptr);
        QVERIFY(note->isVisible());
        QCOMPARE(note->text(), u"The tables could not be read. Choose the summary again to try once more."_s);
        fixture.choose(Command::DifferencesSummaryMenu);
        QVERIFY(!note->isVisible());
        QCOMPARE(rows(fixture).size(), 1);
    }

    void aDoubleClickGoesThere() {
        EditorFixture fixture;
        openMany(fixture, [&](const auto &left, const auto &right) { openBoth(fixture, left, right); });
        const QModelIndex row = view(fixture)->model()->index(1, 0);
        hands::doubleClick(view(fixture)->viewport(), Qt::LeftButton, {}, view(fixture)->visualRect(row).center());
        QCOMPARE(fixture.list(0).ListIndex(), 1);
        QCOMPARE(fixture.list(1).ListIndex(), 1);
        QCOMPARE(fixture.grid(0).Row(), 2);
        QCOMPARE(fixture.grid(1).Col(), 1);
    }

    void tablesThatAreNotShownAreFollowed() {
        EditorFixture fixture;
        const std::vector<TableOfTexts> tables{listOf(u"A"_s, {u"red"_s}), listOf(u"B"_s, {u"red"_s, u"x"_s}),
                                               listOf(u"C"_s, {u"y"_s})};
        openBoth(fixture, tables, tables);
        openSummary(fixture);
        fixture.window().activateWindow();
        openBar(fixture, u"red"_s);
        hands::key(&fixture.window(), Qt::Key_H, Qt::ControlModifier);
        hands::type(&inBar<QLineEdit>(fixture, u"replaceText"_s), u"pink"_s);
        check(fixture, u"findAllTables"_s);
        QTRY_COMPARE(countOf(fixture), u"2 cells"_s);
        view(fixture)->selectRow(2);
        hands::click(&inBar<QAbstractButton>(fixture, u"replaceAll"_s), Qt::LeftButton);
        QCOMPARE(rows(fixture),
                 QStringList({u"A|1 cell in 1 record|1|1|"_s, u"B|1 cell in 1 record|2|2|"_s, u"C|equal|1|1|"_s}));
        QCOMPARE(view(fixture)->currentIndex().row(), 2);
        fixture.choose(Command::UndoMenu);
        QCOMPARE(rows(fixture), QStringList({u"A|equal|1|1|"_s, u"B|equal|2|2|"_s, u"C|equal|1|1|"_s}));
        fixture.database(0).setDtbHasChanged(false);
    }

    void tablesThatWereShownBeforeKeepTheirNumbers() {
        EditorFixture fixture;
        const std::vector<TableOfTexts> tables{listOf(u"A"_s, {u"red"_s}), listOf(u"B"_s, {u"red"_s})};
        openBoth(fixture, tables, tables);
        openSummary(fixture);
        fixture.window().activateWindow();
        edit(fixture, 0, 1, 1, u"blue"_s);
        QCOMPARE(rows(fixture)[0], u"A|1 cell in 1 record|1|1|"_s);
        fixture.clickLine(0, 1);
        edit(fixture, 1, 1, 1, u"green"_s);
        QCOMPARE(rows(fixture), QStringList({u"A|1 cell in 1 record|1|1|"_s, u"B|1 cell in 1 record|1|1|"_s}));
        fixture.choose(Command::UndoMenu);
        QCOMPARE(rows(fixture), QStringList({u"A|1 cell in 1 record|1|1|"_s, u"B|equal|1|1|"_s}));
        fixture.database(0).setDtbHasChanged(false);
    }

    void anEditReadsNoTableAgain() {
        const UseFake fake(100);
        EditorFixture fixture;
        const std::vector<TableOfTexts> tables{listOf(u"A"_s, {u"red"_s}), listOf(u"B"_s, {u"red"_s})};
        openBoth(fixture, tables, tables);
        openSummary(fixture);
        fixture.window().activateWindow();
        fake->clearLog();
        edit(fixture, 0, 1, 1, u"blue"_s);
        QCOMPARE(rows(fixture)[0], u"A|1 cell in 1 record|1|1|"_s);
        QCOMPARE(callsOf({u"ReadColumn"_s}), QStringList());
        fixture.database(0).setDtbHasChanged(false);
    }

    void anotherSizeOfATextIsFollowed() {
        EditorFixture fixture;
        openBoth(fixture, {listOf(u"A"_s, {u"red"_s})}, {listOf(u"A"_s, {u"red"_s})});
        openSummary(fixture);
        fixture.window().activateWindow();
        fixture.clickCell(0, 1, 1);
        fixture.dialogs().expectInput(u"Field size"_s, u"?"_s, u"20"_s, u"30"_s);
        fixture.choose(Command::ResizeTextField);
        QCOMPARE(rows(fixture), QStringList({u"A|equal|1|1|other types"_s}));
        fixture.choose(Command::UndoMenu);
        QCOMPARE(rows(fixture), QStringList({u"A|equal|1|1|"_s}));
    }

    void aDoubleClickLinesUpListsThatAreNot() {
        EditorFixture fixture;
        openMany(fixture, [&](const auto &left, const auto &right) { openBoth(fixture, left, right); });
        fixture.window().activateWindow();
        fixture.activate(1);
        fixture.dialogs().expectInput(u"New table name"_s, u"?"_s, u"Tablex"_s, u"AA"_s);
        fixture.choose(Command::AddTableMenu);
        QVERIFY(fixture.lines(0) != fixture.lines(1));
        summary(fixture)->activateWindow();
        QCOMPARE(rows(fixture)[2], u"B|3 cells in 2 records|4|4|"_s);
        const QModelIndex row = view(fixture)->model()->index(2, 0);
        hands::doubleClick(view(fixture)->viewport(), Qt::LeftButton, {}, view(fixture)->visualRect(row).center());
        QCOMPARE(fixture.shownTable(0), u"B"_s);
        QCOMPARE(fixture.shownTable(1), u"B"_s);
        QCOMPARE(fixture.grid(1).Row(), 2);
        fixture.database(1).setDtbHasChanged(false);
    }

    void theLineFiltersAndAHeaderSorts() {
        EditorFixture fixture;
        openMany(fixture, [&](const auto &left, const auto &right) { openBoth(fixture, left, right); });
        QHeaderView *header = view(fixture)->horizontalHeader();
        const auto clickHeader = [&](int column) {
            hands::click(header->viewport(), Qt::LeftButton, {},
                         QPoint(header->sectionViewportPosition(column) + 10, header->height() / 2));
        };
        clickHeader(1);
        clickHeader(1); // the largest first
        QVERIFY(rows(fixture)[0].contains(u"only"_s));
        QCOMPARE(rows(fixture)[2], u"E|0 and 2 records|0|2|"_s);
        auto *filter = summary(fixture)->findChild<QLineEdit *>(u"summaryFilter"_s);
        filter->setFocus();
        hands::type(filter, u"only"_s);
        QCOMPARE(rows(fixture).size(), 2);
    }
};

QTEST_MAIN(SummaryTest)
#include "summary_test.moc"
