#include "tests/support/Hands.h"
#include "tests/tools/fake/FakeControl.h"
#include "tests/window/EditSupport.h"
#include "tests/window/WindowTest.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QTimer>

using namespace qir;
using namespace qir::test;
using namespace Qt::StringLiterals;

namespace {

/// Four records of a long, a text and a double field.
TableOfTexts mixed() {
    return {u"Mixed"_s,
            {{u"Number"_s, FieldType::Long, {u"1"_s, u"2"_s, u"3"_s, u"4"_s}},
             {u"Text"_s, FieldType::Text, {u"a"_s, u"b"_s, u"c"_s, u"d"_s}},
             {u"Ratio"_s, FieldType::Double, {u"0.5"_s, u"1.5"_s, u"2.5"_s, u"3.5"_s}}}};
}

/// Records of three text fields, all empty.
TableOfTexts blank(int records) {
    const QStringList texts(records);
    return {u"Blank"_s,
            {{u"A"_s, FieldType::Text, texts}, {u"B"_s, FieldType::Text, texts}, {u"C"_s, FieldType::Text, texts}}};
}

QString clipboardText() {
    return QGuiApplication::clipboard()->text();
}

void setClipboard(const QString &text) {
    QGuiApplication::clipboard()->setText(text);
}

} // namespace

