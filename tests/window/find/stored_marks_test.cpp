#include "platform/grid/GridModel.h"
#include "tests/window/WindowTest.h"
#include "tests/window/find/FindHands.h"

#include <QApplication>
#include <QClipboard>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QToolTip>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

TableOfTexts bytes() {
    return {u"Bytes"_s,
            {{u"B"_s, FieldType::Byte, {u"3"_s, u"1"_s, u"2"_s}},
             {u"T"_s, FieldType::Text, {u"long enough"_s, u"b"_s, u"c"_s}, 20}}};
}

QString wordsOf(EditorFixture &fixture, int row, int column) {
    return fixture.grid(0).model()->index(row - 1, column - 1).data(GridModel::StoredWordsRole).toString();
}

/// The pointer rests on a cell.
void pointAt(EditorFixture &fixture, int row, int column) {
    QWidget *viewport = fixture.grid(0).viewport();
    const QPoint place = fixture.cellCentre(0, row, column);
    QHelpEvent event(QEvent::ToolTip, place, viewport->mapToGlobal(place));
    QApplication::sendEvent(viewport, &event);
}

/// Gives the text field another size.
void resize(EditorFixture &fixture, int pane, const QString &from, const QString &to) {
    fixture.clickCell(pane, 1, 2);
    fixture.dialogs().expectInput(u"Field size"_s, u"?"_s, from, to);
    fixture.choose(Command::ResizeTextField);
}

} // namespace

