#include "tests/support/CountedMemory.h"
#include "tests/window/WindowTest.h"
#include "tests/window/find/FindHands.h"

#include <QPlainTextEdit>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

/// Types a text behind the one in the box, with what stands there checked, and presses a button.
std::function<QString(QDialog &)> typing(const QString &before, const QString &typed, const QString &button) {
    return [=](QDialog &dialog) -> QString {
        auto *box = dialog.findChild<QPlainTextEdit *>(u"cellTextEdit"_s);
        if (dialog.objectName() != u"cellText"_s || box == nullptr)
            return u"no box for a cell's text"_s;
        if (box->toPlainText() != before)
            return u"the box holds '%1'"_s.arg(box->toPlainText());
        for (const QChar key : typed) {
            if (key == u'\n')
                hands::key(box, Qt::Key_Return);
            else
                hands::type(box, key);
        }
        return pressButton(dialog, button);
    };
}

/// A table of one field for texts of this many characters.
TableOfTexts textsOf(double size, const QStringList &texts) {
    return {u"List"_s, {{u"Name"_s, FieldType::Text, texts, size}}};
}

/// Points of a widget that are the colour of the signs for invisible characters.
int inked(QWidget *widget, const QRect &part) {
    const QImage image = widget->grab(part).toImage();
    int blue = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            blue += colour.blue() > colour.red() + 20 && colour.blue() > colour.green() + 20 ? 1 : 0;
        }
    }
    return blue;
}

} // namespace