/// Copying and pasting blocks of cells through the real window and the system clipboard.
class ClipboardTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        WindowTest::init();
        QGuiApplication::clipboard()->clear();
    }

    void aBlockIsCopiedWithTabsAndCarriageReturns() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {mixed()}));
        selectBlock(fixture, 0, {2, 1, 3, 3});
        press(fixture, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(clipboardText(), u"2\tb\t1.5\r3\tc\t2.5"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void aBlockSelectedBackwardsIsCopiedFromItsTopLeft() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {mixed()}));
        selectBlock(fixture, 0, {3, 2, 2, 1});
        press(fixture, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(clipboardText(), u"2\tb\r3\tc"_s);
    }

    void keysThatCopy_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<bool>("copies");
        const auto row = [](const char *name, Qt::Key key, Qt::KeyboardModifiers modifiers, bool copies) {
            QTest::newRow(name) << static_cast<int>(key) << static_cast<int>(modifiers.toInt()) << copies;
        };
        row("Ctrl+C", Qt::Key_C, Qt::ControlModifier, true);
        row("Ctrl+Insert", Qt::Key_Insert, Qt::ControlModifier, true);
        row("C", Qt::Key_C, Qt::NoModifier, false);
        row("Ctrl+Shift+C", Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier, false);
        row("Ctrl+Alt+C", Qt::Key_C, Qt::ControlModifier | Qt::AltModifier, false);
        row("Ctrl+Shift+Insert", Qt::Key_Insert, Qt::ControlModifier | Qt::ShiftModifier, false);
    }

    void keysThatCopy() {
        QFETCH(const int, key);
        QFETCH(const int, modifiers);
        QFETCH(const bool, copies);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {mixed()}));
        fixture.clickCell(0, 3, 2);
        setClipboard(u"before"_s);
        press(fixture, static_cast<Qt::Key>(key), Qt::KeyboardModifiers::fromInt(modifiers));
        QCOMPARE(clipboardText(), copies ? u"c"_s : u"before"_s);
    }

    void keysThatPaste_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<bool>("pastes");
        const auto row = [](const char *name, Qt::Key key, Qt::KeyboardModifiers modifiers, bool pastes) {
            QTest::newRow(name) << static_cast<int>(key) << static_cast<int>(modifiers.toInt()) << pastes;
        };
        row("Ctrl+V", Qt::Key_V, Qt::ControlModifier, true);
        row("Shift+Insert", Qt::Key_Insert, Qt::ShiftModifier, true);
        row("V", Qt::Key_V, Qt::NoModifier, false);
        row("Insert", Qt::Key_Insert, Qt::NoModifier, false);
        row("Ctrl+Shift+V", Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier, false);
        row("Shift+Alt+Insert", Qt::Key_Insert, Qt::ShiftModifier | Qt::AltModifier, false);
    }

    void keysThatPaste() {
        QFETCH(const int, key);
        QFETCH(const int, modifiers);
        QFETCH(const bool, pastes);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {mixed()}));
        fixture.clickCell(0, 3, 2);
        setClipboard(u"pasted"_s);
        press(fixture, static_cast<Qt::Key>(key), Qt::KeyboardModifiers::fromInt(modifiers));
        QCOMPARE(fixture.grid(0).TextMatrix(3, 2), pastes ? u"pasted"_s : u"c"_s);
        QCOMPARE(stored(fixture, 0, 3, 2).toString(), pastes ? u"pasted"_s : u"c"_s);
    }

    void withTheCornerCurrentTheKeysAreIgnored() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {mixed()}));
        fixture.clickCell(0, 1, 1);
        fixture.grid(0).setSelection({0, 0, 2, 2});
        setClipboard(u"before"_s);
        press(fixture, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(clipboardText(), u"before"_s);
        press(fixture, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(fixture.grid(0).TextMatrix(1, 1), u"1"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void everyKindOfRowEndPastesTheSame_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("CR") << u"1\t2\r3\t4"_s;
        QTest::newRow("CR LF") << u"1\t2\r\n3\t4"_s;
        QTest::newRow("LF") << u"1\t2\n3\t4"_s;
        QTest::newRow("CR, with a last one") << u"1\t2\r3\t4\r"_s;
        QTest::newRow("CR LF, with a last one") << u"1\t2\r\n3\t4\r\n"_s;
        QTest::newRow("LF, with a last one") << u"1\t2\n3\t4\n"_s;
    }

    void everyKindOfRowEndPastesTheSame() {
        QFETCH(const QString, text);
        EditorFixture fixture(makeFile(u"A.DDB"_s, {blank(3)}));
        edit(fixture, 0, 3, 1, u"stays"_s);
        selectBlock(fixture, 0, {1, 1, 3, 2});
        setClipboard(text);
        press(fixture, Qt::Key_V, Qt::ControlModifier);
        const QList<QStringList> expected{{u"1"_s, u"2"_s, u""_s}, {u"3"_s, u"4"_s, u""_s}, {u"stays"_s, u""_s, u""_s}};
        QCOMPARE(fixture.texts(0), expected);
        QCOMPARE(stored(fixture, 0, 2, 2).toString(), u"4"_s);
    }

    void aLargerBlockIsCutToTheSelection() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {blank(3)}));
        selectBlock(fixture, 0, {1, 1, 2, 2});
        setClipboard(u"1\t2\t3\r4\t5\t6\r7\t8\t9"_s);
        press(fixture, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(fixture.texts(0),
                 QList<QStringList>({{u"1"_s, u"2"_s, u""_s}, {u"4"_s, u"5"_s, u""_s}, {{}, {}, {}}}));
    }

    void aSingleCellTakesOnlyTheFirstValue() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {blank(2)}));
        fixture.clickCell(0, 1, 2);
        setClipboard(u"1\t2\r3\t4"_s);
        press(fixture, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(fixture.texts(0), QList<QStringList>({{{}, u"1"_s, {}}, {{}, {}, {}}}));
    }

    void aSingleValueOverASelectionOfEverythingChangesTheFirstCellOnly() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {mixed()}));
        fixture.clickCell(0, 3, 2);
        press(fixture, Qt::Key_A, Qt::ControlModifier);
        setClipboard(u"9"_s);
        press(fixture, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(fixture.texts(0).first(), QStringList({u"9"_s, u"a"_s, u"0.5"_s}));
        QCOMPARE(storedRecords(fixture, 0),
                 QList<QVariantList>({{9, u"a"_s, 0.5}, {2, u"b"_s, 1.5}, {3, u"c"_s, 2.5}, {4, u"d"_s, 3.5}}));
    }

    void aColumnSelectedByItsHeaderIsCopiedAndFilledWithoutTheHeader() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {mixed()}));
        fixture.clickCell(0, 1, 1);
        hands::click(fixture.grid(0).horizontalHeader()->viewport(), Qt::LeftButton, Qt::NoModifier,
                     headerCentre(fixture, 0, 2));
        press(fixture, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(clipboardText(), u"a\rb\rc\rd"_s);
        setClipboard(u"w\nx\ny\nz\n"_s);
        press(fixture, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(storedRecords(fixture, 0),
                 QList<QVariantList>({{1, u"w"_s, 0.5}, {2, u"x"_s, 1.5}, {3, u"y"_s, 2.5}, {4, u"z"_s, 3.5}}));
    }

    void pastedTextsAreStoredAlsoInRowsOfOtherRecords() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {mixed()}));
        fixture.grid(0).setRowData(2, 3);
        fixture.grid(0).setRowData(3, 2);
        selectBlock(fixture, 0, {2, 2, 3, 2});
        setClipboard(u"x\ry"_s);
        press(fixture, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(stored(fixture, 0, 3, 2).toString(), u"x"_s);
        QCOMPARE(stored(fixture, 0, 2, 2).toString(), u"y"_s);
    }

    void cellsWithoutAValueKeepTheirsAndEmptyValuesEmptyTheirs() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {mixed()}));
        selectBlock(fixture, 0, {1, 1, 4, 3});
        setClipboard(u"9\r\t\r8\tx"_s);
        press(fixture, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(fixture.texts(0), QList<QStringList>({{u"9"_s, u"a"_s, u"0.5"_s},
                                                       {u""_s, u""_s, u"1.5"_s},
                                                       {u"8"_s, u"x"_s, u"2.5"_s},
                                                       {u"4"_s, u"d"_s, u"3.5"_s}}));
        QCOMPARE(stored(fixture, 0, 2, 1).toDouble(), 0.0);
        QCOMPARE(stored(fixture, 0, 4, 1).toDouble(), 4.0);
    }

    void lettersInANumberFieldShowAndStoreNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {mixed()}));
        fixture.clickCell(0, 2, 1);
        setClipboard(u"abc"_s);
        press(fixture, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(fixture.grid(0).TextMatrix(2, 1), u"abc"_s);
        QCOMPARE(stored(fixture, 0, 2, 1).toDouble(), 0.0);
    }

    void anEmptyClipboardPastesNothing() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {mixed()}));
        fixture.clickCell(0, 2, 2);
        press(fixture, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(fixture.grid(0).TextMatrix(2, 2), u"b"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void tabsAndLineEndsInsideCellsAreCopiedExactly() {
        const QStringList hard{u"tab\there"_s, u"line\nend"_s, u"cr\rlf\r\n"_s};
        const TableOfTexts table{u"Hard"_s, {{u"A"_s, FieldType::Text, hard}, {u"B"_s, FieldType::Text, {{}, {}, {}}}}};
        EditorFixture fixture(makeFile(u"A.DDB"_s, {table}));
        selectBlock(fixture, 0, {1, 1, 3, 1});
        press(fixture, Qt::Key_C, Qt::ControlModifier);
        selectBlock(fixture, 0, {1, 2, 3, 2});
        press(fixture, Qt::Key_V, Qt::ControlModifier);
        for (int r = 1; r <= 3; ++r) {
            QCOMPARE(fixture.grid(0).TextMatrix(r, 2), hard[r - 1]);
            QCOMPARE(stored(fixture, 0, r, 2).toString(), hard[r - 1]);
        }
    }

    void brokenBytesOfTheExactFormatLeaveThePlainText() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {blank(1)}));
        auto *contents = new QMimeData;
        contents->setText(u"plain"_s);
        contents->setData(u"application/x-qir-cells"_s, "QIRCELL1\xff\xff\xff\xff");
        QGuiApplication::clipboard()->setMimeData(contents);
        fixture.clickCell(0, 1, 1);
        press(fixture, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(fixture.grid(0).TextMatrix(1, 1), u"plain"_s);
    }

    void aCopiedBlockIsAlsoThereAsHtml() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {mixed()}));
        selectBlock(fixture, 0, {1, 1, 2, 2});
        press(fixture, Qt::Key_C, Qt::ControlModifier);
        const QMimeData *contents = QGuiApplication::clipboard()->mimeData();
        QVERIFY(contents->hasHtml());
        QCOMPARE(contents->html(), u"<table><tr><td>1</td><td>a</td></tr>\n<tr><td>2</td><td>b</td></tr>\n</table>"_s);
    }

    void aPasteStoresAlsoTheTextsThatASmallerFieldHadCut() {
        TableOfTexts table = mixed();
        table.fields[1].size = 4;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {table}));
        edit(fixture, 0, 1, 2, u"longer"_s);
        QCOMPARE(stored(fixture, 0, 1, 2).toString(), u"long"_s);
        fixture.clickCell(0, 1, 2);
        fixture.dialogs().expectInput(u"Field size"_s, u"?"_s, u"4"_s, u"20"_s);
        fixture.choose(Command::ResizeTextField);
        QCOMPARE(fixture.grid(0).TextMatrix(1, 2), u"longer"_s);
        fixture.clickCell(0, 3, 1);
        setClipboard(u"9"_s);
        press(fixture, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(stored(fixture, 0, 1, 2).toString(), u"longer"_s);
    }

    void rewritingUnchangedCellsLeavesTheChangedFlagAlone() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {mixed()}));
        selectBlock(fixture, 0, {1, 1, 4, 3});
        press(fixture, Qt::Key_C, Qt::ControlModifier);
        press(fixture, Qt::Key_V, Qt::ControlModifier);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void aPasteEndsAnEditInThePane() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {mixed()}));
        beginEdit(fixture, 0, 2, 2);
        fixture.grid(0).setFocus();
        setClipboard(u"new"_s);
        press(fixture, Qt::Key_V, Qt::ControlModifier);
        QVERIFY(!editing(fixture, 0));
        QCOMPARE(stored(fixture, 0, 2, 2).toString(), u"new"_s);
    }

    void copyAndPasteInTheEditorAreTheTextBoxesOwn() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {mixed()}));
        beginEdit(fixture, 0, 2, 2);
        setClipboard(u"x\ty"_s);
        hands::key(&fixture.cellEditor(0), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(stored(fixture, 0, 2, 2).toString(), u"bx\ty"_s);
    }

    void withNoTableShownNothingIsCopiedOrPasted() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {blank(0)}));
        QVERIFY(!fixture.grid(0).Visible());
        setClipboard(u"before"_s);
        fixture.choose(Command::CopyMenu);
        QCOMPARE(clipboardText(), u"before"_s);
        fixture.choose(Command::PasteMenu);
        QVERIFY(!fixture.database(0).DtbHasChanged());
        QCOMPARE(fixture.grid(0).TextMatrix(0, 1), u"A [text]"_s);
    }

    void theEmptyColumnOfATableWithoutFieldsTakesNoText() {
        EditorFixture fixture(makeFile(u"A.DDB"_s, {{u"Bare"_s, {}}}));
        fixture.choose(Command::AddRecordMenu);
        fixture.clickCell(0, 1, 1);
        setClipboard(u"nowhere"_s);
        hands::key(&fixture.grid(0), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(fixture.texts(0), QList<QStringList>({{QString()}}));
    }

    void theMenuItemsWorkOnTheActivePane() {
        EditorFixture fixture;
        QVERIFY(!fixture.action(Command::CopyMenu).isEnabled());
        QVERIFY(!fixture.action(Command::PasteMenu).isEnabled());
        fixture.openBoth(makeFile(u"A.DDB"_s, {mixed()}), makeFile(u"B.DDB"_s, {mixed()}));
        fixture.clickCell(1, 2, 2);
        fixture.choose(Command::CopyMenu);
        QCOMPARE(clipboardText(), u"b"_s);
        fixture.clickCell(1, 3, 2);
        fixture.choose(Command::PasteMenu);
        QCOMPARE(stored(fixture, 1, 3, 2).toString(), u"b"_s);
        QCOMPARE(stored(fixture, 0, 3, 2).toString(), u"c"_s);
    }

    void theCopyAndPastePopupHoldsBothItems() {
        EditorFixture fixture;
        QCOMPARE(fixture.menu(Menu::popmenuCP).actions(),
                 QList<QAction *>({&fixture.action(Command::CopyMenu), &fixture.action(Command::PasteMenu)}));
    }

    void aPasteIsComparedWithTheOtherPane() {
        EditorFixture fixture;
        fixture.openBoth(makeFile(u"A.DDB"_s, {mixed()}), makeFile(u"B.DDB"_s, {mixed()}));
        QCOMPARE(fixture.lines(0), QStringList({u"Mixed"_s}));
        selectBlock(fixture, 0, {1, 2, 2, 2});
        setClipboard(u"z\rb"_s);
        press(fixture, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(fixture.grid(1).CellBackColor(1, 2), CellColour::Red);
        QCOMPARE(fixture.grid(1).CellBackColor(2, 2), CellColour::White);
        QCOMPARE(fixture.lines(1), QStringList({u"Mixed !"_s}));
        QCOMPARE(fixture.grid(0).selection(), (GridSelection{1, 2, 2, 2}));
    }

    void aPasteCutShortByAnErrorIsUndoneAndSilent() {
        const UseFake fake;
        EditorFixture fixture(makeFile(u"A.DDB"_s, {mixed()}));
        selectBlock(fixture, 0, {1, 1, 4, 3});
        setClipboard(u"9\tz\t9.5\r8\ty\t8.5\r7\tx\t7.5"_s);
        fake->failOn(u"QIRTableRecordSetByIndex"_s, u"The disk is on fire."_s, 8);
        press(fixture, Qt::Key_V, Qt::ControlModifier);
        fake->stopFailing();
        QCOMPARE(fixture.texts(0), QList<QStringList>({{u"1"_s, u"a"_s, u"0.5"_s},
                                                       {u"2"_s, u"b"_s, u"1.5"_s},
                                                       {u"3"_s, u"c"_s, u"2.5"_s},
                                                       {u"4"_s, u"d"_s, u"3.5"_s}}));
        QCOMPARE(stored(fixture, 0, 1, 2).toString(), u"a"_s);
        QVERIFY(!fixture.database(0).DtbHasChanged());
    }

    void theWindowClosedDuringAPasteEndsTheProgramWithNothingWritten() {
        const UseFake fake;
        const QString path = makeFile(u"A.DDB"_s, {mixed()});
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray before = file.readAll();
        {
            EditorFixture fixture(path);
            fixture.clickCell(0, 1, 2);
            setClipboard(u"pasted"_s);
            fixture.dialogs().expectMessage(saveQuestion(path), u"QIR Database Editor"_s, u"No"_s);
            // The close comes while the comparison behind the writing yields.
            fake->setHook([&](const FakeCall &call) {
                if (call.member == "EndChanges"_L1)
                    QTimer::singleShot(0, &fixture.window(), &QWidget::close);
            });
            press(fixture, Qt::Key_V, Qt::ControlModifier);
            QVERIFY(MessageLoop::instance()->programEnded());
        }
        file.seek(0);
        QCOMPARE(file.readAll(), before);
    }

private:
    static void press(EditorFixture &fixture, Qt::Key key, Qt::KeyboardModifiers modifiers) {
        const int pane = std::max(fixture.activePane(), 0);
        hands::key(&fixture.grid(pane), key, modifiers);
    }
};

QTEST_MAIN(ClipboardTest)
#include "clipboard_test.moc"
