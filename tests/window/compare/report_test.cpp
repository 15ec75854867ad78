#include "tests/window/PopupTools.h"
#include "tests/window/WindowTest.h"

#include <QFileInfo>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

/// File > Report: a page about both databases.
class ReportTest : public WindowTest {
    Q_OBJECT

    void openDiffering(EditorFixture &fixture) const {
        TableOfTexts other = counted(u"Pumps"_s, 3, 2);
        other.fields[1].texts[2] = u"777"_s;
        openBoth(fixture, {counted(u"Pumps"_s, 3, 2), counted(u"Gone"_s, 1, 1)}, {other, counted(u"New"_s, 1, 1)});
    }

private Q_SLOTS:
    void theMenuWritesAPageOfAllTables() {
        EditorFixture fixture;
        openDiffering(fixture);
        fixture.clickLine(0, 2); // whichever table is shown
        fixture.dialogs().expectFile(u"Report"_s, path(u"all.html"_s));
        chooseFromBar(fixture, Menu::FileMenu, Command::ReportMenu);
        const QByteArray page = fileBytes(path(u"all.html"_s));
        for (const char *part : {"<!DOCTYPE html>", "Pumps", "Gone", "New", "302", "777"})
            QVERIFY2(page.contains(part), part);
        QVERIFY2(!page.contains("://"), "it needs no other file");
        QCOMPARE(fixture.shownTable(0), u"Pumps"_s);
        QCOMPARE(fixture.texts(0)[2][1], u"302"_s);
        QIR_VERIFY_OK(fixture);
    }

    void whatIsTypedAndNotSavedIsInIt() {
        EditorFixture fixture;
        openDiffering(fixture);
        fixture.clickLine(0, 2);
        change(fixture, 0, u"4711"_s);
        fixture.dialogs().expectFile(u"Report"_s, path(u"all.html"_s));
        chooseFromBar(fixture, Menu::FileMenu, Command::ReportMenu);
        QVERIFY(fileBytes(path(u"all.html"_s)).contains("4711"));
        fixture.database(0).setDtbHasChanged(false);
    }

    void cancelledItWritesNothing() {
        EditorFixture fixture;
        openDiffering(fixture);
        fixture.dialogs().expectFileCancelled(u"Report"_s);
        chooseFromBar(fixture, Menu::FileMenu, Command::ReportMenu);
        QVERIFY(!QFile::exists(path(u"differences.html"_s)));
    }

    void anOpenDatabaseIsNotWrittenOver() {
        EditorFixture fixture;
        openDiffering(fixture);
        const QByteArray before = fileBytes(path(u"RIGHT.DDB"_s));
        fixture.dialogs().expectFile(u"Report"_s, path(u"RIGHT.DDB"_s));
        fixture.dialogs().expect([](QDialog &dialog) { return pressButton(dialog, u"Yes"_s); });
        fixture.dialogs().expect(messageNaming({u"it is an open database"_s}));
        chooseFromBar(fixture, Menu::FileMenu, Command::ReportMenu);
        QCOMPARE(fileBytes(path(u"RIGHT.DDB"_s)), before);
    }

    void withOneDatabaseThereIsNothingToReport() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {counted(u"A"_s, 1, 1)}));
        QVERIFY(!fixture.action(Command::ReportMenu).isEnabled());
    }
};

QTEST_MAIN(ReportTest)
#include "report_test.moc"