/// A cell's text in a box of its own, and what shows of characters that show nothing.
class CellTextTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void shiftF2OpensTheBoxAndItsTextIsWritten() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {listOf(u"List"_s, {u"one\r\ntwo"_s, u"b"_s})}));
        fixture.clickCell(0, 1, 1);
        fixture.dialogs().expect(typing(u"one\ntwo"_s, u"\nx"_s, u"OK"_s));
        hands::key(&fixture.grid(0), Qt::Key_F2, Qt::ShiftModifier);
        QCOMPARE(recordsOf(fixture, 0)[0][0], u"one\r\ntwo\r\nx"_s);
        QCOMPARE(fixture.texts(0), recordsOf(fixture, 0));
    }

    void itOpensOutOfTheCellEditorToo() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {listOf(u"List"_s, {u"one"_s})}));
        beginEdit(fixture, 0, 1, 1);
        hands::type(&fixture.cellEditor(0), u"s"_s);
        fixture.dialogs().expect(typing(u"ones"_s, u"!"_s, u"OK"_s));
        hands::key(&fixture.cellEditor(0), Qt::Key_F2, Qt::ShiftModifier);
        QCOMPARE(recordsOf(fixture, 0)[0][0], u"ones!"_s);
        QVERIFY(!editing(fixture, 0));
    }

    void theBoxIsLeftByKeysAlone_data() {
        QTest::addColumn<int>("key");
        QTest::newRow("Enter") << int{Qt::Key_Return};
        QTest::newRow("Enter of the number block") << int{Qt::Key_Enter};
    }

    void theBoxIsLeftByKeysAlone() {
        QFETCH(int, key);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {listOf(u"List"_s, {u"one"_s})}));
        fixture.clickCell(0, 1, 1);
        fixture.dialogs().expect([key](QDialog &dialog) {
            hands::type(dialog.findChild<QPlainTextEdit *>(u"cellTextEdit"_s), u"s"_s);
            hands::strike(dialog, static_cast<Qt::Key>(key), Qt::ControlModifier, QString());
            return dialog.isVisible() ? u"it stays open"_s + pressButton(dialog, u"Cancel"_s) : QString();
        });
        hands::key(&fixture.grid(0), Qt::Key_F2, Qt::ShiftModifier);
        QCOMPARE(recordsOf(fixture, 0)[0][0], u"ones"_s);
    }

    void aCancelAndAnUntouchedTextWriteNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {listOf(u"List"_s, {u"a\r\nb\nc\rd"_s})}));
        fixture.clickCell(0, 1, 1);
        fixture.dialogs().expect(typing(u"a\nb\nc\nd"_s, u"x"_s, u"Cancel"_s));
        hands::key(&fixture.grid(0), Qt::Key_F2, Qt::ShiftModifier);
        fixture.dialogs().expect(typing(u"a\nb\nc\nd"_s, QString(), u"OK"_s));
        hands::key(&fixture.grid(0), Qt::Key_F2, Qt::ShiftModifier);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(recordsOf(fixture, 0)[0][0], u"a\r\nb\nc\rd"_s);
    }

    void eachLineKeepsItsOwnEnd_data() {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("after");
        QTest::newRow("the last line changed") << u"a\r\nb\nc\rd"_s << u"x"_s << u"a\r\nb\nc\rdx"_s;
        QTest::newRow("the first line changed") << u"a\r\nb\nc\rd"_s << u"^x"_s << u"xa\r\nb\nc\rd"_s;
        QTest::newRow("a line added") << u"a\r\nb\nc"_s << u"^x\n"_s << u"x\r\na\r\nb\nc"_s;
        QTest::newRow("a line added at the end") << u"a\nb\r\nc"_s << u"\nx"_s << u"a\nb\r\nc\nx"_s;
        QTest::newRow("the first line removed") << u"a\r\nb\nc"_s << u"^>>"_s << u"b\nc"_s;
        QTest::newRow("two places") << u"a\r\nb\nc\rd"_s << u"\ny^x\n"_s << u"x\r\na\r\nb\nc\rd\r\ny"_s;
        QTest::newRow("a paragraph's end") << u"a\u2029b"_s << u"x"_s << u"a\u2029bx"_s;
        QTest::newRow("a line's end within a paragraph") << u"a\u2028b\r\nc"_s << u"x"_s << u"a\u2028b\r\ncx"_s;
        QTest::newRow("a new line after a paragraph's end") << u"a\u2029b"_s << u"\nx"_s << u"a\u2029b\nx"_s;
    }

    void eachLineKeepsItsOwnEnd() {
        QFETCH(QString, before);
        QFETCH(QString, keys);
        QFETCH(QString, after);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {listOf(u"List"_s, {before})}));
        fixture.clickCell(0, 1, 1);
        fixture.dialogs().expect([&](QDialog &dialog) -> QString {
            auto *box = dialog.findChild<QPlainTextEdit *>(u"cellTextEdit"_s);
            for (const QChar key : keys) {
                if (key == u'^')
                    hands::key(box, Qt::Key_Home, Qt::ControlModifier);
                else if (key == u'>')
                    hands::key(box, Qt::Key_Delete);
                else if (key == u'\n')
                    hands::key(box, Qt::Key_Return);
                else
                    hands::type(box, key);
            }
            return pressButton(dialog, u"OK"_s);
        });
        hands::key(&fixture.grid(0), Qt::Key_F2, Qt::ShiftModifier);
        QCOMPARE(recordsOf(fixture, 0)[0][0], after);
    }

    void theOtherPaneIsComparedWithIt() {
        EditorFixture fixture;
        openBoth(fixture, {listOf(u"List"_s, {u"one"_s})}, {listOf(u"List"_s, {u"one"_s})});
        fixture.clickCell(1, 1, 1);
        fixture.dialogs().expect(typing(u"one"_s, u"2"_s, u"OK"_s));
        hands::key(&fixture.grid(1), Qt::Key_F2, Qt::ShiftModifier);
        QCOMPARE(redCells(fixture, 0), (Cells{{1, 1}}));
        QCOMPARE(fixture.lines(0), QStringList{u"List !"_s});
    }

    void invisibleCharactersAreDrawnInCellsAndInTheEditor() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {listOf(u"List"_s, {u"a\nb"_s, u"a b"_s})}));
        Grid &grid = fixture.grid(0);
        fixture.clickLine(0, 0); // the keyboard elsewhere
        const auto cell = [&](int row) {
            return grid.visualRect(grid.model()->index(row - 1, 0)).adjusted(4, 4, -4, -4);
        };
        grid.setSelection(singleCell(2, 1));
        QVERIFY(inked(grid.viewport(), cell(1)) > 0);
        grid.setSelection(singleCell(1, 1));
        QCOMPARE(inked(grid.viewport(), cell(2)), 0);
        const auto inkedInEditor = [&](int row) {
            beginEdit(fixture, 0, row, 1);
            return inked(&fixture.cellEditor(0), fixture.cellEditor(0).rect());
        };
        const int inCaret = inkedInEditor(2);
        QVERIFY(inkedInEditor(1) > inCaret);
    }

    void signsStandInTextsOfBothDirections_data() {
        QTest::addColumn<QString>("marked");
        QTest::addColumn<QString>("plain");
        QTest::newRow("to the left behind the right") << u"ab \u05D0\u00A0\u05D1"_s << u"ab \u05D0 \u05D1"_s;
        QTest::newRow("to the right behind the left") << u"\u05D0 ab\u00A0cd"_s << u"\u05D0 ab cd"_s;
        QTest::newRow("to the left alone") << u"\u05D0\u00A0\u05D1"_s << u"\u05D0 \u05D1"_s;
        QTest::newRow("three parts") << u"ab \u05D0\u00A0\u05D1 cd"_s << u"ab \u05D0 \u05D1 cd"_s;
    }

    void signsStandInTextsOfBothDirections() {
        QFETCH(QString, marked);
        QFETCH(QString, plain);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {textsOf(50, {marked, plain, u"another"_s})}));
        Grid &grid = fixture.grid(0);
        fixture.clickCell(0, 3, 1);
        const auto inCell = [&](int row) {
            return inked(grid.viewport(), grid.visualRect(grid.model()->index(row - 1, 0)));
        };
        QCOMPARE(inCell(2), 0);
        QVERIFY(inCell(1) > 0);
        const auto inEditor = [&](int row) {
            beginEdit(fixture, 0, row, 1);
            return inked(&fixture.cellEditor(0), fixture.cellEditor(0).rect());
        };
        const int inCaret = inEditor(2);
        QVERIFY(inEditor(1) > inCaret);
    }

    void signsStandWhereATextOfBothDirectionsIsCutOff() {
        const QString word = u"\u05D0\u05D1\u05D2\u05D3"_s;
        const QString part = u"to "_s + (word + u' ').repeated(200);
        const QString marked = part + (word + u'\u00A0').repeated(40);
        const QString plain = part + (word + u' ').repeated(40);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {textsOf(3000, {marked, plain})}));
        QLineEdit &editor = fixture.cellEditor(0);
        const auto inEditor = [&](int row) {
            beginEdit(fixture, 0, row, 1);
            hands::key(&editor, Qt::Key_Home);
            return inked(&editor, editor.rect());
        };
        const int inCaret = inEditor(2);
        QVERIFY(inEditor(1) > inCaret); // the last words stand first
    }

    void signsStandAtTheEndOfALongTextToo() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {textsOf(30'000, {QString(5000, u'a') + u'\t'})}));
        beginEdit(fixture, 0, 1, 1);
        QLineEdit &editor = fixture.cellEditor(0);
        hands::key(&editor, Qt::Key_Home);
        const int inCaret = inked(&editor, editor.rect());
        hands::key(&editor, Qt::Key_End);
        QVERIFY(inked(&editor, editor.rect()) > inCaret);
        hands::key(&editor, Qt::Key_Home);
        QCOMPARE(inked(&editor, editor.rect()), inCaret);
    }

    void signsOfALongTextCostItsLengthAndNotItsSquare() {
        if (!CountedMemory::counts())
            QSKIP("only a build with the address sanitizer counts");
        const QString text = u"1\t2\r\n"_s.repeated(6000);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {textsOf(30'000, {text})}));
        beginEdit(fixture, 0, 1, 1);
        QLineEdit &editor = fixture.cellEditor(0);
        editor.grab(); // makes what is made once
        const CountedMemory counted;
        QVERIFY(!editor.grab().isNull());
        QVERIFY2(counted.allocations() < static_cast<std::size_t>(text.size()),
                 qPrintable(QString::number(counted.allocations())));
        const CountedMemory inGrid;
        QVERIFY(!fixture.grid(0).grab().isNull());
        QVERIFY2(inGrid.allocations() < 2 * static_cast<std::size_t>(text.size()),
                 qPrintable(QString::number(inGrid.allocations())));
    }
};

QTEST_MAIN(CellTextTest)
#include "cell_text_test.moc"