/// Cells that show another text than is stored.
class StoredMarksTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void aTypedTextThatIsStoredOtherwiseIsMarked() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {bytes()}));
        edit(fixture, 0, 1, 1, u"999"_s);
        QCOMPARE(fixture.grid(0).TextMatrix(1, 1), u"999"_s);
        QVERIFY(fixture.grid(0).isUnlikeStored(1, 1));
        QCOMPARE(wordsOf(fixture, 1, 1), u"stored: 255"_s);
        QCOMPARE(wordsOf(fixture, 2, 1), QString());
    }

    void theMarkGoesWithATextThatIsStoredAsItShows() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {bytes()}));
        edit(fixture, 0, 1, 1, u"yes"_s);
        QCOMPARE(wordsOf(fixture, 1, 1), u"stored: 0"_s);
        edit(fixture, 0, 1, 1, u"7"_s);
        QVERIFY(!fixture.grid(0).isUnlikeStored(1, 1));
    }

    void theMarkAndWhatTellsOfItGoWhenTheEditIsTakenBack() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {bytes()}));
        edit(fixture, 0, 1, 1, u"999"_s);
        pointAt(fixture, 1, 1);
        QCOMPARE(QToolTip::text(), u"stored: 255"_s);
        QVERIFY(statusLeft(fixture).contains(u"stored: 255"_s));
        strike(fixture, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(fixture.grid(0).TextMatrix(1, 1), u"3"_s);
        QVERIFY(!fixture.grid(0).isUnlikeStored(1, 1));
        QVERIFY2(!statusLeft(fixture).contains(u"stored"_s), qPrintable(statusLeft(fixture)));
        QTRY_VERIFY(!QToolTip::isVisible());
    }

    void aReloadTakesTheMarksAway() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {bytes(), pumps()}));
        edit(fixture, 0, 1, 1, u"999"_s);
        fixture.clickLine(0, 1);
        fixture.clickLine(0, 0);
        QCOMPARE(fixture.grid(0).TextMatrix(1, 1), u"255"_s);
        QVERIFY(!fixture.grid(0).isUnlikeStored(1, 1));
    }

    void textsThatASmallerSizeHasCutAreMarked() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {bytes()}));
        fixture.clickCell(0, 1, 2);
        fixture.dialogs().expectInput(u"Field size"_s, u"?"_s, u"20"_s, u"4"_s);
        fixture.choose(Command::ResizeTextField);
        QCOMPARE(fixture.grid(0).TextMatrix(1, 2), u"long enough"_s);
        QCOMPARE(wordsOf(fixture, 1, 2), u"stored: long"_s);
        QVERIFY(!fixture.grid(0).isUnlikeStored(2, 2));
    }

    void aFieldThatIsWidenedAgainStillTellsWhatTheCutLeft_data() {
        QTest::addColumn<int>("recordsTogether");
        QTest::newRow("by records") << 0;
        QTest::newRow("by columns") << 2;
    }

    void aFieldThatIsWidenedAgainStillTellsWhatTheCutLeft() {
        QFETCH(int, recordsTogether);
        const UseFake fake(recordsTogether);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {bytes()}));
        resize(fixture, 0, u"20"_s, u"3"_s);
        resize(fixture, 0, u"3"_s, u"4"_s);
        QCOMPARE(wordsOf(fixture, 1, 2), u"stored: lon"_s);
        QVERIFY2(statusLeft(fixture).contains(u"long enough, stored: lon,"_s), qPrintable(statusLeft(fixture)));
        resize(fixture, 0, u"4"_s, u"20"_s);
        QCOMPARE(fixture.grid(0).TextMatrix(1, 2), u"long enough"_s);
        QCOMPARE(wordsOf(fixture, 1, 2), u"stored: lon"_s);
        QVERIFY(!fixture.grid(0).isUnlikeStored(2, 2));
        QVERIFY2(statusLeft(fixture).contains(u"long enough, stored: lon,"_s), qPrintable(statusLeft(fixture)));
        fixture.database(0).setDtbHasChanged(false);
    }

    void aPasteThatStoresAllTextsTakesAllMarks() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {bytes()}));
        resize(fixture, 0, u"20"_s, u"3"_s);
        resize(fixture, 0, u"3"_s, u"20"_s);
        QVERIFY(fixture.grid(0).isUnlikeStored(1, 2));
        fixture.clickCell(0, 3, 1);
        QGuiApplication::clipboard()->setText(u"5"_s);
        hands::key(&fixture.grid(0), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(stored(fixture, 0, 1, 2), QVariant(u"long enough"_s));
        QVERIFY(!fixture.grid(0).isUnlikeStored(1, 2));
    }

    void aSortThatStoresAllTextsTakesAllMarks() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {bytes()}));
        resize(fixture, 0, u"20"_s, u"3"_s);
        resize(fixture, 0, u"3"_s, u"20"_s);
        fixture.editor().setOrigin(0);
        fixture.choose(Command::SortFPOP);
        QCOMPARE(fixture.grid(0).TextMatrix(3, 2), u"long enough"_s);
        QCOMPARE(stored(fixture, 0, 3, 2), QVariant(u"long enough"_s));
        QVERIFY(!fixture.grid(0).isUnlikeStored(3, 2));
        fixture.database(0).setDtbHasChanged(false);
    }

    void aSortMovesTheMarksWithTheirCells() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {bytes()}));
        edit(fixture, 0, 1, 1, u"999"_s);
        fixture.editor().setOrigin(0);
        fixture.choose(Command::SortFPOP);
        QCOMPARE(fixture.grid(0).TextMatrix(3, 1), u"999"_s);
        QVERIFY(!fixture.grid(0).isUnlikeStored(1, 1));
        QCOMPARE(wordsOf(fixture, 3, 1), u"stored: 255"_s);
    }

    void aPastedTextIsMarkedToo() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {bytes()}));
        selectBlock(fixture, 0, {1, 1, 2, 1});
        QGuiApplication::clipboard()->setText(u"300\r4"_s);
        hands::key(&fixture.grid(0), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(wordsOf(fixture, 1, 1), u"stored: 255"_s);
        QVERIFY(!fixture.grid(0).isUnlikeStored(2, 1));
    }

    void emptiedNumbersAreMarked() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {bytes()}));
        fixture.clickCell(0, 2, 1);
        hands::key(&fixture.grid(0), Qt::Key_Delete);
        QCOMPARE(wordsOf(fixture, 2, 1), u"stored: 0"_s);
    }

    void theOtherPaneHasMarksOfItsOwn() {
        EditorFixture fixture;
        openBoth(fixture, {bytes()}, {bytes()});
        edit(fixture, 1, 1, 1, u"999"_s);
        QVERIFY(fixture.grid(1).isUnlikeStored(1, 1));
        QVERIFY(!fixture.grid(0).isUnlikeStored(1, 1));
    }
};

QTEST_MAIN(StoredMarksTest)
#include "stored_marks_test.moc"
